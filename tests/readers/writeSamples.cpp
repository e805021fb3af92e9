// Writes an Access file with texts of every kind, changes it as notes are changed, and checks by reading
// it again that it holds what was put in. The independent readers then say whether they agree.

#include "jet/database.h"
#include "platform/files.h"
#include "text/decimal.h"
#include "text/pieces.h"
#include "text/unicode.h"

#include <cstdio>
#include <map>

namespace {

using namespace vellums;

// One of the readers takes many seconds for a large memo, so there is only one, the last of the notes.
constexpr std::size_t kLarge = 1000000;
constexpr std::size_t kLargeNotes = 1;

struct Note {
    std::optional<std::u16string> title;
    std::optional<std::u16string> body;
};

std::u16string repeated(std::u16string_view text, std::size_t units)
{
    std::u16string result;
    while (result.size() < units)
        result += text;
    result.resize(units);
    return result;
}

std::vector<Note> notes(bool largeIsChinese)
{
    const std::u16string ascii = u"The quick brown fox jumps over the lazy dog. ";
    const std::u16string western = u"Grüße aus Köln, déjà vu, señor ÿ. ";
    const std::u16string chinese = u"中文笔记，花园里的豆子。";
    return {
        {u"ASCII", ascii},
        {u"Western Übung", western},
        {u"中文标题", chinese},
        {u"emoji 😀", u"\U0001F600\U0001F468\u200D\U0001F469 ok"},
        {u"", u""},
        {std::nullopt, std::nullopt},
        {u"lines", u"one\r\ntwo\ttab\n'quoted' \"double\" [x] %"},
        {u"one letter", u"x"},
        {u"two modes", ascii + chinese + ascii},
        {repeated(u"title ", 255), repeated(ascii, 1000)},
        {repeated(u"标题", 255), repeated(chinese, 1000)},
        {u"3 KB", repeated(ascii, 3000)},
        {u"3 KB of Chinese", repeated(chinese, 1500)},
        {u"100 KB", repeated(western, 100000)},
        {u"100 KB of Chinese", repeated(chinese, 50000)},
        {u"5 MB", largeIsChinese ? repeated(chinese, 2500000) : repeated(ascii, 5000000)},
    };
}

std::u16string literal(const std::optional<std::u16string>& text)
{
    return text ? u"'" + text::replaceAll(*text, u"'", u"''") + u"'" : u"NULL";
}

jet::Value valueOf(const std::optional<std::u16string>& text)
{
    return text ? jet::Value(*text) : jet::Value(jet::Null{});
}

std::map<std::int32_t, Note> write(jet::Database& database, bool largeIsChinese)
{
    std::map<std::int32_t, Note> kept;
    database.run(u"CREATE TABLE [Memo] (ID COUNTER PRIMARY KEY, VLHEAD VARCHAR(255), VLTEXT MEMO, VLTYPE "
                 u"VARCHAR(255), "
                 u"VLDATE DATETIME, VLLINK VARCHAR(255), VLMD5 VARCHAR(32))");
    const std::vector<Note> all = notes(largeIsChinese);
    for (std::size_t round = 0; round < 3; ++round)
        for (const Note& note : all) {
            if (round > 0 && note.body && note.body->size() > kLarge)
                continue;
            database.run(u"INSERT INTO [Memo] (VLHEAD, VLTEXT, VLDATE) VALUES (" + literal(note.title) +
                u", " + literal(note.body) + u", '2024-3-5 9:7:3')");
            kept[static_cast<std::int32_t>(kept.size()) + 1] = note;
        }
    // Bodies that grow and shrink move their rows and change their form.
    for (std::size_t i = 0; i + kLargeNotes < all.size(); ++i) {
        const auto id = static_cast<std::int32_t>(i + 1);
        const Note& other = all[(i * 7 + 3) % (all.size() - kLargeNotes)];
        database.run(u"UPDATE [Memo] SET VLTEXT=" + literal(other.body) + u" WHERE ID=" + text::decimal(id));
        kept[id].body = other.body;
    }
    for (std::int32_t id = 5; id <= static_cast<std::int32_t>(kept.size()); id += 6)
        database.run(u"DELETE FROM [Memo] WHERE ID=" + text::decimal(id));
    std::erase_if(kept, [](const auto& note) { return note.first >= 5 && note.first % 6 == 5; });
    database.run(
        u"CREATE TABLE [类型] (ID COUNTER, b BIT, y BYTE, i SHORT, l LONG, c CURRENCY, s SINGLE, d DOUBLE, t "
        u"DATETIME, n DECIMAL(28,10), g GUID, f CHAR(5), v VARCHAR(20))");
    for (const char16_t* values :
        {u"-1, 255, -32768, -2147483648, '-922337203685477.5808', 1.5, 1E300, '1899-12-29 6:00', "
         u"'-123456789012345678.0123456789', '{01234567-89AB-CDEF-0123-456789ABCDEF}', 'ab', ''",
            u"0, 0, 0, 0, 0, 0, 0, '1899-12-30', 0, '{00000000-0000-0000-0000-000000000000}', '', 'é'",
            u"0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL",
            u"1, 7, 32767, 2147483647, 0.0001, 3.25E-5, 1E-300, '9999-12-31 23:59:59', 0.5, "
            u"'{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}', '中文字符五', '中文'"})
        database.run(u"INSERT INTO [类型] (b, y, i, l, c, s, d, t, n, g, f, v) VALUES (" +
            std::u16string(values) + u")");
    database.run(u"ALTER TABLE [Memo] ADD COLUMN [Later] VARCHAR(50)");
    database.run(u"UPDATE [Memo] SET [Later]='added' WHERE ID=1");
    // Tables made from others, on pages that other tables had before them.
    database.run(u"SELECT * INTO [Passing] FROM [Memo]");
    database.run(u"SELECT * INTO [Copied types] FROM [类型]");
    database.run(u"DROP TABLE [Passing]");
    database.run(u"SELECT * INTO [Copied memo] FROM [Memo]");
    database.run(u"SELECT ID, [Later], LEN(VLTEXT) AS [Length] INTO [Some columns] FROM [Memo] WHERE ID>2");
    // Indexes that come and go, and columns that leave their bytes in the rows.
    for (const char16_t* const sql :
        {u"CREATE UNIQUE INDEX [By number] ON [Copied types] (l DESC, d) WITH IGNORE NULL",
            u"CREATE INDEX [By date] ON [Copied memo] (VLDATE DESC, ID)",
            u"CREATE INDEX [Passing] ON [Copied memo] (VLDATE)", u"DROP INDEX [Passing] ON [Copied memo]",
            u"ALTER TABLE [Copied memo] DROP COLUMN VLLINK", u"ALTER TABLE [Copied types] DROP COLUMN i",
            u"ALTER TABLE [Copied types] DROP COLUMN b", u"ALTER TABLE [Copied types] DROP COLUMN v",
            u"ALTER TABLE [Copied types] ADD COLUMN [v] MEMO",
            u"UPDATE [Copied types] SET v='new' WHERE y=7"})
        database.run(sql);
    return kept;
}

bool holds(const std::u16string& path, const std::map<std::int32_t, Note>& kept)
{
    jet::Database database(path);
    const jet::Result result = database.run(u"SELECT ID, VLHEAD, VLTEXT FROM [Memo]");
    bool same = result.rows.size() == kept.size();
    for (const std::vector<jet::Value>& row : result.rows) {
        const auto note = kept.find(std::get<std::int32_t>(row[0]));
        same = same && note != kept.end() && row[1] == valueOf(note->second.title) &&
            row[2] == valueOf(note->second.body);
    }
    for (const std::u16string& fault : database.check()) {
        std::fprintf(stderr, "%s\n", text::toUtf8(fault).c_str());
        same = false;
    }
    return same;
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fputs("usage: writeSamples FILE.mdb|FILE.accdb\n", stderr);
        return 2;
    }
    const std::u16string path = text::fromUtf8(arguments[1]);
    try {
        platform::removeFile(path);
        const bool ace = path.ends_with(u".accdb");
        jet::createDatabase(path, ace ? jet::FileFormat::Ace12 : jet::FileFormat::Jet4, 45000);
        jet::Database database(path);
        const std::map<std::int32_t, Note> kept = write(database, ace);
        if (holds(path, kept))
            return 0;
        std::fputs("The file does not hold what was written.\n", stderr);
    } catch (const jet::Error& error) {
        std::fprintf(stderr, "%s\n", text::toUtf8(error.description).c_str());
    }
    return 1;
}

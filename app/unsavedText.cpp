// A file of unsaved text is made once, under a name that was free, and never written again, so no text can
// overwrite another. Its end is a digest of all before it: one that was cut off is told from a whole one.
// Taken back, a text replaces only a record that is still as it was when the text was typed over it; in
// every other case it becomes a new record.
#include "app/unsavedText.h"

#include "app/boxText.h"
#include "platform/files.h"
#include "store/records/records.h"
#include "text/clsMD5.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <cstddef>
#include <span>

namespace vellums {
namespace {

constexpr std::string_view kMark = "VLUNSAV1";
constexpr int kMostFiles = 100;

using Texts = std::u16string UnsavedText::*;
constexpr Texts kTexts[] = {&UnsavedText::conn, &UnsavedText::parent, &UnsavedText::table,
    &UnsavedText::titleBefore, &UnsavedText::textBefore, &UnsavedText::title, &UnsavedText::text,
    &UnsavedText::link};

void append(std::string& bytes, std::uint32_t number, int count)
{
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

// Reads from the front; once something is missing, everything that follows is.
class Reader {
public:
    explicit Reader(std::string_view bytes)
        : left_(bytes)
    {
    }
    // Little-endian, of up to four bytes.
    std::uint32_t number(std::size_t count)
    {
        std::uint32_t value = 0;
        const std::string_view bytes = take(count);
        for (std::size_t i = bytes.size(); i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(bytes[i]);
        return value;
    }
    std::u16string text()
    {
        const std::size_t units = number(4);
        // Before room is made for them: the number may be anything in a damaged file.
        if (units > left_.size() / 2) {
            whole_ = false;
            return {};
        }
        std::u16string text(units, u'\0');
        for (char16_t& unit : text)
            unit = static_cast<char16_t>(number(2));
        return text;
    }
    bool ended() const { return whole_ && left_.empty(); }

private:
    std::string_view take(std::size_t count)
    {
        whole_ = whole_ && count <= left_.size();
        const std::string_view taken = whole_ ? left_.substr(0, count) : std::string_view();
        left_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view left_;
    bool whole_ = true;
};

std::string digestOf(std::string_view bytes)
{
    std::u16string units; // the digest counts the low byte of each
    for (const char byte : bytes)
        units += static_cast<unsigned char>(byte);
    return text::toUtf8(text::clsMD5().MD5(units));
}

std::string packed(const UnsavedText& text)
{
    std::string bytes(kMark);
    append(bytes, static_cast<std::uint32_t>(text.id), 4);
    for (const Texts member : kTexts) {
        append(bytes, static_cast<std::uint32_t>((text.*member).size()), 4);
        for (const char16_t unit : text.*member)
            append(bytes, unit, 2);
    }
    return bytes + digestOf(bytes);
}

std::u16string fileName(const Notebook& notebook, int number)
{
    const std::u16string own = notebook.settingsFile.substr(0, notebook.settingsFile.rfind(u'.'));
    return own + (number == 1 ? u"" : u"." + text::decimal(number)) + u".unsaved";
}

bool isAsItWas(const SnippetRecord& record, const UnsavedText& text)
{
    return boxText(record.head) == text.titleBefore && boxText(record.text) == text.textBefore;
}

// The record the text came from, as it is now; nothing where it or its database is gone.
std::optional<SnippetRecord> recordOf(const Notebook& origin, const UnsavedText& text)
{
    if (text.id < 0)
        return std::nullopt;
    try {
        return getRecText(*origin.connect(), origin.dbTable, text.id);
    } catch (const ProviderError&) { // then the text becomes a new record
        return std::nullopt;
    }
}

} // namespace

bool keepUnsavedText(const Notebook& notebook, const UnsavedText& text)
{
    const std::string bytes = packed(text);
    for (int number = 1; number <= kMostFiles; ++number) {
        const std::u16string path = fileName(notebook, number);
        try {
            platform::File file(path, platform::Access::Create);
            file.writeAt(0, std::as_bytes(std::span(bytes)));
            file.sync();
            platform::syncFolderOf(path);
            return true;
        } catch (const platform::FileError& e) {
            if (e.fault != platform::FileFault::Exists)
                return false;
        }
    }
    return false;
}

std::vector<std::u16string> unsavedTextFiles(const Notebook& notebook)
{
    std::vector<std::u16string> files;
    for (int number = 1; number <= kMostFiles; ++number)
        if (const std::u16string path = fileName(notebook, number); platform::fileExists(path))
            files.push_back(path);
    return files;
}

std::optional<UnsavedText> readUnsavedText(const std::u16string& path)
{
    std::string bytes;
    try {
        const platform::File file(path, platform::Access::Read);
        bytes.resize(static_cast<std::size_t>(file.size()));
        bytes.resize(file.readAt(0, std::as_writable_bytes(std::span(bytes))));
    } catch (const platform::FileError&) {
        return std::nullopt;
    }
    if (bytes.size() < kMark.size() + text::kMd5Digits || !bytes.starts_with(kMark))
        return std::nullopt;
    const std::string_view content = std::string_view(bytes).substr(0, bytes.size() - text::kMd5Digits);
    if (digestOf(content) != bytes.substr(content.size()))
        return std::nullopt;
    Reader reader(content.substr(kMark.size()));
    UnsavedText text;
    text.id = static_cast<std::int32_t>(reader.number(4));
    for (const Texts member : kTexts)
        text.*member = reader.text();
    return reader.ended() ? std::optional(text) : std::nullopt;
}

std::optional<TakenBack> takeBack(const Notebook& notebook, const UnsavedText& text)
{
    Notebook origin = notebook;
    origin.dbConn = text.conn;
    origin.dbParent = text.parent;
    origin.dbTable = text.table;
    const std::optional<SnippetRecord> record = recordOf(origin, text);
    if (record && isAsItWas(*record, text)) {
        const Saved saved = modRecord(origin, text.id, text.title, text.text, record->type);
        if (saved == Saved::Failed)
            return std::nullopt;
        if (saved == Saved::Yes)
            return TakenBack{text.id, false};
    }
    NewRecord added;
    added.text = text.text;
    added.link = text.link;
    added.title = text.title;
    const std::optional<AddedRecord> now = addRecord(notebook, added);
    return now ? std::optional(TakenBack{now->id, true}) : std::nullopt;
}

} // namespace vellums

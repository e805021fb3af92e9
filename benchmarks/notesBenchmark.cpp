// How long do a search over all notes and the adding of one take, beside SQLite?
//
//   notesBenchmark NOTES FOLDER
//
// Fills an Access file and an SQLite file in FOLDER with the notes, unless they are there, then runs each
// question on both in turns and prints the medians in milliseconds.

#include "benchmarks/notesFile.h"
#include "benchmarks/sqliteNotes.h"
#include "benchmarks/turns.h"
#include "jet/database.h"
#include "platform/files.h"
#include "text/pieces.h"
#include "text/unicode.h"

#include <cstdio>

namespace {

using namespace vellums;
using benchmarks::median;
using benchmarks::millisecondsOf;
using benchmarks::Note;
using benchmarks::SqliteNotes;

constexpr int kSearches = 9;
constexpr int kAdds = 41;

std::u16string quoted(const std::u16string& text)
{
    return u"'" + text::replaceAll(text, u"'", u"''") + u"'";
}

void add(jet::Database& database, const Note& note)
{
    database.run(u"INSERT INTO [Memo] (VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5) VALUES (" +
        quoted(note.title) + u", " + quoted(note.body) + u",'', '" + note.date +
        u"', '', 'd41d8cd98f00b204e9800998ecf8427e')");
}

std::size_t countOf(jet::Database& database)
{
    const jet::Result result = database.run(u"SELECT COUNT(*) FROM [Memo]");
    return static_cast<std::size_t>(std::get<std::int32_t>(result.rows[0][0]));
}

std::size_t search(jet::Database& database, const std::u16string& pattern)
{
    const std::u16string like = u" LIKE " + quoted(u"%" + pattern + u"%");
    return database
        .run(u"SELECT TOP 32767 ID,VLHEAD FROM [Memo] WHERE ([VLHEAD]" + like + u" OR [VLTEXT]" + like +
            u" OR [VLLINK]" + like + u") ORDER BY VLTYPE DESC,  VLDATE DESC, ID DESC")
        .rows.size();
}

void fill(const std::u16string& path, const std::vector<Note>& notes)
{
    jet::createDatabase(path, jet::FileFormat::Ace12, 45000);
    jet::Database database(path);
    database.run(u"CREATE TABLE [Memo] (ID COUNTER PRIMARY KEY, VLHEAD VARCHAR(255), VLTEXT MEMO, VLTYPE "
                 u"VARCHAR(255), VLDATE DATETIME, VLLINK VARCHAR(255), VLMD5 VARCHAR(32))");
    constexpr std::size_t kBatch = 5000;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (i % kBatch == 0) {
            database.endBatch();
            database.beginBatch();
        }
        add(database, notes[i]);
    }
    database.endBatch();
}

void print(const char* question, double ours, double theirs, std::size_t rows, std::size_t theirRows)
{
    std::printf("%-34s %9.2f %9.2f %8.2f  %zu", question, ours, theirs, theirs / ours, rows);
    if (rows != theirRows)
        std::printf(" (SQLite: %zu)", theirRows);
    std::printf("\n");
    std::fflush(stdout);
}

void compareSearch(
    jet::Database& database, SqliteNotes& sqlite, const char* question, const std::u16string& pattern)
{
    std::vector<double> ours;
    std::vector<double> theirs;
    std::size_t rows = 0;
    std::size_t theirRows = 0;
    for (int i = 0; i < kSearches; ++i) {
        ours.push_back(millisecondsOf([&] { rows = search(database, pattern); }));
        theirs.push_back(millisecondsOf([&] { theirRows = sqlite.search(pattern); }));
    }
    print(question, median(ours), median(theirs), rows, theirRows);
}

void compareAdd(jet::Database& database, SqliteNotes& sqlite, const std::vector<Note>& notes)
{
    std::vector<double> ours;
    std::vector<double> theirs;
    for (std::size_t i = 0; i < kAdds; ++i) {
        const Note& note = notes[i * 101 % notes.size()];
        ours.push_back(millisecondsOf([&] { add(database, note); }));
        theirs.push_back(millisecondsOf([&] { sqlite.add(note); }));
    }
    print("add one note", median(ours), median(theirs), kAdds, kAdds);
}

void run(const std::string& notesPath, const std::string& folder)
{
    const std::vector<Note> notes = benchmarks::readNotes(notesPath);
    const std::u16string path = text::fromUtf8(folder + "/notes.accdb");
    if (!platform::fileExists(path)) {
        const double time = millisecondsOf([&] { fill(path, notes); });
        std::printf("filling the Access file:  %.1f s\n", time / 1000);
    }
    SqliteNotes sqlite(folder + "/notes.sqlite");
    if (sqlite.count() == 0) {
        const double time = millisecondsOf([&] { sqlite.fill(notes); });
        std::printf("filling the SQLite file:  %.1f s\n", time / 1000);
    }
    const double open = millisecondsOf([&] { jet::Database opened(path); });
    jet::Database database(path);
    std::printf("%zu notes; opening the Access file: %.2f ms\n\n", countOf(database), open);
    std::printf("%-34s %9s %9s %8s  %s\n", "medians in milliseconds", "Vellums", "SQLite", "ratio", "rows");
    compareSearch(database, sqlite, "a word found nowhere", u"zyzzyvas");
    compareSearch(database, sqlite, "a rare word", u"quaternion");
    compareSearch(database, sqlite, "a common word", u"the");
    compareSearch(database, sqlite, "two words", u"installation%directory");
    compareSearch(database, sqlite, "two rare words", u"kerberos%ticket");
    compareSearch(database, sqlite, "Chinese", u"目录");
    compareSearch(database, sqlite, "every note (empty search)", u"");
    const std::u16string byId = u"SELECT * FROM [Memo] WHERE ID=54321";
    std::vector<double> loads;
    for (int i = 0; i < kAdds; ++i)
        loads.push_back(millisecondsOf([&] { database.run(byId); }));
    std::printf("%-34s %9.2f\n", "load one note", median(loads));
    compareAdd(database, sqlite, notes);
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3) {
        std::fputs("usage: notesBenchmark NOTES FOLDER\n", stderr);
        return 2;
    }
    try {
        run(arguments[1], arguments[2]);
        return 0;
    } catch (const jet::Error& error) {
        std::fprintf(stderr, "%s\n", text::toUtf8(error.description).c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 1;
}

#include "benchmarks/sqliteNotes.h"

#include <sqlite3.h>

#include <stdexcept>

namespace vellums::benchmarks {

namespace {

void bindText(sqlite3_stmt* statement, int place, const std::u16string& text)
{
    sqlite3_bind_text16(statement, place, text.data(), static_cast<int>(text.size() * 2), SQLITE_TRANSIENT);
}

} // namespace

void SqliteNotes::CloseDatabase::operator()(sqlite3* database) const
{
    sqlite3_close(database);
}

void SqliteNotes::CloseStatement::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

SqliteNotes::SqliteNotes(const std::string& path)
{
    sqlite3* database = nullptr;
    const int opened = sqlite3_open(path.c_str(), &database);
    database_.reset(database);
    if (opened != SQLITE_OK)
        throw std::runtime_error("cannot open " + path);
    run("PRAGMA synchronous=FULL");
    run("CREATE TABLE IF NOT EXISTS Memo (ID INTEGER PRIMARY KEY AUTOINCREMENT, VLHEAD TEXT, VLTEXT TEXT, "
        "VLTYPE TEXT, VLDATE TEXT, VLLINK TEXT, VLMD5 TEXT)");
    insert_ =
        prepare("INSERT INTO Memo (VLHEAD, VLTEXT, VLTYPE, VLDATE, VLLINK, VLMD5) VALUES (?, ?, '', ?, '', "
                "'d41d8cd98f00b204e9800998ecf8427e')");
    search_ =
        prepare("SELECT ID, VLHEAD FROM Memo WHERE (VLHEAD LIKE ?1 OR VLTEXT LIKE ?1 OR VLLINK LIKE ?1) "
                "ORDER BY VLTYPE DESC, VLDATE DESC, ID DESC LIMIT 32767");
}

SqliteNotes::~SqliteNotes() = default;

SqliteNotes::Statement SqliteNotes::prepare(const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_.get(), sql, -1, &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database_.get()));
    return Statement(statement);
}

void SqliteNotes::run(const char* sql)
{
    if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database_.get()));
}

std::size_t SqliteNotes::count()
{
    const Statement statement = prepare("SELECT COUNT(*) FROM Memo");
    sqlite3_step(statement.get());
    return static_cast<std::size_t>(sqlite3_column_int64(statement.get(), 0));
}

void SqliteNotes::insert(const Note& note)
{
    bindText(insert_.get(), 1, note.title);
    bindText(insert_.get(), 2, note.body);
    bindText(insert_.get(), 3, note.date);
    if (sqlite3_step(insert_.get()) != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(database_.get()));
    sqlite3_reset(insert_.get());
}

void SqliteNotes::fill(const std::vector<Note>& notes)
{
    run("BEGIN");
    for (const Note& note : notes)
        insert(note);
    run("COMMIT");
}

void SqliteNotes::add(const Note& note)
{
    insert(note);
}

std::size_t SqliteNotes::search(const std::u16string& pattern)
{
    bindText(search_.get(), 1, u"%" + pattern + u"%");
    std::size_t rows = 0;
    std::size_t units = 0; // reads each title, as a list would
    while (sqlite3_step(search_.get()) == SQLITE_ROW) {
        ++rows;
        units += static_cast<std::size_t>(sqlite3_column_bytes(search_.get(), 1));
    }
    sqlite3_reset(search_.get());
    return units == static_cast<std::size_t>(-1) ? 0 : rows;
}

} // namespace vellums::benchmarks

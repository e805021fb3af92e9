// The same notes in an SQLite file, to compare with.
#pragma once

#include "benchmarks/notesFile.h"

#include <cstddef>
#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace vellums::benchmarks {

class SqliteNotes {
public:
    // Opens the file or makes it with an empty table. Changes are synced fully (PRAGMA synchronous=FULL).
    explicit SqliteNotes(const std::string& path);
    ~SqliteNotes();
    SqliteNotes(const SqliteNotes&) = delete;
    SqliteNotes& operator=(const SqliteNotes&) = delete;

    std::size_t count();
    // All in one transaction.
    void fill(const std::vector<Note>& notes);
    // A transaction of its own.
    void add(const Note& note);
    // The heading list for a pattern between two `%`: number and title of each note found.
    std::size_t search(const std::u16string& pattern);

private:
    void run(const char* sql);
    void insert(const Note& note);

    struct CloseDatabase {
        void operator()(sqlite3* database) const;
    };
    struct CloseStatement {
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, CloseStatement>;
    Statement prepare(const char* sql);

    std::unique_ptr<sqlite3, CloseDatabase> database_;
    Statement insert_;
    Statement search_;
};

} // namespace vellums::benchmarks

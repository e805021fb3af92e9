// The face of the engine for Access files (.mdb of Jet 4, .accdb of ACE).
//
// A Database is a connection: it keeps nothing open between statements but remembers the last
// autonumber it gave out. One statement is one transaction; it holds the file only while it runs.
// Not for use by several threads at once; several Database objects on one file, in any threads or
// processes, exclude each other as needed.
#pragma once

#include "jet/catalogue/blankDatabase.h"
#include "jet/catalogue/catalogue.h"
#include "jet/sql/run/execute.h"
#include "jet/sql/run/result.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::jet {

enum class TableKind {
    Table,
    System, // hidden ones included
    LinkedFile,
    LinkedOdbc,
    Query
};

struct TableInfo {
    std::u16string name;
    TableKind kind = TableKind::Table;
};

class Database {
public:
    // Checks that the file can be read. The password is of no use to files without one. Throws Error.
    explicit Database(std::u16string path, std::u16string password = {});
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    const std::u16string& path() const { return path_; }

    // Runs one statement. Throws Error; the file is then as before.
    Result run(std::u16string_view sql);

    // From now on asked now and then while a SELECT runs, in the thread that runs it; true ends it (3059).
    void stopWhen(std::function<bool()> wanted) { session_.stop = std::move(wanted); }

    // Where a journal was moved that lay beside the file and belongs to another one, or to another time of
    // this one, since last asked; empty: there was none.
    std::u16string takeJournalSetAside() { return std::exchange(journalSetAside_, {}); }

    // The tables, linked ones and queries too, in the order of the catalogue.
    std::vector<TableInfo> tables();

    // Makes a table, as ADOX does.
    void createTable(const TableSpec& spec);

    // Statements between the two are made lasting together, by endBatch(); a failing one is taken back
    // alone. The file is held for writing meanwhile. The destructor gives up an open batch. When the disk
    // fails the whole batch is taken back, and nothing more can be changed in it.
    void beginBatch();
    void endBatch();

    // Every structure of the file; each fault is one line, none: the file is sound.
    std::vector<std::u16string> check();

private:
    template <typename Work>
    void change(Work work);
    void noteJournal(const PageFile& file);

    std::u16string path_;
    std::u16string password_;
    sql::Session session_;
    std::unique_ptr<PageFile> batch_;
    std::u16string journalSetAside_;
    bool wrote_ = false; // a journal may lie beside the file
};

} // namespace vellums::jet

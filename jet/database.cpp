// A connection opens the file for each statement and closes it again, so others get their turn in between;
// only a batch keeps it. The locks, and a journal that someone left, are the affair of PageFile. What the
// connection knows of its own is small: the last autonumber, which changes only with a statement that
// worked, and whether it ever wrote, since then it tries to remove the journal when it goes.
#include "jet/database.h"

#include "jet/catalogue/objectName.h"
#include "jet/sql/parse/parser.h"
#include "jet/upkeep/checker.h"

namespace vellums::jet {
namespace {

TableKind kindOf(const CatalogueEntry& entry)
{
    if (entry.isQuery())
        return TableKind::Query;
    if (entry.isLinked())
        return entry.isOdbc() ? TableKind::LinkedOdbc : TableKind::LinkedFile;
    return entry.isUserTable() ? TableKind::Table : TableKind::System;
}

} // namespace

Database::Database(std::u16string path, std::u16string password)
    : path_(std::move(path))
    , password_(std::move(password))
{
    noteJournal(PageFile(path_, OpenMode::Read, password_));
}

Database::~Database()
{
    batch_.reset();
    if (wrote_)
        removeIdleJournal(path_);
}

// Runs `work` as one transaction, or inside the open batch as something that is taken back alone.
template <typename Work>
void Database::change(Work work)
{
    wrote_ = true;
    if (!batch_) {
        PageFile file(path_, OpenMode::Write, password_);
        noteJournal(file);
        // Taken back here, not by the destructor, which could not say that it failed.
        try {
            work(file);
        } catch (...) {
            file.rollBack();
            throw;
        }
        file.commit();
        return;
    }
    batch_->mark();
    try {
        work(*batch_);
    } catch (...) {
        batch_->rollbackToMark();
        throw;
    }
}

void Database::noteJournal(const PageFile& file)
{
    if (!file.journalSetAside().empty())
        journalSetAside_ = file.journalSetAside();
}

Result Database::run(std::u16string_view text)
{
    sql::Statement statement = sql::parseStatement(text);
    if (sql::needsNoFile(statement))
        return sql::identityResult(session_);
    Result result;
    sql::Session session = session_; // kept only when the statement works
    if (sql::writes(statement)) {
        change([&](PageFile& file) { result = sql::execute(file, statement, session); });
    } else if (batch_) {
        result = sql::execute(*batch_, statement, session);
    } else {
        PageFile file(path_, OpenMode::Read, password_);
        noteJournal(file);
        result = sql::execute(file, statement, session);
    }
    session_ = session;
    return result;
}

std::vector<TableInfo> Database::tables()
{
    const auto list = [](PageFile& file) {
        std::vector<TableInfo> tables;
        for (const CatalogueEntry& entry : Catalogue(file).entries())
            if (!entry.isQuery() || !isSystemName(entry.name))
                tables.push_back({entry.name, kindOf(entry)});
        return tables;
    };
    if (batch_)
        return list(*batch_);
    PageFile file(path_, OpenMode::Read, password_);
    noteJournal(file);
    return list(file);
}

void Database::createTable(const TableSpec& spec)
{
    change([&](PageFile& file) { Catalogue(file).createTable(spec); });
}

void Database::beginBatch()
{
    if (batch_)
        return;
    wrote_ = true;
    batch_ = std::make_unique<PageFile>(path_, OpenMode::Write, password_);
    noteJournal(*batch_);
}

void Database::endBatch()
{
    if (!batch_)
        return;
    // Gone from here whether that works or not: what fails is taken back, and the file is let go.
    const std::unique_ptr<PageFile> batch = std::move(batch_);
    batch->commit();
}

std::vector<std::u16string> Database::check()
{
    if (batch_)
        return checkFile(*batch_);
    PageFile file(path_, OpenMode::Read, password_);
    return checkFile(file);
}

} // namespace vellums::jet

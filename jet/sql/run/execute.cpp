#include "jet/sql/run/execute.h"

#include "jet/sql/run/change.h"
#include "jet/sql/run/makeTable.h"
#include "jet/sql/run/select.h"
#include "jet/sql/values/sqlError.h"
#include "platform/clock.h"

namespace vellums::jet::sql {

namespace {

// One moment for the whole statement.
Date now()
{
    return Date{platform::oleNow()};
}

Result runSelect(PageFile& file, SelectStatement& statement, const Session& session)
{
    Result result;
    if (statement.into) {
        result.changedRows = runSelectInto(file, statement, now());
        return result;
    }
    Interruption interruption(session.stop);
    Select select(file, statement, now(), session.stop ? &interruption : nullptr);
    result.hasRows = true;
    for (const Select::Output& output : select.outputs()) {
        result.columns.push_back(output.name);
        result.types.push_back(output.type);
    }
    select.run([&](std::vector<Value> row) { result.rows.push_back(std::move(row)); });
    return result;
}

Result changed(const ChangeResult& change, Session& session)
{
    if (change.identity)
        session.lastIdentity = *change.identity;
    Result result;
    result.changedRows = change.rows;
    return result;
}

void addColumn(PageFile& file, const AddColumnStatement& statement)
{
    Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(statement.table);
    if (!entry)
        throwNoInputTable(statement.table);
    catalogue.addColumn(*entry, statement.column);
}

void dropColumn(PageFile& file, const DropColumnStatement& statement)
{
    Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(statement.table);
    if (!entry)
        throwNoInputTable(statement.table);
    catalogue.dropColumn(*entry, statement.column);
}

void createIndex(PageFile& file, const CreateIndexStatement& statement)
{
    Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(statement.table);
    if (!entry)
        throwNoInputTable(statement.table);
    catalogue.createIndex(*entry, statement.index);
}

void dropIndex(PageFile& file, const DropIndexStatement& statement)
{
    Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(statement.table);
    if (!entry)
        throwNoTableToDrop(statement.table);
    catalogue.dropIndex(*entry, statement.index);
}

void dropTable(PageFile& file, const DropTableStatement& statement)
{
    Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(statement.table);
    if (!entry)
        throwNoTableToDrop(statement.table);
    catalogue.dropTable(*entry);
}

} // namespace

Result identityResult(const Session& session)
{
    Result result;
    result.hasRows = true;
    result.columns = {u"Expr1000"};
    result.types = {ColumnType::Long};
    result.rows = {{session.lastIdentity}};
    return result;
}

// One overload for each kind of statement; a kind that is added without one does not compile.
Result execute(PageFile& file, Statement& statement, Session& session)
{
    struct Run {
        PageFile& file;
        Session& session;

        Result operator()(SelectStatement& select) const { return runSelect(file, select, session); }
        Result operator()(const IdentityStatement&) const { return identityResult(session); }
        Result operator()(InsertStatement& insert) const
        {
            return changed(runInsert(file, insert, now()), session);
        }
        Result operator()(UpdateStatement& update) const
        {
            return changed(runUpdate(file, update, now()), session);
        }
        Result operator()(DeleteStatement& statement) const
        {
            return changed(runDelete(file, statement, now()), session);
        }
        Result operator()(const CreateTableStatement& create) const
        {
            Catalogue(file).createTable(create.table);
            return {};
        }
        Result operator()(const AddColumnStatement& add) const
        {
            addColumn(file, add);
            return {};
        }
        Result operator()(const DropColumnStatement& drop) const
        {
            dropColumn(file, drop);
            return {};
        }
        Result operator()(const DropTableStatement& drop) const
        {
            dropTable(file, drop);
            return {};
        }
        Result operator()(const CreateIndexStatement& create) const
        {
            createIndex(file, create);
            return {};
        }
        Result operator()(const DropIndexStatement& drop) const
        {
            dropIndex(file, drop);
            return {};
        }
    };
    return std::visit(Run{file, session}, statement);
}

} // namespace vellums::jet::sql

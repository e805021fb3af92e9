// From a statement's tree to who carries it out: queries and changes of rows have files of their own
// (select.h, makeTable.h, change.h); what changes a table itself is looked up here and done by the catalogue.
// The moment that NOW() and new dates mean is taken once, so it is the same for all rows of a statement.
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

// Does something to a table of the catalogue. `refuse` is told the name of one that is not there.
template <typename Work>
Result onTable(PageFile& file, const std::u16string& name, void (*refuse)(const std::u16string&), Work&& work)
{
    Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(name);
    if (!entry)
        refuse(name);
    work(catalogue, *entry);
    return {};
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
            return onTable(
                file, add.table, throwNoInputTable, [&](Catalogue& catalogue, const CatalogueEntry& table) {
                    catalogue.addColumn(table, add.column);
                });
        }
        Result operator()(const DropColumnStatement& drop) const
        {
            return onTable(
                file, drop.table, throwNoInputTable, [&](Catalogue& catalogue, const CatalogueEntry& table) {
                    catalogue.dropColumn(table, drop.column);
                });
        }
        Result operator()(const DropTableStatement& drop) const
        {
            return onTable(file, drop.table, throwNoTableToDrop,
                [](Catalogue& catalogue, const CatalogueEntry& table) { catalogue.dropTable(table); });
        }
        Result operator()(const CreateIndexStatement& create) const
        {
            return onTable(file, create.table, throwNoInputTable,
                [&](Catalogue& catalogue, const CatalogueEntry& table) {
                    catalogue.createIndex(table, create.index);
                });
        }
        Result operator()(const DropIndexStatement& drop) const
        {
            return onTable(
                file, drop.table, throwNoTableToDrop, [&](Catalogue& catalogue, const CatalogueEntry& table) {
                    catalogue.dropIndex(table, drop.index);
                });
        }
    };
    return std::visit(Run{file, session}, statement);
}

} // namespace vellums::jet::sql

// INSERT, UPDATE and DELETE find their rows first, as places, and change them afterwards, so a change never
// shows in the condition that chose the next row; INSERT INTO t SELECT ... FROM t ends for the same reason.
// Columns, types and defaults are settled before the first row. The first row that is refused ends the
// statement, and what it has changed is taken back by whoever runs it.
#include "jet/sql/run/change.h"

#include "jet/sql/parse/parser.h"
#include "jet/sql/run/rowFilter.h"
#include "jet/sql/run/select.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/sqlError.h"

#include <algorithm>
#include <limits>

namespace vellums::jet::sql {

namespace {

// The table that a statement changes and what its expressions may name.
class Target {
public:
    Target(PageFile& file, const TableReference& reference, Date now, bool insert)
        : table_(open(file, reference.name, insert))
    {
        table_.requireWritable();
        scope_.table = &table_;
        scope_.alias = reference.alias;
        scope_.sortOrder = file.header().sortOrder;
        scope_.now = now;
        scope_.filePages = file.pageCount();
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    Table& table() { return table_; }
    const Table& table() const { return table_; }
    const Scope& scope() const { return scope_; }
    const std::vector<Column>& columns() const { return table_.definition().columns; }

private:
    static Table open(PageFile& file, const std::u16string& name, bool insert)
    {
        const Catalogue catalogue(file);
        const std::optional<CatalogueEntry> entry = catalogue.find(name);
        if (entry)
            catalogue.requireOwnTable(*entry);
        if (entry && !entry->isUserTable())
            throwUnsupported(u"The table '" + entry->name + u"' belongs to the system and is left as it is.");
        if (entry)
            return catalogue.open(*entry);
        if (insert)
            throwNoOutputTable(name);
        throwNoInputTable(name);
    }

    Table table_;
    Scope scope_;
};

// A column may be given one value only.
void refuseTwice(const std::vector<std::size_t>& places, const std::vector<Column>& columns)
{
    for (std::size_t i = 0; i < places.size(); ++i)
        if (std::find(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(i), places[i]) !=
            places.begin() + static_cast<std::ptrdiff_t>(i))
            throwDuplicateDestination(columns[places[i]].name);
}

std::vector<std::size_t> findDestinations(Target& target, const std::vector<std::u16string>& names)
{
    std::vector<std::size_t> places;
    for (const std::u16string& name : names) {
        const std::optional<std::size_t> place = target.table().columnIndex(name);
        if (!place)
            throwUnknownInsertField(name);
        places.push_back(*place);
    }
    refuseTwice(places, target.columns());
    return places;
}

// The default of a column, computed once; nullopt: it has none.
std::optional<Value> defaultOf(const Target& target, std::size_t column)
{
    const std::vector<ColumnRule>& rules = target.table().rules();
    if (column >= rules.size() || rules[column].defaultValue.empty())
        return std::nullopt;
    // Stored as an expression, with or without the sign of equality that Access puts in front.
    std::u16string_view text = rules[column].defaultValue;
    const std::size_t begin = text.find_first_not_of(u" =");
    text.remove_prefix(std::min(begin, text.size()));
    Scope scope = target.scope();
    scope.table = nullptr;
    try {
        Expression expression = parseExpression(text);
        bind(expression, scope);
        return coerceFor(target.columns()[column], Evaluator(scope).value(expression, nullptr));
    } catch (const Error&) {
        throwUnsupported(
            u"The default value of the field '" + target.columns()[column].name + u"' is not supported.");
    }
}

// Puts rows into the table: values for given columns, defaults for the others.
class Inserter {
public:
    Inserter(Target& target, std::vector<std::size_t> destinations)
        : target_(target)
        , destinations_(std::move(destinations))
    {
        const std::vector<Column>& columns = target.columns();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            hasAutoNumber_ = hasAutoNumber_ || columns[i].isAutoNumber();
            if (std::find(destinations_.begin(), destinations_.end(), i) != destinations_.end())
                continue;
            if (std::optional<Value> value = defaultOf(target, i))
                defaults_.push_back({i, std::move(*value)});
        }
    }

    void insert(std::vector<Value> values)
    {
        std::vector<Assignment> assignments = defaults_;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::size_t column = destinations_[i];
            assignments.push_back({column, coerceFor(target_.columns()[column], std::move(values[i]))});
        }
        const std::int32_t number = target_.table().insert(assignments);
        if (hasAutoNumber_)
            result_.identity = number;
        if (result_.rows == std::numeric_limits<std::int32_t>::max())
            throwOverflow();
        ++result_.rows;
    }

    const ChangeResult& result() const { return result_; }

private:
    Target& target_;
    std::vector<std::size_t> destinations_;
    std::vector<Assignment> defaults_;
    bool hasAutoNumber_ = false;
    ChangeResult result_;
};

std::vector<std::size_t> allColumns(const Target& target)
{
    std::vector<std::size_t> places(target.columns().size());
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = i;
    return places;
}

ChangeResult insertValues(Target& target, InsertStatement& statement)
{
    std::vector<std::size_t> destinations =
        statement.columns.empty() ? allColumns(target) : findDestinations(target, statement.columns);
    if (destinations.size() != statement.values.size())
        throwValueCount();
    Scope scope = target.scope();
    scope.table = nullptr;
    const Evaluator evaluator(scope);
    std::vector<Value> values;
    for (Expression& expression : statement.values) {
        bind(expression, scope);
        // A literal is taken, not copied: it may be a whole note.
        values.push_back(
            isConstant(expression) ? std::move(expression.literal) : evaluator.value(expression, nullptr));
    }
    Inserter inserter(target, std::move(destinations));
    inserter.insert(std::move(values));
    return inserter.result();
}

ChangeResult insertSelected(PageFile& file, Target& target, InsertStatement& statement, Date now)
{
    Select select(file, *statement.select, now);
    // Without a list the columns go by their names, not by their places.
    std::vector<std::u16string> names = statement.columns;
    if (names.empty())
        for (const Select::Output& output : select.outputs())
            names.push_back(output.name);
    std::vector<std::size_t> destinations = findDestinations(target, names);
    if (destinations.size() != select.outputs().size())
        throwValueCount();
    Inserter inserter(target, std::move(destinations));
    select.run([&](std::vector<Value> values) { inserter.insert(std::move(values)); });
    return inserter.result();
}

std::vector<RowRef> matchingRows(const Target& target, std::optional<Expression>& where)
{
    if (where)
        bind(*where, target.scope());
    const RowFilter filter(target.scope(), where ? &*where : nullptr);
    return filter.homes(kAllRows);
}

} // namespace

ChangeResult runInsert(PageFile& file, InsertStatement& statement, Date now)
{
    Target target(file, {statement.table, {}}, now, true);
    return statement.select ? insertSelected(file, target, statement, now) : insertValues(target, statement);
}

ChangeResult runUpdate(PageFile& file, UpdateStatement& statement, Date now)
{
    Target target(file, statement.table, now, false);
    std::vector<std::size_t> places;
    for (UpdateStatement::Change& change : statement.changes) {
        const std::optional<std::size_t> place = findColumn(target.scope(), change.qualifier, change.column);
        if (!place)
            throwMissingParameter();
        if (target.columns()[*place].isAutoNumber())
            throwNotUpdateable(target.columns()[*place].name);
        places.push_back(*place);
        bind(change.value, target.scope());
    }
    refuseTwice(places, target.columns());
    const Evaluator evaluator(target.scope());
    ChangeResult result;
    const std::vector<RowRef> homes = matchingRows(target, statement.where);
    for (const RowRef& home : homes) {
        // A literal, which may be a text of megabytes, is not needed any more after the last row.
        const bool last = &home == &homes.back();
        const auto valueOf = [&](Expression& expression, const Row& row) {
            return last && isConstant(expression) ? std::move(expression.literal)
                                                  : evaluator.value(expression, &row);
        };
        std::vector<Assignment> assignments;
        { // all values are those of the old row, which is gone with its change
            const Row row = target.table().rowAt(home);
            for (std::size_t i = 0; i < places.size(); ++i)
                assignments.push_back({places[i],
                    coerceFor(target.columns()[places[i]], valueOf(statement.changes[i].value, row))});
        }
        target.table().update(home, assignments);
        ++result.rows;
    }
    return result;
}

ChangeResult runDelete(PageFile& file, DeleteStatement& statement, Date now)
{
    Target target(file, statement.table, now, false);
    ChangeResult result;
    for (const RowRef home : matchingRows(target, statement.where)) {
        target.table().erase(home);
        ++result.rows;
    }
    return result;
}

} // namespace vellums::jet::sql

// A SELECT has two passes. The first goes over the table and keeps of each row that WHERE lets through no
// more than its place and, where there is an order, its sort key; the second decodes the rows of the answer
// one by one. An answer of ten rows out of many reads the sort columns of all and everything of ten.
//
// DISTINCT needs the outputs of every row in the first pass. Of rows with equal outputs the first is kept;
// the order may name only what the outputs show, else it would not be clear which of them counts.
//
// TOP n with an order gives all rows that tie with the n-th; without one it ends the pass after n rows.
// Aggregates make one row of all, even of none.
#include "jet/sql/run/select.h"

#include "jet/catalogue/catalogue.h"
#include "jet/index/collation.h"
#include "jet/sql/run/aggregates.h"
#include "jet/sql/run/complexTexts.h"
#include "jet/sql/run/sortKey.h"
#include "jet/sql/run/sortedRows.h"
#include "jet/sql/values/sqlError.h"
#include "text/decimal.h"

#include <limits>
#include <unordered_set>

namespace vellums::jet::sql {

namespace {

constexpr int kFirstUnnamed = 1000; // Expr1000, Expr1001, ... as the providers name them

} // namespace

Select::Select(PageFile& file, SelectStatement& statement, Date now, Interruption* interruption)
    : statement_(statement)
{
    scope_.interruption = interruption;
    scope_.sortOrder = file.header().sortOrder;
    scope_.now = now;
    scope_.filePages = file.pageCount();
    openTable(file);
    if (statement_.where)
        bind(*statement_.where, scope_);
    bindItems();
    bindOrder();
    checkAggregates();
}

void Select::openTable(PageFile& file)
{
    if (!statement_.from)
        return;
    const Catalogue catalogue(file);
    const std::optional<CatalogueEntry> entry = catalogue.find(statement_.from->name);
    if (!entry)
        throwNoInputTable(statement_.from->name);
    table_.emplace(catalogue.open(*entry));
    attachComplexTexts(file, catalogue, *entry, *table_);
    scope_.table = &*table_;
    scope_.alias = statement_.from->alias;
}

void Select::bindItems()
{
    for (SelectItem& item : statement_.items) {
        if (item.all)
            addColumns(item);
        else
            addExpression(item);
    }
}

void Select::addColumns(const SelectItem& item)
{
    if (!table_)
        throwSyntax(3067, u"Query input must contain at least one table or query.");
    const std::u16string& known = scope_.alias.empty() ? table_->name() : scope_.alias;
    if (!item.qualifier.empty() && compareTexts(item.qualifier, known, scope_.sortOrder) != 0)
        throwMissingParameter();
    const std::vector<Column>& columns = table_->definition().columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        Expression& column = ownExpressions_.emplace_back();
        column.kind = ExpressionKind::Name;
        column.name = column.source = columns[i].name;
        column.column = i; // bound already; a deque, so that the outputs can point to it
        outputs_.push_back({&column, columns[i].name, columns[i].valueType});
    }
}

void Select::addExpression(SelectItem& item)
{
    Scope withAggregates = scope_;
    withAggregates.aggregates = &aggregates_;
    bind(item.expression, withAggregates);
    Output output{&item.expression, item.alias, typeOf(item.expression, scope_)};
    if (output.name.empty())
        output.name = item.expression.column ? table_->definition().columns[*item.expression.column].name
                                             : u"Expr" + text::decimal(kFirstUnnamed + unnamed_++);
    outputs_.push_back(std::move(output));
}

void Select::bindOrder()
{
    for (OrderItem& item : statement_.order) {
        const Expression& expression = orderExpression(item);
        if (statement_.distinct)
            checkDistinctOrder(item, expression);
        keys_.push_back({&expression, item.descending});
    }
}

// A whole number is the place of an output, a name a column or else the name of an output.
const Expression& Select::orderExpression(OrderItem& item)
{
    Expression& expression = item.expression;
    if (expression.kind == ExpressionKind::Literal) {
        const auto* place = std::get_if<std::int32_t>(&expression.literal);
        if (place && (*place < 1 || static_cast<std::size_t>(*place) > outputs_.size()))
            throwSyntax(3138, u"Syntax error in ORDER BY clause.");
        if (place)
            return *outputs_[static_cast<std::size_t>(*place - 1)].expression;
    }
    const bool plainName = expression.kind == ExpressionKind::Name && expression.qualifier.empty();
    if (plainName && !findColumn(scope_, {}, expression.name))
        for (const Output& output : outputs_)
            if (compareTexts(output.name, expression.name, scope_.sortOrder) == 0)
                return *output.expression;
    Scope withAggregates = scope_;
    withAggregates.aggregates = &aggregates_;
    bind(expression, withAggregates);
    return expression;
}

// With DISTINCT an order that the outputs do not show would not be one of the answer's rows.
void Select::checkDistinctOrder(const OrderItem& item, const Expression& expression) const
{
    for (const Output& output : outputs_) {
        const Expression& other = *output.expression;
        if (&other == &expression || (other.column && other.column == expression.column))
            return;
    }
    if (!isConstant(expression))
        throwOrderConflict(item.source);
}

// A statement with an aggregate gives one row, so no column may stand beside it.
void Select::checkAggregates() const
{
    if (aggregates_.empty())
        return;
    for (const Output& output : outputs_)
        if (const Expression* column = columnOutsideAggregates(*output.expression))
            throwNotAggregated(column->source);
    for (const Key& key : keys_)
        if (const Expression* column = columnOutsideAggregates(*key.expression))
            throwNotAggregated(column->source);
}

// The callback may add rows to the table: the places are fixed before its first call.
void Select::run(const std::function<void(std::vector<Value>)>& callback)
{
    const RowFilter filter(scope_, statement_.where ? &*statement_.where : nullptr);
    if (!aggregates_.empty())
        return runAggregated(callback);
    if (!table_) {
        if (filter.keepsNothingness() && statement_.top != 0)
            callback(computed(nullptr, nullptr));
        return;
    }
    for (const RowRef home : homes()) {
        const Row row = table_->rowAt(home);
        callback(computed(&row, nullptr));
    }
}

std::vector<RowRef> Select::homes() const
{
    if (!keys_.empty() || statement_.distinct)
        return sortedHomes();
    const RowFilter filter(scope_, statement_.where ? &*statement_.where : nullptr);
    return filter.homes(statement_.top.value_or(kAllRows));
}

// Parts of the table may be gone through at once, each with an order of its own; putting them together in
// the order of the table keeps equal rows in that order.
std::vector<RowRef> Select::sortedHomes() const
{
    if (statement_.distinct)
        return distinctHomes();
    const RowFilter filter(scope_, statement_.where ? &*statement_.where : nullptr);
    std::vector<SortedRows> parts;
    filter.forEachInParts(parts, SortedRows(statement_.top),
        [&](const Row& row, SortedRows& part) { part.offer(sortKey(row), row.home()); });
    SortedRows& sorted = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i)
        sorted.append(std::move(parts[i]));
    return sorted.take();
}

// Without an order nothing ties, and the first n are taken; SortedRows then serves as a list, all keys being
// empty.
std::vector<RowRef> Select::distinctHomes() const
{
    const RowFilter filter(scope_, statement_.where ? &*statement_.where : nullptr);
    SortedRows sorted(keys_.empty() ? std::nullopt : statement_.top);
    const Evaluator evaluator(scope_);
    std::unordered_set<std::string> seen;
    filter.forEach([&](const Row& row) {
        std::string key;
        for (const Output& output : outputs_)
            appendSortPart(key, evaluator.value(*output.expression, &row), scope_.sortOrder, false);
        if (seen.insert(std::move(key)).second)
            sorted.offer(sortKey(row), row.home());
        return true;
    });
    std::vector<RowRef> rows = sorted.take();
    if (keys_.empty() && statement_.top && rows.size() > *statement_.top)
        rows.resize(static_cast<std::size_t>(*statement_.top));
    return rows;
}

std::string Select::sortKey(const Row& row) const
{
    std::string key;
    for (const Key& part : keys_)
        appendKeyPart(key, *part.expression, row, part.descending);
    return key;
}

void Select::appendKeyPart(
    std::string& key, const Expression& expression, const Row& row, bool descending) const
{
    if (expression.column) {
        const ColumnType type = table_->definition().columns[*expression.column].valueType;
        appendSortPart(key, row, *expression.column, isText(type), scope_.sortOrder, descending);
        return;
    }
    Value value = Evaluator(scope_).value(expression, &row);
    if (auto* text = std::get_if<std::u16string>(&value))
        text->resize(std::min(text->size(), kOrderedUnits));
    appendSortPart(key, value, scope_.sortOrder, descending);
}

void Select::runAggregated(const std::function<void(std::vector<Value>)>& callback) const
{
    const RowFilter filter(scope_, statement_.where ? &*statement_.where : nullptr);
    Aggregates aggregates(scope_, aggregates_);
    if (table_) {
        filter.forEach([&](const Row& row) {
            aggregates.add(&row);
            return true;
        });
    } else if (filter.keepsNothingness()) {
        aggregates.add(nullptr);
    }
    if (statement_.top == 0)
        return;
    const std::vector<Value> values = aggregates.values();
    callback(computed(nullptr, &values));
}

std::vector<Value> Select::computed(const Row* row, const std::vector<Value>* aggregates) const
{
    const Evaluator evaluator(scope_, aggregates);
    std::vector<Value> values;
    values.reserve(outputs_.size());
    for (const Output& output : outputs_)
        values.push_back(evaluator.value(*output.expression, row));
    return values;
}

} // namespace vellums::jet::sql

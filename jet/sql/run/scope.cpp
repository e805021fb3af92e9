// Binding goes through an expression once, from the leaves up, and leaves it ready to be computed for many
// rows: names have become places of columns, what depends on no row has become a literal, a constant pattern
// is compiled. Operands are bound before their node, so a fold sees only literals and things that are none.
//
// What is wrong whatever the rows hold is refused here: a name that is nothing, an aggregate where none may
// stand, a column compared with a constant of another kind. An error in computing constants is not: IIF or
// AND may never ask for the value.
//
// Types are told from the tree alone, for the columns of an answer or of a table that is made of it.
#include "jet/sql/run/scope.h"

#include "jet/index/collation.h"
#include "jet/sql/parse/lexer.h"
#include "jet/sql/run/evaluator.h"
#include "jet/sql/values/asciiUnits.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/functions.h"
#include "jet/sql/values/sqlError.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet::sql {

namespace {

bool sameName(const std::u16string& a, const std::u16string& b, const Scope& scope)
{
    return compareTexts(a, b, scope.sortOrder) == 0;
}

void makeLiteral(Expression& node, Value value)
{
    Expression literal;
    literal.literal = std::move(value);
    node = std::move(literal);
}

// A bare word that is no column may be a constant or a function without parentheses.
bool bindWord(Expression& name, const Scope& scope)
{
    const std::u16string word = capitals(name.name);
    if (word == u"YES" || word == u"NO" || word == u"OFF")
        makeLiteral(name, word == u"YES");
    else if (word == u"NOW")
        makeLiteral(name, callFunction(Function::Now, {}, scope.now));
    else if (word == u"DATE")
        makeLiteral(name, callFunction(Function::Date, {}, scope.now));
    else if (word == u"TIME")
        makeLiteral(name, callFunction(Function::Time, {}, scope.now));
    else
        return false;
    return true;
}

// Columns come first: a table may have one called Date. A name that is nothing counts as a parameter without
// a value, as the providers have it.
void bindName(Expression& name, const Scope& scope)
{
    name.column = findColumn(scope, name.qualifier, name.name);
    if (!name.column && !(name.bare && bindWord(name, scope)))
        throwMissingParameter();
}

// The list of a statement's aggregates holds the nodes themselves; each node knows its place in the list,
// where its value will be. Inside one no other may stand.
void bindAggregate(Expression& aggregate, const Scope& scope)
{
    if (!scope.aggregates)
        throwAggregateInWhere(aggregate.source);
    Scope inside = scope;
    inside.aggregates = nullptr;
    for (Expression& operand : aggregate.operands)
        bind(operand, inside);
    aggregate.aggregate = scope.aggregates->size();
    scope.aggregates->push_back(&aggregate);
}

// Comparing a column with a constant of another kind is refused before any row is read.
void checkKinds(const Expression& a, const Expression& b, const Scope& scope)
{
    const Expression& column = a.column ? a : b;
    const Expression& other = a.column ? b : a;
    if (!column.column || other.kind != ExpressionKind::Literal || isNull(other.literal))
        return;
    if (kindOf(scope.table->definition().columns[*column.column].valueType) != kindOf(other.literal))
        throwTypeMismatch();
}

void checkComparison(const Expression& node, const Scope& scope)
{
    const bool compares = node.kind == ExpressionKind::Compare || node.kind == ExpressionKind::In ||
        node.kind == ExpressionKind::Between;
    if (!compares)
        return;
    for (std::size_t i = 1; i < node.operands.size(); ++i)
        checkKinds(node.operands[0], node.operands[i], scope);
}

bool isLiteral(const Expression& node)
{
    return node.kind == ExpressionKind::Literal;
}

// `FALSE AND x` is false and `TRUE OR x` true, whatever x is.
bool decidesAlone(const Expression& node, const Expression& operand)
{
    if (!isLiteral(operand) || (node.kind != ExpressionKind::And && node.kind != ExpressionKind::Or))
        return false;
    const Truth truth = truthOf(operand.literal);
    return truth == truthOf(node.kind == ExpressionKind::Or);
}

// Replaces what does not depend on a row by its value. An error waits until the value is asked for: it
// may never be.
void foldConstants(Expression& node, const Scope& scope)
{
    if (isLiteral(node) || node.kind == ExpressionKind::Name || node.kind == ExpressionKind::Aggregate)
        return;
    try {
        const auto decisive = std::find_if(node.operands.begin(), node.operands.end(),
            [&](const Expression& operand) { return decidesAlone(node, operand); });
        if (decisive != node.operands.end())
            makeLiteral(node, valueOf(truthOf(node.kind == ExpressionKind::Or)));
        else if (std::all_of(node.operands.begin(), node.operands.end(), isLiteral))
            makeLiteral(node, Evaluator(scope).value(node, nullptr));
    } catch (const Error&) {
        return;
    }
}

// As arithmetic() computes: a date and a number are a date, the difference of two dates a number. Whole
// numbers are announced as Long, although a sum that is too large for one comes as a Double.
ColumnType typeOfArithmetic(const Expression& node, const Scope& scope)
{
    const ColumnType a = typeOf(node.operands[0], scope);
    const ColumnType b = typeOf(node.operands[1], scope);
    const auto whole = [](ColumnType type) {
        return type == ColumnType::Byte || type == ColumnType::Integer || type == ColumnType::Long ||
            type == ColumnType::Boolean;
    };
    switch (node.op) {
    case Operator::Add:
        if (isText(a) && isText(b))
            return a == ColumnType::Memo || b == ColumnType::Memo ? ColumnType::Memo : ColumnType::Text;
        [[fallthrough]];
    case Operator::Subtract:
        if (a == ColumnType::Date || b == ColumnType::Date)
            return a == b || (node.op == Operator::Subtract && b == ColumnType::Date) ? ColumnType::Double
                                                                                      : ColumnType::Date;
        [[fallthrough]];
    case Operator::Multiply:
        return whole(a) && whole(b) ? ColumnType::Long : ColumnType::Double;
    case Operator::WholeDivide:
    case Operator::Modulo:
        return ColumnType::Long;
    default:
        return ColumnType::Double;
    }
}

ColumnType typeOfValue(const Value& value)
{
    struct Types {
        ColumnType operator()(Null) const { return ColumnType::Text; }
        ColumnType operator()(bool) const { return ColumnType::Boolean; }
        ColumnType operator()(std::int32_t) const { return ColumnType::Long; }
        ColumnType operator()(std::int64_t) const { return ColumnType::BigInteger; }
        ColumnType operator()(float) const { return ColumnType::Single; }
        ColumnType operator()(double) const { return ColumnType::Double; }
        ColumnType operator()(Date) const { return ColumnType::Date; }
        ColumnType operator()(Currency) const { return ColumnType::Currency; }
        ColumnType operator()(const Decimal&) const { return ColumnType::Decimal; }
        ColumnType operator()(const Guid&) const { return ColumnType::Guid; }
        ColumnType operator()(const std::u16string& text) const
        {
            return text.size() > 255 ? ColumnType::Memo : ColumnType::Text;
        }
        ColumnType operator()(const Bytes&) const { return ColumnType::Binary; }
    };
    return std::visit(Types{}, value);
}

ColumnType typeOfCall(const Expression& call, const Scope& scope)
{
    switch (call.function) {
    case Function::Mid:
    case Function::Left:
    case Function::Right:
    case Function::UCase:
    case Function::LCase:
    case Function::Trim:
    case Function::LTrim:
    case Function::RTrim:
    case Function::CStr:
        return typeOf(call.operands[0], scope) == ColumnType::Memo ? ColumnType::Memo : ColumnType::Text;
    case Function::Iif: {
        const ColumnType a = typeOf(call.operands[1], scope);
        const ColumnType b = typeOf(call.operands[2], scope);
        const bool firstIsNull = isLiteral(call.operands[1]) && isNull(call.operands[1].literal);
        if (firstIsNull || (a == ColumnType::Text && b == ColumnType::Memo))
            return b;
        return a;
    }
    case Function::Now:
    case Function::Date:
    case Function::Time:
    case Function::CDate:
        return ColumnType::Date;
    case Function::CDbl:
        return ColumnType::Double;
    case Function::IsNull:
    case Function::IsDate:
        return ColumnType::Integer;
    default: // LEN, INSTR, CLNG
        return ColumnType::Long;
    }
}

ColumnType typeOfAggregate(const Expression& aggregate, const Scope& scope)
{
    if (aggregate.function == Function::Count)
        return ColumnType::Long;
    if (aggregate.function == Function::Min || aggregate.function == Function::Max)
        return typeOf(aggregate.operands[0], scope);
    return ColumnType::Double;
}

} // namespace

std::optional<std::size_t> findColumn(
    const Scope& scope, const std::u16string& qualifier, const std::u16string& name)
{
    if (!scope.table)
        return std::nullopt;
    // Where a table has an alias its own name means nothing any more.
    const std::u16string& known = scope.alias.empty() ? scope.table->name() : scope.alias;
    if (!qualifier.empty() && !sameName(qualifier, known, scope))
        return std::nullopt;
    return scope.table->columnIndex(name);
}

void bind(Expression& expression, const Scope& scope)
{
    if (expression.kind == ExpressionKind::Name)
        return bindName(expression, scope);
    if (expression.kind == ExpressionKind::Aggregate)
        return bindAggregate(expression, scope);
    for (Expression& operand : expression.operands)
        bind(operand, scope);
    checkComparison(expression, scope);
    foldConstants(expression, scope);
    if (expression.kind == ExpressionKind::Like && isLiteral(expression.operands[1]) &&
        !isNull(expression.operands[1].literal))
        expression.pattern = std::make_shared<const LikePattern>(textOf(expression.operands[1].literal));
}

ColumnType typeOf(const Expression& expression, const Scope& scope)
{
    switch (expression.kind) {
    case ExpressionKind::Literal:
        return typeOfValue(expression.literal);
    case ExpressionKind::Name:
        assert(scope.table != nullptr && expression.column);
        return scope.table->definition().columns[*expression.column].valueType;
    case ExpressionKind::Negate: {
        const ColumnType type = typeOf(expression.operands[0], scope);
        return isText(type) ? ColumnType::Double : type;
    }
    case ExpressionKind::Plus:
        return typeOf(expression.operands[0], scope);
    case ExpressionKind::Arithmetic:
        return typeOfArithmetic(expression, scope);
    case ExpressionKind::Concat:
        return std::any_of(expression.operands.begin(), expression.operands.end(),
                   [&](const Expression& operand) { return typeOf(operand, scope) == ColumnType::Memo; })
            ? ColumnType::Memo
            : ColumnType::Text;
    case ExpressionKind::Call:
        return typeOfCall(expression, scope);
    case ExpressionKind::Aggregate:
        return typeOfAggregate(expression, scope);
    default:
        return ColumnType::Integer;
    }
}

bool isConstant(const Expression& expression)
{
    return isLiteral(expression);
}

const Expression* columnOutsideAggregates(const Expression& expression)
{
    if (expression.kind == ExpressionKind::Name)
        return &expression;
    if (expression.kind == ExpressionKind::Aggregate)
        return nullptr;
    for (const Expression& operand : expression.operands)
        if (const Expression* found = columnOutsideAggregates(operand))
            return found;
    return nullptr;
}

} // namespace vellums::jet::sql

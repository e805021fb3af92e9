// Values and truths are two views of one tree. Conditions are computed as one of three truths and become -1,
// 0 or NULL only where somebody asks for the value; any number may be asked for its truth. NULL goes through
// operators and comparisons; a condition is met only when it is true, so an unknown one keeps no row.
//
// Nothing is read that the answer does not need, for speed, and because IIF and AND must be able to shield
// an expression from rows for which it would be an error.
#include "jet/sql/run/evaluator.h"

#include "jet/sql/values/conversion.h"
#include "jet/sql/values/functions.h"

#include <cassert>

namespace vellums::jet::sql {

Value Evaluator::value(const Expression& expression, const Row* row) const
{
    switch (expression.kind) {
    case ExpressionKind::Literal:
        return expression.literal;
    case ExpressionKind::Name:
        assert(row != nullptr && expression.column);
        return row->value(*expression.column);
    case ExpressionKind::Aggregate:
        assert(aggregates_ != nullptr && *expression.aggregate < aggregates_->size());
        return (*aggregates_)[*expression.aggregate];
    case ExpressionKind::Negate:
        return negated(value(expression.operands[0], row));
    case ExpressionKind::Plus:
        return value(expression.operands[0], row);
    case ExpressionKind::Arithmetic:
        return arithmetic(
            expression.op, value(expression.operands[0], row), value(expression.operands[1], row));
    case ExpressionKind::Concat:
        return concat(expression, row);
    case ExpressionKind::Call:
        return call(expression, row);
    default:
        return valueOf(truth(expression, row));
    }
}

Truth Evaluator::truth(const Expression& expression, const Row* row) const
{
    Truth result = Truth::Unknown;
    switch (expression.kind) {
    case ExpressionKind::Compare:
        return compare(expression.op, value(expression.operands[0], row), value(expression.operands[1], row),
            scope_.sortOrder);
    case ExpressionKind::Like:
        result = like(expression, row);
        break;
    case ExpressionKind::In:
        result = in(expression, row);
        break;
    case ExpressionKind::Between:
        result = between(expression, row);
        break;
    case ExpressionKind::IsNull:
        result = truthOf(isNullValue(expression.operands[0], row));
        break;
    case ExpressionKind::Not:
        return negate(truth(expression.operands[0], row));
    case ExpressionKind::And:
    case ExpressionKind::Or:
        return andOr(expression, row);
    case ExpressionKind::Xor:
    case ExpressionKind::Eqv:
    case ExpressionKind::Imp:
        return pair(expression, row);
    default:
        return truthOf(value(expression, row));
    }
    return expression.negated ? negate(result) : result;
}

// NULL is an empty text here, unless everything is NULL.
Value Evaluator::concat(const Expression& expression, const Row* row) const
{
    std::u16string text;
    bool allNull = true;
    for (const Expression& operand : expression.operands) {
        const Value part = value(operand, row);
        allNull = allNull && isNull(part);
        text += textOf(part);
    }
    if (allNull)
        return Null{};
    return text;
}

Value Evaluator::call(const Expression& expression, const Row* row) const
{
    if (expression.function == Function::Iif) {
        const bool first = truth(expression.operands[0], row) == Truth::True;
        return value(expression.operands[first ? 1 : 2], row);
    }
    std::vector<Value> arguments;
    arguments.reserve(expression.operands.size());
    for (const Expression& operand : expression.operands)
        arguments.push_back(value(operand, row));
    return callFunction(expression.function, arguments, scope_.now);
}

// The common case, a column and a constant pattern, looks at the stored bytes and makes no text.
Truth Evaluator::like(const Expression& expression, const Row* row) const
{
    const Expression& text = expression.operands[0];
    const bool textColumn = text.column && isText(scope_.table->definition().columns[*text.column].valueType);
    if (expression.pattern && textColumn) {
        if (row->isNull(*text.column))
            return Truth::Unknown;
        return truthOf(expression.pattern->matches(row->text(*text.column, scratch_)));
    }
    const Value left = value(text, row);
    if (isNull(left))
        return Truth::Unknown;
    if (expression.pattern)
        return truthOf(expression.pattern->matches(textOf(left)));
    const Value pattern = value(expression.operands[1], row);
    if (isNull(pattern))
        return Truth::Unknown;
    return truthOf(LikePattern(textOf(pattern)).matches(textOf(left)));
}

// As `a = b OR a = c OR ...`: one NULL in the list makes unknown what would be false.
Truth Evaluator::in(const Expression& expression, const Row* row) const
{
    const Value left = value(expression.operands[0], row);
    if (isNull(left))
        return Truth::Unknown;
    Truth result = Truth::False;
    for (std::size_t i = 1; i < expression.operands.size(); ++i) {
        const Truth equal =
            compare(Operator::Equal, left, value(expression.operands[i], row), scope_.sortOrder);
        if (equal == Truth::True)
            return equal;
        if (equal == Truth::Unknown)
            result = equal;
    }
    return result;
}

// As `a >= b AND a <= c`: false as soon as one side is, even where the other is unknown.
Truth Evaluator::between(const Expression& expression, const Row* row) const
{
    const Value middle = value(expression.operands[0], row);
    const Truth low =
        compare(Operator::GreaterOrEqual, middle, value(expression.operands[1], row), scope_.sortOrder);
    const Truth high =
        compare(Operator::LessOrEqual, middle, value(expression.operands[2], row), scope_.sortOrder);
    if (low == Truth::False || high == Truth::False)
        return Truth::False;
    return low == Truth::True ? high : low;
}

// One operand of the decisive kind (false for AND, true for OR) decides, whatever the others are.
Truth Evaluator::andOr(const Expression& expression, const Row* row) const
{
    const Truth decisive = truthOf(expression.kind == ExpressionKind::Or);
    Truth result = negate(decisive);
    for (const Expression& operand : expression.operands) {
        const Truth one = truth(operand, row);
        if (one == decisive)
            return one;
        if (one == Truth::Unknown)
            result = one;
    }
    return result;
}

Truth Evaluator::pair(const Expression& expression, const Row* row) const
{
    const Truth left = truth(expression.operands[0], row);
    const Truth right = truth(expression.operands[1], row);
    if (expression.kind == ExpressionKind::Imp) {
        if (left == Truth::False || right == Truth::True)
            return Truth::True;
        return left == Truth::True ? right : Truth::Unknown;
    }
    if (left == Truth::Unknown || right == Truth::Unknown)
        return Truth::Unknown;
    return truthOf((left == right) == (expression.kind == ExpressionKind::Eqv));
}

bool Evaluator::isNullValue(const Expression& expression, const Row* row) const
{
    if (expression.column)
        return row->isNull(*expression.column);
    return isNull(value(expression, row));
}

} // namespace vellums::jet::sql

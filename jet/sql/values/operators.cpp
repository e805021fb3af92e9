// NULL on either side makes NULL of every operation here. Whole numbers are computed in 64 bits, in which no
// sum or product of two Longs overflows, and come back as Longs while they fit, else as Doubles. All else is
// computed as Doubles; a result that is none (infinite, or no number) is a mismatch, and so is dividing by
// zero.
#include "jet/sql/values/operators.h"

#include "jet/index/collation.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/dateForm.h"
#include "jet/sql/values/decimalForm.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

namespace vellums::jet::sql {

namespace {

Value finite(double number)
{
    if (!std::isfinite(number))
        throwTypeMismatch();
    return number;
}

Value dateValue(double days)
{
    if (!std::isfinite(days) || !isDateInRange(days))
        throwTypeMismatch();
    return Date{days};
}

std::optional<std::int64_t> wholeOf(const Value& value)
{
    if (const auto* number = std::get_if<std::int32_t>(&value))
        return *number;
    if (const auto* boolean = std::get_if<bool>(&value))
        return *boolean ? -1 : 0;
    return std::nullopt;
}

// Sums and products of whole numbers stay whole while they fit.
Value longOrDouble(std::int64_t number)
{
    if (number >= std::numeric_limits<std::int32_t>::min() &&
        number <= std::numeric_limits<std::int32_t>::max())
        return static_cast<std::int32_t>(number);
    return static_cast<double>(number);
}

// Where both have exact digits these decide; else their doubles, in which a Currency may lose its last
// places.
std::strong_ordering compareNumbers(const Value& a, const Value& b)
{
    const std::optional<Digits> p = exactDigits(a);
    const std::optional<Digits> q = exactDigits(b);
    if (p && q)
        return compareDigits(*p, *q);
    const double x = numberOf(a);
    const double y = numberOf(b);
    return x < y ? std::strong_ordering::less
        : x > y  ? std::strong_ordering::greater
                 : std::strong_ordering::equal;
}

Value addOrSubtract(Operator op, const Value& a, const Value& b)
{
    const bool add = op == Operator::Add;
    if (add && std::holds_alternative<std::u16string>(a) && std::holds_alternative<std::u16string>(b))
        return std::get<std::u16string>(a) + std::get<std::u16string>(b);
    const std::optional<std::int64_t> x = wholeOf(a);
    const std::optional<std::int64_t> y = wholeOf(b);
    if (x && y)
        return longOrDouble(add ? *x + *y : *x - *y);
    const double left = numberOf(a);
    const double right = numberOf(b);
    const double result = add ? left + right : left - right;
    // A date and a number make a date; two dates, or a number less a date, make a number.
    const bool dateA = std::holds_alternative<Date>(a);
    const bool dateB = std::holds_alternative<Date>(b);
    if (dateA != dateB && (dateA || add))
        return dateValue(result);
    return finite(result);
}

// Whole-number division and remainder round both sides first.
Value wholeDivision(Operator op, const Value& a, const Value& b)
{
    const std::optional<std::int32_t> x = roundedLong(numberOf(a));
    const std::optional<std::int32_t> y = roundedLong(numberOf(b));
    if (!x || !y || *y == 0)
        throwTypeMismatch();
    const std::int64_t left = *x;
    return longOrDouble(op == Operator::WholeDivide ? left / *y : left % *y);
}

} // namespace

Value valueOf(Truth truth)
{
    if (truth == Truth::Unknown)
        return Null{};
    return truth == Truth::True ? -1 : 0;
}

Truth truthOf(const Value& value)
{
    return isNull(value) ? Truth::Unknown : truthOf(numberOf(value) != 0);
}

std::strong_ordering compareValues(const Value& a, const Value& b, SortOrder order)
{
    const ValueKind kind = kindOf(a);
    if (kind != kindOf(b))
        throwTypeMismatch();
    if (kind == ValueKind::Number)
        return compareNumbers(a, b);
    if (kind == ValueKind::Bytes) {
        const Bytes& x = std::get<Bytes>(a);
        const Bytes& y = std::get<Bytes>(b);
        return std::lexicographical_compare_three_way(x.begin(), x.end(), y.begin(), y.end());
    }
    const auto* x = std::get_if<std::u16string>(&a);
    const auto* y = std::get_if<std::u16string>(&b);
    if (x && y)
        return compareTexts(*x, *y, order);
    return compareTexts(textOf(a), textOf(b), order);
}

Truth compare(Operator op, const Value& a, const Value& b, SortOrder order)
{
    if (isNull(a) || isNull(b))
        return Truth::Unknown;
    const std::strong_ordering result = compareValues(a, b, order);
    switch (op) {
    case Operator::Equal:
        return truthOf(result == 0);
    case Operator::NotEqual:
        return truthOf(result != 0);
    case Operator::Less:
        return truthOf(result < 0);
    case Operator::Greater:
        return truthOf(result > 0);
    case Operator::LessOrEqual:
        return truthOf(result <= 0);
    default:
        assert(op == Operator::GreaterOrEqual);
        return truthOf(result >= 0);
    }
}

Value arithmetic(Operator op, const Value& a, const Value& b)
{
    if (isNull(a) || isNull(b))
        return Null{};
    switch (op) {
    case Operator::Add:
    case Operator::Subtract:
        return addOrSubtract(op, a, b);
    case Operator::Multiply: {
        const std::optional<std::int64_t> x = wholeOf(a);
        const std::optional<std::int64_t> y = wholeOf(b);
        return x && y ? longOrDouble(*x * *y) : finite(numberOf(a) * numberOf(b));
    }
    case Operator::Divide: {
        const double divisor = numberOf(b);
        if (divisor == 0)
            throwTypeMismatch();
        return finite(numberOf(a) / divisor);
    }
    case Operator::WholeDivide:
    case Operator::Modulo:
        return wholeDivision(op, a, b);
    default:
        assert(op == Operator::Power);
        return finite(std::pow(numberOf(a), numberOf(b)));
    }
}

Value negated(const Value& value)
{
    if (isNull(value))
        return value;
    if (const std::optional<std::int64_t> whole = wholeOf(value))
        return longOrDouble(-*whole);
    if (const auto* currency = std::get_if<Currency>(&value))
        if (currency->tenThousandths != std::numeric_limits<std::int64_t>::min())
            return Currency{-currency->tenThousandths};
    if (const auto* date = std::get_if<Date>(&value))
        return dateValue(-date->days);
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        Decimal result = *decimal;
        result.negative = !result.negative && !digitsOf(result).digits.empty();
        return result;
    }
    return finite(-numberOf(value));
}

} // namespace vellums::jet::sql

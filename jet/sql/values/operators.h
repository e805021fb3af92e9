// What operators make of two values.
#pragma once

#include "jet/file/header.h"
#include "jet/table/value.h"

#include <compare>

namespace vellums::jet::sql {

enum class Operator {
    None,
    Power,
    Multiply,
    Divide,
    WholeDivide,
    Modulo,
    Add,
    Subtract,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessOrEqual,
    GreaterOrEqual,
};

// The third value of logic is that of NULL.
enum class Truth { False, True, Unknown };

inline Truth truthOf(bool value)
{
    return value ? Truth::True : Truth::False;
}
inline Truth negate(Truth value)
{
    return value == Truth::Unknown ? value : truthOf(value == Truth::False);
}

// -1, 0 or NULL.
Value valueOf(Truth truth);
// Any number may be a condition. Throws (mismatch) for texts that are no numbers and for bytes.
Truth truthOf(const Value& value);

// Throws (mismatch) when the two are of different kinds. Neither may be NULL.
std::strong_ordering compareValues(const Value& a, const Value& b, SortOrder order);

Truth compare(Operator op, const Value& a, const Value& b, SortOrder order);

// All throw Error (mismatch), for overflow and division by zero too.
Value arithmetic(Operator op, const Value& a, const Value& b);
Value negated(const Value& value);

} // namespace vellums::jet::sql

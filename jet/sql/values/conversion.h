// Values turned into other types: inside expressions, and for the column that takes them.
#pragma once

#include "jet/table/tableDefinition.h"
#include "jet/table/value.h"

#include <optional>
#include <string>
#include <string_view>

namespace vellums::jet::sql {

// The sides that values take in comparisons.
enum class ValueKind { Null, Number, Text, Bytes }; // dates and booleans are numbers, GUIDs are texts
ValueKind kindOf(const Value& value);
ValueKind kindOf(ColumnType type);

// As for `&`: numbers in their shortest form of 15 digits, booleans as -1 and 0, dates by dateToText,
// GUIDs in braces; NULL is empty. Throws (mismatch) for bytes.
std::u16string textOf(const Value& value);

// As for arithmetic. Throws (mismatch) for a text that is no number and for bytes; `value` is not NULL.
double numberOf(const Value& value);
// A text that reads as a number; nullopt otherwise.
std::optional<double> readNumber(std::u16string_view text);
// Rounded to a whole number, halves to the even one; nullopt outside of 32 bits.
std::optional<std::int32_t> roundedLong(double number);

// As date columns and CDATE take it. Nothing: a number outside the years 100 to 9999. Throws (mismatch) for
// what is no date at all.
std::optional<Date> dateOf(const Value& value);

// The value as the column holds it. Throws Error: mismatch, overflow. Lengths, NULL and empty texts are
// the table's affair.
Value coerceFor(const Column& column, Value value);

} // namespace vellums::jet::sql

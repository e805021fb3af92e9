// Exact decimals, by their digits.
#pragma once

#include "jet/table/value.h"

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace vellums::jet::sql {

// A number in decimal digits without superfluous zeros: value = 0.digits * 10^exponent. Zero has no
// digits.
struct Digits {
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

Digits digitsOf(const Decimal& value);
Digits digitsOf(std::int64_t value, int decimals = 0); // value / 10^decimals
// Of what a double would round: a Decimal, a Currency, a whole number of 64 bits. Any other has none.
std::optional<Digits> exactDigits(const Value& value);
// Reads [+-]digits[.digits][E[+-]digits] with blanks around; nullopt for anything else.
std::optional<Digits> readDigits(std::u16string_view text);

std::strong_ordering compareDigits(const Digits& a, const Digits& b);

// In plain decimal form.
std::u16string digitsToText(const Digits& digits);

// Rounds half away from zero to `scale` decimals; nullopt when there would be more than `precision` digits.
std::optional<Decimal> toDecimal(Digits digits, int precision, int scale);

double toDouble(const Digits& digits);

} // namespace vellums::jet::sql

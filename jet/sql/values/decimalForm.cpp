// Exact decimals as strings of digits, for the few places where a double is not enough. Always normalized:
// the first and the last digit are not 0, so equal numbers have equal digits and exponents, and numbers of
// equal exponents compare like their digits as texts.
#include "jet/sql/values/decimalForm.h"

#include "jet/sql/values/asciiUnits.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace vellums::jet::sql {

namespace {

constexpr int kFarExponent = 100000; // beyond any number that a column can hold

// Takes leading and trailing zeros off.
void normalize(Digits& number)
{
    const std::size_t first = number.digits.find_first_not_of('0');
    if (first == std::string::npos) {
        number = {};
        return;
    }
    number.exponent -= static_cast<int>(first);
    number.digits.erase(0, first);
    number.digits.erase(number.digits.find_last_not_of('0') + 1);
}

Digits fromInteger(std::string digits, bool negative, int decimals)
{
    Digits number;
    number.negative = negative;
    number.exponent = static_cast<int>(digits.size()) - decimals;
    number.digits = std::move(digits);
    normalize(number);
    return number;
}

std::u16string_view trimmed(std::u16string_view text)
{
    constexpr std::u16string_view kBlanks = u" \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

} // namespace

// Long division by 10, a digit from the right at a time: at most 39 of them.
Digits digitsOf(const Decimal& value)
{
    std::array<std::uint32_t, 4> rest = value.magnitude;
    std::string digits;
    while (std::any_of(rest.begin(), rest.end(), [](std::uint32_t word) { return word != 0; })) {
        std::uint64_t carry = 0;
        for (std::uint32_t& word : rest) {
            const std::uint64_t part = carry << 32 | word;
            word = static_cast<std::uint32_t>(part / 10);
            carry = part % 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + carry));
    }
    return fromInteger(std::move(digits), value.negative, value.scale);
}

Digits digitsOf(std::int64_t value, int decimals)
{
    const bool negative = value < 0;
    const auto magnitude = // of the lowest number too, which has no positive counterpart
        negative ? ~static_cast<std::uint64_t>(value) + 1 : static_cast<std::uint64_t>(value);
    return fromInteger(std::to_string(magnitude), negative, decimals);
}

std::optional<Digits> exactDigits(const Value& value)
{
    if (const auto* decimal = std::get_if<Decimal>(&value))
        return digitsOf(*decimal);
    if (const auto* currency = std::get_if<Currency>(&value))
        return digitsOf(currency->tenThousandths, 4);
    if (const auto* whole = std::get_if<std::int64_t>(&value))
        return digitsOf(*whole);
    return std::nullopt;
}

std::optional<Digits> readDigits(std::u16string_view text)
{
    text = trimmed(text);
    Digits number;
    std::size_t at = 0;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
        number.negative = text[at++] == u'-';
    for (; at < text.size() && isDigit(text[at]); ++at) {
        number.digits += static_cast<char>(text[at]);
        ++number.exponent;
    }
    if (at < text.size() && text[at] == u'.')
        for (++at; at < text.size() && isDigit(text[at]); ++at)
            number.digits += static_cast<char>(text[at]);
    if (number.digits.empty())
        return std::nullopt;
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        const bool down = at < text.size() && text[at] == u'-';
        if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
            ++at;
        if (at == text.size())
            return std::nullopt;
        int exponent = 0;
        for (; at < text.size() && isDigit(text[at]); ++at)
            exponent = std::min(kFarExponent, exponent * 10 + (text[at] - u'0'));
        number.exponent += down ? -exponent : exponent;
    }
    if (at != text.size())
        return std::nullopt;
    normalize(number);
    return number;
}

std::strong_ordering compareDigits(const Digits& a, const Digits& b)
{
    if (a.negative != b.negative)
        return a.negative ? std::strong_ordering::less : std::strong_ordering::greater;
    if (a.negative) {
        const Digits plainA{false, a.digits, a.exponent};
        const Digits plainB{false, b.digits, b.exponent};
        return compareDigits(plainB, plainA);
    }
    if (a.digits.empty() || b.digits.empty())
        return a.digits.size() <=> b.digits.size();
    if (a.exponent != b.exponent)
        return a.exponent <=> b.exponent;
    return a.digits <=> b.digits;
}

std::u16string digitsToText(const Digits& number)
{
    if (number.digits.empty())
        return u"0";
    std::string text = number.negative ? "-" : "";
    const auto count = static_cast<int>(number.digits.size());
    if (number.exponent <= 0)
        text += "0." + std::string(static_cast<std::size_t>(-number.exponent), '0') + number.digits;
    else if (number.exponent >= count)
        text += number.digits + std::string(static_cast<std::size_t>(number.exponent - count), '0');
    else
        text += number.digits.substr(0, static_cast<std::size_t>(number.exponent)) + "." +
            number.digits.substr(static_cast<std::size_t>(number.exponent));
    return {text.begin(), text.end()};
}

// First the digits behind the last place go, with a carry that may run through to a new first digit; then
// zeros are filled up to the last place, and the whole is read as one number of 128 bits.
std::optional<Decimal> toDecimal(Digits number, int precision, int scale)
{
    if (number.exponent > precision)
        return std::nullopt;
    const int kept = number.exponent + scale; // digits that stay
    if (kept < 0)
        number.digits.clear();
    else if (static_cast<std::size_t>(kept) < number.digits.size()) {
        const bool up = number.digits[static_cast<std::size_t>(kept)] >= '5';
        number.digits.resize(static_cast<std::size_t>(kept));
        if (up) {
            std::size_t at = number.digits.size();
            while (at > 0 && number.digits[at - 1] == '9')
                number.digits[--at] = '0';
            if (at > 0)
                ++number.digits[at - 1];
            else {
                number.digits.insert(number.digits.begin(), '1');
                ++number.exponent;
            }
        }
    }
    const int places = number.exponent + scale;
    if (!number.digits.empty())
        number.digits.resize(static_cast<std::size_t>(std::max(places, 0)), '0');
    if (number.digits.size() > static_cast<std::size_t>(precision))
        return std::nullopt;
    Decimal result;
    result.scale = static_cast<std::uint8_t>(scale);
    for (const char digit : number.digits) {
        std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
        for (std::size_t word = result.magnitude.size(); word-- > 0;) {
            const std::uint64_t part = static_cast<std::uint64_t>(result.magnitude[word]) * 10 + carry;
            result.magnitude[word] = static_cast<std::uint32_t>(part);
            carry = part >> 32;
        }
        if (carry != 0)
            return std::nullopt;
    }
    result.negative = number.negative && result.magnitude != std::array<std::uint32_t, 4>{};
    return result;
}

// By way of a text, since reading one rounds once and rightly.
double toDouble(const Digits& number)
{
    if (number.digits.empty())
        return 0;
    const std::string text = "0." + number.digits + "e" + std::to_string(number.exponent);
    double value = 0;
    const std::from_chars_result read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec != std::errc())
        value = number.exponent > 0 ? std::numeric_limits<double>::infinity() : 0;
    return number.negative ? -value : value;
}

} // namespace vellums::jet::sql

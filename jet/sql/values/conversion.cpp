// Numbers go through double where a double holds them, and through their decimal digits where it does not:
// currencies, decimals and whole numbers of 64 bits are made from digits and turned into digits, so no last
// place is lost on the way. A Double becomes digits by its form of up to 15, as it is displayed.
//
// Rounding to whole numbers takes halves to the even neighbour, as the providers do; rounding to decimals
// takes them away from zero (decimalForm.h).
#include "jet/sql/values/conversion.h"

#include "jet/sql/values/asciiUnits.h"
#include "jet/sql/values/dateForm.h"
#include "jet/sql/values/dateText.h"
#include "jet/sql/values/decimalForm.h"
#include "jet/sql/values/sqlError.h"
#include "text/decimal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vellums::jet::sql {

namespace {

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

// Enough for any number in general form.
constexpr std::size_t kNumberBuffer = 64;

std::u16string generalForm(double number, int digits)
{
    if (number == 0)
        return u"0";
    std::array<char, kNumberBuffer> buffer{};
    const std::to_chars_result end = std::to_chars(
        buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, digits);
    std::u16string text(buffer.data(), end.ptr);
    return capitals(text);
}

// Does not depend on the rounding mode of the machine. Of large numbers, which have no halves, `rest` is 0.
double roundedHalfEven(double number)
{
    const double below = std::floor(number);
    const double rest = number - below;
    if (rest != 0.5)
        return std::round(number);
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

int hexDigit(char16_t c)
{
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    const std::size_t place = kDigits.find(c >= u'a' && c <= u'f' ? static_cast<char16_t>(c - 0x20) : c);
    return place == std::u16string_view::npos ? -1 : static_cast<int>(place);
}

// Where the bytes of a GUID stand in its text, in the order of the text: it is a number of four bytes, two
// of two, little-endian, and eight bytes as they are.
constexpr std::array<std::size_t, 16> kGuidOrder{3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};

bool hyphenBefore(std::size_t byte)
{
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

std::u16string guidToText(const Guid& guid)
{
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    std::u16string text = u"{";
    for (std::size_t i = 0; i < kGuidOrder.size(); ++i) {
        if (hyphenBefore(i))
            text += u'-';
        const auto byte = static_cast<unsigned>(guid.bytes[kGuidOrder[i]]);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text + u"}";
}

std::optional<Guid> readGuid(std::u16string_view text)
{
    if (text.size() == 38 && text.front() == u'{' && text.back() == u'}')
        text = text.substr(1, 36);
    if (text.size() != 36)
        return std::nullopt;
    Guid guid;
    std::size_t at = 0;
    for (std::size_t i = 0; i < kGuidOrder.size(); ++i) {
        if (hyphenBefore(i) && text[at++] != u'-')
            return std::nullopt;
        const int high = hexDigit(text[at++]);
        const int low = hexDigit(text[at++]);
        if (high < 0 || low < 0)
            return std::nullopt;
        guid.bytes[kGuidOrder[i]] = static_cast<std::byte>(high << 4 | low);
    }
    return guid;
}

Digits digitsFrom(const Value& value)
{
    if (const std::optional<Digits> exact = exactDigits(value))
        return *exact;
    const std::optional<Digits> digits = std::holds_alternative<std::u16string>(value)
        ? readDigits(std::get<std::u16string>(value))
        : readDigits(generalForm(numberOf(value), 15));
    if (!digits)
        throwTypeMismatch();
    return *digits;
}

Value toBoolean(const Value& value)
{
    if (isNull(value))
        return false;
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        const std::u16string word = capitals(*text);
        if (word == u"TRUE" || word == u"YES" || word == u"ON")
            return true;
        if (word == u"FALSE" || word == u"NO" || word == u"OFF")
            return false;
    }
    return numberOf(value) != 0;
}

Value toWhole(const Value& value, double lowest, double highest)
{
    const double number = roundedHalfEven(numberOf(value));
    if (!(number >= lowest && number <= highest))
        throwOverflow();
    return static_cast<std::int32_t>(number);
}

// A number times a power of ten as a whole number of 64 bits, from its digits: no bit is lost.
std::int64_t toScaled(const Value& value, int decimals)
{
    const std::optional<Decimal> scaled = toDecimal(digitsFrom(value), 38, decimals);
    if (!scaled || scaled->magnitude[0] != 0 || scaled->magnitude[1] != 0)
        throwOverflow();
    const std::uint64_t magnitude =
        static_cast<std::uint64_t>(scaled->magnitude[2]) << 32 | scaled->magnitude[3];
    constexpr std::uint64_t kHighest = std::numeric_limits<std::int64_t>::max();
    if (magnitude > kHighest + (scaled->negative ? 1 : 0))
        throwOverflow();
    return static_cast<std::int64_t>(scaled->negative ? ~magnitude + 1 : magnitude);
}

Value toSingle(const Value& value)
{
    const double number = numberOf(value);
    if (std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max()))
        throwOverflow();
    return static_cast<float>(number);
}

Value toDate(const Value& value)
{
    const std::optional<Date> date = dateOf(value);
    if (!date)
        throwOverflow();
    return *date;
}

Value toGuid(const Value& value)
{
    if (std::holds_alternative<Guid>(value))
        return value;
    const auto* text = std::get_if<std::u16string>(&value);
    const std::optional<Guid> guid = text ? readGuid(*text) : std::nullopt;
    if (!guid)
        throwTypeMismatch();
    return *guid;
}

Value toDecimalOf(const Column& column, const Value& value)
{
    const std::optional<Decimal> decimal = toDecimal(digitsFrom(value), column.precision, column.scale);
    if (!decimal)
        throwOverflow();
    return *decimal;
}

} // namespace

ValueKind kindOf(const Value& value)
{
    if (isNull(value))
        return ValueKind::Null;
    if (std::holds_alternative<std::u16string>(value) || std::holds_alternative<Guid>(value))
        return ValueKind::Text;
    return std::holds_alternative<Bytes>(value) ? ValueKind::Bytes : ValueKind::Number;
}

ValueKind kindOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Guid:
        return ValueKind::Text;
    case ColumnType::Boolean:
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Currency:
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::Date:
    case ColumnType::Decimal:
    case ColumnType::BigInteger:
        return ValueKind::Number;
    default:
        return ValueKind::Bytes;
    }
}

std::u16string textOf(const Value& value)
{
    return std::visit(Overloaded{
                          [](Null) { return std::u16string(); },
                          [](bool b) { return std::u16string(b ? u"-1" : u"0"); },
                          [](std::int32_t n) { return text::decimal(n); },
                          [](std::int64_t n) { return text::decimal(n); },
                          [](float n) { return generalForm(static_cast<double>(n), 7); },
                          [](double n) { return generalForm(n, 15); },
                          [](Date d) { return dateToText(d); },
                          [](Currency c) { return digitsToText(digitsOf(c.tenThousandths, 4)); },
                          [](const Decimal& d) { return digitsToText(digitsOf(d)); },
                          [](const Guid& g) { return guidToText(g); },
                          [](const std::u16string& t) { return t; },
                          [](const Bytes&) -> std::u16string { throwTypeMismatch(); },
                      },
        value);
}

double numberOf(const Value& value)
{
    return std::visit(Overloaded{
                          [](Null) -> double { throwTypeMismatch(); },
                          [](bool b) { return b ? -1.0 : 0.0; },
                          [](std::int32_t n) { return static_cast<double>(n); },
                          [](std::int64_t n) { return static_cast<double>(n); },
                          [](float n) { return static_cast<double>(n); },
                          [](double n) { return n; },
                          [](Date d) { return d.days; },
                          [](Currency c) { return static_cast<double>(c.tenThousandths) / 10000; },
                          [](const Decimal& d) { return toDouble(digitsOf(d)); },
                          [](const Guid&) -> double { throwTypeMismatch(); },
                          [](const std::u16string& t) {
                              const std::optional<double> number = readNumber(t);
                              if (!number)
                                  throwTypeMismatch();
                              return *number;
                          },
                          [](const Bytes&) -> double { throwTypeMismatch(); },
                      },
        value);
}

std::optional<double> readNumber(std::u16string_view text)
{
    const std::optional<Digits> digits = readDigits(text);
    if (!digits)
        return std::nullopt;
    const double number = toDouble(*digits);
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<std::int32_t> roundedLong(double number)
{
    const double whole = roundedHalfEven(number);
    if (!(whole >= std::numeric_limits<std::int32_t>::min() &&
            whole <= std::numeric_limits<std::int32_t>::max()))
        return std::nullopt;
    return static_cast<std::int32_t>(whole);
}

std::optional<Date> dateOf(const Value& value)
{
    if (const auto* date = std::get_if<Date>(&value))
        return *date;
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        const std::optional<Date> read = readDateText(*text);
        if (!read)
            throwTypeMismatch();
        return read;
    }
    const double days = numberOf(value);
    return isDateInRange(days) ? std::optional(Date{days}) : std::nullopt;
}

Value coerceFor(const Column& column, Value value)
{
    if (column.type == ColumnType::Boolean) // has no NULL: it becomes false
        return toBoolean(value);
    if (isNull(value))
        return value;
    switch (column.type) {
    case ColumnType::Byte:
        return toWhole(value, 0, 255);
    case ColumnType::Integer:
        return toWhole(value, -32768, 32767);
    case ColumnType::Long:
        return toWhole(value, -2147483648.0, 2147483647.0);
    case ColumnType::Currency:
        return Currency{toScaled(value, 4)};
    case ColumnType::BigInteger:
        return toScaled(value, 0);
    case ColumnType::Single:
        return toSingle(value);
    case ColumnType::Double:
        return numberOf(value);
    case ColumnType::Date:
        return toDate(value);
    case ColumnType::Decimal:
        return toDecimalOf(column, value);
    case ColumnType::Guid:
        return toGuid(value);
    case ColumnType::Text:
    case ColumnType::Memo:
        if (std::holds_alternative<std::u16string>(value))
            return value;
        return textOf(value);
    default:
        if (!std::holds_alternative<Bytes>(value))
            throwTypeMismatch();
        return value;
    }
}

} // namespace vellums::jet::sql

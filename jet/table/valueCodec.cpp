// Values to bytes and back. Numbers lie little-endian, as in memory.
//
//   decimal   00, or 80 when negative; four numbers of four bytes, the most significant one first
//   text      UTF-16LE; or FF FE, then a byte for each unit from U+0001 to U+00FF
//
// In a text with FF FE a zero byte changes to two bytes a unit, the next one back, and so on. Such texts are
// read, never written: a text is compressed where all of its units fit, or not at all. A reader may use the
// bytes behind the mark as they lie while there is no zero among them, which storedText() finds out.
#include "jet/table/valueCodec.h"

#include "jet/file/codePageText.h"

#include <algorithm>
#include <limits>

namespace vellums::jet {
namespace {

constexpr std::byte kCompressedMark[] = {std::byte{0xFF}, std::byte{0xFE}};
constexpr std::size_t kDecimalBytes = 17;

Decimal decodeDecimal(ByteView bytes, std::uint8_t scale)
{
    Decimal decimal;
    decimal.negative = (load<std::uint8_t>(bytes, 0) & 0x80) != 0;
    for (std::size_t i = 0; i < 4; ++i)
        decimal.magnitude[i] = load<std::uint32_t>(bytes, 1 + 4 * i);
    decimal.scale = scale;
    return decimal;
}

// A date of the extended kind, 42 characters: nineteen digits of days since the year 1, a colon, twelve of
// seconds and seven of their fraction, ":7" and a zero. What breaks that form is given as it lies.
Value decodeExtendedDate(ByteView bytes)
{
    constexpr std::size_t kDaysDigits = 19;
    constexpr std::size_t kTimeDigits = 19;
    constexpr std::int64_t kDaysBefore = 693593; // from the first day of the year 1 to 30 December 1899
    constexpr std::int64_t kLastDay = 3652058;
    constexpr std::int64_t kTicksOfDay = 864'000'000'000;
    const auto number = [&](std::size_t at, std::size_t digits) -> std::optional<std::int64_t> {
        std::int64_t result = 0;
        for (std::size_t i = at; i < at + digits; ++i) {
            const int digit = std::to_integer<int>(bytes[i]) - '0';
            if (digit < 0 || digit > 9 || result > std::numeric_limits<std::int64_t>::max() / 10 - 9)
                return std::nullopt;
            result = result * 10 + digit;
        }
        return result;
    };
    const bool whole =
        bytes.size() == valueSize(ColumnType::ExtendedDate) && bytes[kDaysDigits] == std::byte{':'};
    const auto days = whole ? number(0, kDaysDigits) : std::nullopt;
    const auto ticks = whole ? number(kDaysDigits + 1, kTimeDigits) : std::nullopt;
    if (!days || !ticks || *days > kLastDay || *ticks >= kTicksOfDay)
        return Bytes(bytes.begin(), bytes.end());
    // The time counts away from zero on days before that zero.
    const std::int64_t day = *days - kDaysBefore;
    const double time = static_cast<double>(*ticks) / static_cast<double>(kTicksOfDay);
    return Date{static_cast<double>(day) + (day < 0 ? -time : time)};
}

// Compressed text that changes between one and two bytes a character, from the first zero byte on.
void decodeSwitching(ByteView bytes, Bytes& utf16)
{
    bool single = true;
    for (std::size_t i = 0; i < bytes.size();) {
        if (bytes[i] == std::byte{0}) {
            single = !single;
            ++i;
        } else if (single) {
            append<std::uint16_t>(utf16, std::to_integer<std::uint16_t>(bytes[i++]));
        } else if (i + 1 < bytes.size()) {
            append<std::uint16_t>(utf16, load<std::uint16_t>(bytes, i));
            i += 2;
        } else {
            break;
        }
    }
}

template <typename T>
T exactly(ByteView bytes)
{
    if (bytes.size() != sizeof(T))
        throwDamaged(u"a value has a length that does not fit its type");
    return load<T>(bytes, 0);
}

template <typename T>
Bytes bytesOf(T number)
{
    Bytes bytes;
    append<T>(bytes, number);
    return bytes;
}

template <typename T>
Bytes wholeNumber(const Value& value)
{
    const auto* number = std::get_if<std::int32_t>(&value);
    if (number == nullptr || *number < std::numeric_limits<T>::min() ||
        *number > std::numeric_limits<T>::max())
        throwTypeMismatch();
    return bytesOf(static_cast<T>(*number));
}

template <typename T>
const T& held(const Value& value)
{
    const T* const content = std::get_if<T>(&value);
    if (content == nullptr)
        throwTypeMismatch();
    return *content;
}

Bytes encodeDecimal(const Column& column, const Decimal& decimal)
{
    if (decimal.scale != column.scale)
        throwTypeMismatch();
    Bytes bytes;
    append<std::uint8_t>(bytes, decimal.negative ? 0x80 : 0);
    for (const std::uint32_t word : decimal.magnitude)
        append<std::uint32_t>(bytes, word);
    return bytes;
}

Bytes encodeTextColumn(const Column& column, const std::u16string& text)
{
    if (text.size() > column.length / 2u)
        throwFieldTooSmall();
    if (!column.isFixed())
        return encodeText(text, column.isCompressed());
    std::u16string padded = text;
    padded.resize(column.length / 2u, u' ');
    return encodeText(padded, false);
}

Bytes encodeBinary(const Column& column, const Bytes& content)
{
    if (content.size() > column.length)
        throwFieldTooSmall();
    Bytes bytes = content;
    if (column.isFixed())
        bytes.resize(column.length);
    return bytes;
}

} // namespace

Value decodeValue(const Column& column, ByteView bytes)
{
    switch (column.type) {
    case ColumnType::Boolean:
        return exactly<std::uint8_t>(bytes) != 0;
    case ColumnType::Byte:
        return std::int32_t{exactly<std::uint8_t>(bytes)};
    case ColumnType::Integer:
        return std::int32_t{exactly<std::int16_t>(bytes)};
    case ColumnType::Long:
    case ColumnType::Complex:
        return exactly<std::int32_t>(bytes);
    case ColumnType::Currency:
        return Currency{exactly<std::int64_t>(bytes)};
    case ColumnType::Single:
        return exactly<float>(bytes);
    case ColumnType::Double:
        return exactly<double>(bytes);
    case ColumnType::Date:
        return Date{exactly<double>(bytes)};
    case ColumnType::BigInteger:
        return exactly<std::int64_t>(bytes);
    case ColumnType::ExtendedDate:
        return decodeExtendedDate(bytes);
    case ColumnType::Guid:
        return exactly<Guid>(bytes);
    case ColumnType::Decimal:
        return decodeDecimal(slice(bytes, 0, kDecimalBytes), column.scale);
    case ColumnType::Text:
    case ColumnType::Memo: {
        Bytes scratch;
        return toText(column.isFixed() ? StoredText{false, bytes} : storedText(bytes, scratch));
    }
    default:
        return Bytes(bytes.begin(), bytes.end());
    }
}

Decimal decodePlainDecimal(ByteView bytes)
{
    Decimal decimal;
    decimal.scale = load<std::uint8_t>(bytes, 2);
    decimal.negative = (load<std::uint8_t>(bytes, 3) & 0x80) != 0;
    decimal.magnitude = {
        0, load<std::uint32_t>(bytes, 4), load<std::uint32_t>(bytes, 12), load<std::uint32_t>(bytes, 8)};
    return decimal;
}

Bytes encodeValue(const Column& column, const Value& value)
{
    switch (column.type) {
    case ColumnType::Byte:
        return wholeNumber<std::uint8_t>(value);
    case ColumnType::Integer:
        return wholeNumber<std::int16_t>(value);
    case ColumnType::Long:
        return bytesOf(held<std::int32_t>(value));
    case ColumnType::Currency:
        return bytesOf(held<Currency>(value).tenThousandths);
    case ColumnType::Single:
        return bytesOf(held<float>(value));
    case ColumnType::Double:
        return bytesOf(held<double>(value) + 0.0); // -0.0 would get a key of its own
    case ColumnType::Date:
        return bytesOf(held<Date>(value).days + 0.0);
    case ColumnType::BigInteger:
        return bytesOf(held<std::int64_t>(value));
    case ColumnType::Guid:
        return bytesOf(held<Guid>(value));
    case ColumnType::Decimal:
        return encodeDecimal(column, held<Decimal>(value));
    case ColumnType::Text:
        return encodeTextColumn(column, held<std::u16string>(value));
    case ColumnType::Binary:
        return encodeBinary(column, held<Bytes>(value));
    default:
        throwTypeMismatch();
    }
}

StoredText storedText(ByteView bytes, Bytes& scratch)
{
    if (bytes.size() < 2 || bytes[0] != kCompressedMark[0] || bytes[1] != kCompressedMark[1])
        return {false, bytes.first(bytes.size() / 2 * 2)};
    const ByteView body = bytes.subspan(2);
    if (body.empty() || std::memchr(body.data(), 0, body.size()) == nullptr)
        return {true, body};
    Bytes utf16;
    decodeSwitching(body, utf16);
    scratch = std::move(utf16);
    return {false, scratch};
}

// The bytes may lie in `scratch`.
StoredText storedCodePageText(ByteView bytes, std::uint16_t codePage, Bytes& scratch)
{
    if (std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b < std::byte{0x80}; }))
        return {true, bytes};
    const std::u16string text = codePageText(bytes, codePage);
    const ByteView units = std::as_bytes(std::span(text.data(), text.size()));
    scratch.assign(units.begin(), units.end());
    return {false, scratch};
}

std::u16string toText(const StoredText& text)
{
    std::u16string result;
    if (text.latin) {
        result.resize(text.bytes.size());
        std::transform(text.bytes.begin(), text.bytes.end(), result.begin(),
            [](std::byte b) { return static_cast<char16_t>(b); });
    } else {
        result.resize(text.bytes.size() / 2);
        if (!result.empty())
            std::memcpy(result.data(), text.bytes.data(), result.size() * 2);
    }
    return result;
}

Bytes encodeText(std::u16string_view text, bool compress)
{
    while (!text.empty() && text.front() == u'\xFEFF') // it would be taken for the mark of a compressed text
        text.remove_prefix(1);
    Bytes bytes;
    if (compress && text.size() > 2 &&
        std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= 0x01 && c <= 0xFF; })) {
        bytes.reserve(2 + text.size());
        append(bytes, kCompressedMark);
        for (const char16_t c : text)
            bytes.push_back(static_cast<std::byte>(c));
        return bytes;
    }
    append(bytes, std::as_bytes(std::span(text.data(), text.size())));
    return bytes;
}

} // namespace vellums::jet

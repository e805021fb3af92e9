// The key of a row is the parts of its columns one behind the other, so comparing two keys stops at the
// first column that differs. A part begins with a mark, below everything for NULL. Numbers of fixed length
// follow as they are; what has no fixed length is ended by two zero bytes, and a zero byte inside is
// followed by FF, so that the end sorts below every continuation. A descending part is inverted as a whole,
// mark and end included.
#include "jet/sql/run/sortKey.h"

#include "jet/index/collation.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/decimalForm.h"
#include "jet/table/valueCodec.h"

#include <algorithm>
#include <bit>

namespace vellums::jet::sql {

namespace {

constexpr char kNullMark = 0;
constexpr char kValueMark = 1;

// A zero byte becomes two bytes and two zero bytes end the part.
void appendBytes(std::string& key, ByteView bytes)
{
    for (const std::byte b : bytes) {
        key += static_cast<char>(b);
        if (b == std::byte{0})
            key += '\xFF';
    }
    key.append(2, '\0');
}

// Big-endian; a negative number is inverted, a positive one gets the top bit. Both zeros are one.
void appendNumber(std::string& key, double number)
{
    auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    bits = (bits & kSign) != 0 ? ~bits : bits | kSign;
    for (int shift = 56; shift >= 0; shift -= 8)
        key += static_cast<char>(bits >> shift & 0xFF);
}

// Numbers with more digits than a double holds: their double, then, since neighbours may share it, the power
// of ten and all digits. Those of negative numbers count backwards, and so does the end: more digits are a
// smaller number.
void appendExact(std::string& key, const Digits& digits)
{
    appendNumber(key, toDouble(digits));
    const int power = 0x8000 + (digits.negative ? -digits.exponent : digits.exponent);
    key += static_cast<char>(power >> 8 & 0xFF);
    key += static_cast<char>(power & 0xFF);
    for (const char digit : digits.digits)
        key += static_cast<char>(digits.negative ? '9' - digit + 1 : digit - '0' + 1);
    key += static_cast<char>(digits.negative ? 0x7F : 0);
}

void appendText(std::string& key, std::u16string_view text, SortOrder order)
{
    appendBytes(key, comparisonKey(text, order));
}

void invert(std::string& key, std::size_t from)
{
    for (std::size_t i = from; i < key.size(); ++i)
        key[i] = static_cast<char>(~key[i]);
}

} // namespace

void appendSortPart(std::string& key, const Value& value, SortOrder order, bool descending)
{
    const std::size_t from = key.size();
    key += isNull(value) ? kNullMark : kValueMark;
    if (const auto* text = std::get_if<std::u16string>(&value))
        appendText(key, *text, order);
    else if (const auto* bytes = std::get_if<Bytes>(&value))
        appendBytes(key, *bytes);
    else if (std::holds_alternative<Guid>(value))
        appendText(key, textOf(value), order);
    else if (const std::optional<Digits> exact = exactDigits(value))
        appendExact(key, *exact);
    else if (!isNull(value))
        appendNumber(key, numberOf(value));
    if (descending)
        invert(key, from);
}

void appendSortPart(
    std::string& key, const Row& row, std::size_t column, bool text, SortOrder order, bool descending)
{
    if (!text || row.isNull(column)) {
        appendSortPart(key, text ? Value{} : row.value(column), order, descending);
        return;
    }
    const std::size_t from = key.size();
    key += kValueMark;
    Bytes scratch;
    StoredText stored = row.text(column, scratch);
    const std::size_t longest = stored.latin ? kOrderedUnits : 2 * kOrderedUnits;
    stored.bytes = stored.bytes.first(std::min(stored.bytes.size(), longest));
    if (stored.bytes.empty())
        appendBytes(key, {});
    else
        appendText(key, toText(stored), order);
    if (descending)
        invert(key, from);
}

} // namespace vellums::jet::sql

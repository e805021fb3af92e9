// Values as bytes that sort like the values:
//
//   flag      7F, or 00 for NULL; descending 80, or FF
//   whole     big-endian, the sign bit flipped; a Byte has none; booleans one byte, 00 for true (-1)
//   real      big-endian, the sign bit flipped; negative numbers inverted as a whole instead
//   decimal   FF and the magnitude; of negative numbers 00 and the magnitude inverted
//   bytes     segments of eight with a count behind each; GUIDs too, as they are displayed
//   text      collation.cpp
//
// Descending columns invert what ascending ones give, but for the counts between segments. The parts of
// several columns follow one another without lengths.
#include "jet/index/key.h"

#include "jet/index/collation.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::byte kTopBit{0x80};
constexpr std::size_t kSegment = 8;

Bytes bigEndianBytes(ByteView stored)
{
    return {stored.rbegin(), stored.rend()};
}

void invert(MutableBytes bytes)
{
    for (std::byte& b : bytes)
        b = ~b;
}

// Two's complement numbers sort by their bytes once the sign bit is flipped.
Bytes signedNumber(ByteView stored)
{
    Bytes bytes = bigEndianBytes(stored);
    bytes[0] ^= kTopBit;
    return bytes;
}

// IEEE numbers: negative ones sort backwards.
Bytes realNumber(ByteView stored)
{
    Bytes bytes = bigEndianBytes(stored);
    if ((bytes[0] & kTopBit) == std::byte{})
        bytes[0] ^= kTopBit;
    else
        invert(bytes);
    return bytes;
}

// A sign byte and the magnitude. Stored are the sign and four little-endian words, the most
// significant word first.
Bytes decimalNumber(ByteView stored)
{
    Bytes bytes(17);
    for (std::size_t word = 0; word < 4; ++word)
        for (std::size_t i = 0; i < 4; ++i)
            bytes[1 + word * 4 + i] = stored[1 + word * 4 + 3 - i];
    if ((stored[0] & kTopBit) == std::byte{})
        bytes[0] = std::byte{0xFF};
    else
        invert(MutableBytes(bytes).subspan(1));
    return bytes;
}

Bytes displayedGuid(ByteView stored)
{
    Bytes bytes(stored.begin(), stored.end());
    std::reverse(bytes.begin(), bytes.begin() + 4);
    std::reverse(bytes.begin() + 4, bytes.begin() + 6);
    std::reverse(bytes.begin() + 6, bytes.begin() + 8);
    return bytes;
}

// Segments of eight bytes, each followed by 09 when another one comes, the last one filled up with
// zeros and followed by its real length. In descending keys all but the 09 is inverted.
void appendSegments(Bytes& key, ByteView value, bool ascending)
{
    while (!value.empty()) {
        const std::size_t length = std::min(value.size(), kSegment);
        const std::size_t start = key.size();
        append(key, value.first(length));
        key.resize(start + kSegment);
        value = value.subspan(length);
        if (value.empty())
            key.push_back(static_cast<std::byte>(length));
        if (!ascending)
            invert(MutableBytes(key).subspan(start));
        if (!value.empty())
            key.push_back(std::byte{9});
    }
}

void appendFixed(Bytes& key, Bytes value, bool ascending)
{
    if (!ascending)
        invert(value);
    append(key, ByteView(value));
}

bool appendValue(Bytes& key, const KeyColumn& column, const KeyValue& value)
{
    const std::size_t size = valueSize(column.type);
    if (size != 0 && value.bytes.size() != size)
        return false;
    switch (column.type) {
    case ColumnType::Boolean:
        appendFixed(key, {value.boolean ? std::byte{0x00} : std::byte{0xFF}}, column.ascending);
        return true;
    case ColumnType::Byte:
        appendFixed(key, {value.bytes[0]}, column.ascending);
        return true;
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Complex:
    case ColumnType::Currency:
    case ColumnType::BigInteger:
        appendFixed(key, signedNumber(value.bytes), column.ascending);
        return true;
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::Date:
        appendFixed(key, realNumber(value.bytes), column.ascending);
        return true;
    case ColumnType::Guid:
        appendSegments(key, displayedGuid(value.bytes), column.ascending);
        return true;
    case ColumnType::Binary:
    case ColumnType::ExtendedDate:
        appendSegments(key, value.bytes, column.ascending);
        return true;
    case ColumnType::Decimal:
        // Jet 4 leaves the sign of descending decimals as it is, so they do not even sort.
        if (!column.ascending && !column.ace)
            return false;
        appendFixed(key, decimalNumber(value.bytes), column.ascending);
        return true;
    case ColumnType::Text:
    case ColumnType::Memo:
        return appendTextKey(key, value.text, column.sortOrder, column.ascending);
    case ColumnType::Ole:
    case ColumnType::FixedBinary:
        break;
    }
    return false;
}

} // namespace

bool appendKeyPart(Bytes& key, const KeyColumn& column, const std::optional<KeyValue>& value)
{
    if (!value && column.type != ColumnType::Boolean) {
        key.push_back(column.ascending ? std::byte{0x00} : std::byte{0xFF});
        return true;
    }
    key.push_back(column.ascending ? std::byte{0x7F} : std::byte{0x80});
    if (appendValue(key, column, value.value_or(KeyValue{})))
        return true;
    key.pop_back();
    return false;
}

} // namespace vellums::jet

// Rows to bytes and back (the layout is in the header). A row is read from both ends: the fixed area from
// the front, the null mask and the table of offsets from the back, since only there their lengths are known.
// A row may be older than its table: columns with a number or a slot that it does not have yet are NULL.
// Bytes between the last value and the table of offsets are passed over; other programs leave some.
#include "jet/table/rowCodec.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

std::size_t maskBytes(std::size_t columnSlots)
{
    return (columnSlots + 7) / 8;
}

// Where a value of variable length lies, and where the values end at the latest.
struct Extent {
    std::size_t start;
    std::size_t end;
    std::size_t limit;
};

// The numbers of a row in Jet 4 and ACE.
struct WideRow {
    using Number = std::uint16_t;

    // Of a slot of the part in front of the mask; nullopt: the row is older than the slot.
    static std::optional<Extent> extent(ByteView, ByteView body, std::size_t slot)
    {
        const std::size_t countAt = body.size() - 2;
        const std::size_t count = load<std::uint16_t>(body, countAt);
        if (slot >= count)
            return std::nullopt;
        // From the back: the count, then one offset for each slot, slot 0 first, then the end of the data.
        // So the offset behind that of a slot is where its value ends.
        if (countAt < 2 * (count + 1) + 2)
            throwDamaged(u"a row has too many offsets");
        return Extent{load<std::uint16_t>(body, countAt - 2 * (slot + 1)),
            load<std::uint16_t>(body, countAt - 2 * (slot + 2)), countAt - 2 * (count + 1)};
    }
};

// Those of Jet 3. The bytes of the jump table rise from the back to the front; where the offsets end before
// the last jump its byte means nothing.
struct NarrowRow {
    using Number = std::uint8_t;

    static std::optional<Extent> extent(ByteView row, ByteView body, std::size_t slot)
    {
        const std::size_t countAt = body.size() - 1;
        const std::size_t count = load<std::uint8_t>(body, countAt);
        if (slot >= count)
            return std::nullopt;
        std::size_t jumps = (row.size() - 1) / 256;
        if (countAt < jumps + count + 2)
            throwDamaged(u"a row has too many offsets");
        const std::size_t firstAt = countAt - jumps - 1;
        const std::size_t limit = firstAt - count;
        if (limit / 256 < jumps)
            --jumps;
        const auto offsetOf = [&](std::size_t number) {
            std::size_t passed = 0;
            while (passed < jumps && load<std::uint8_t>(body, countAt - 1 - passed) <= number)
                ++passed;
            return load<std::uint8_t>(body, firstAt - number) + 256 * passed;
        };
        return Extent{offsetOf(slot), offsetOf(slot + 1), limit};
    }
};

// The part in front of the null mask.
template <typename Layout>
ByteView bodyOf(ByteView row)
{
    const std::size_t mask = maskBytes(load<typename Layout::Number>(row, 0));
    if (row.size() < sizeof(typename Layout::Number) + mask)
        throwDamaged(u"a row is too short");
    return row.first(row.size() - mask);
}

template <typename Layout>
bool isPresentIn(ByteView row, const Column& column)
{
    const std::size_t slots = load<typename Layout::Number>(row, 0);
    if (column.number >= slots)
        return false;
    const ByteView body = bodyOf<Layout>(row);
    const auto byte = std::to_integer<unsigned>(row[body.size() + column.number / 8u]);
    return (byte >> (column.number % 8) & 1) != 0;
}

template <typename Layout>
std::optional<ByteView> columnBytesIn(ByteView row, const Column& column)
{
    constexpr std::size_t kNumber = sizeof(typename Layout::Number);
    if (!isPresentIn<Layout>(row, column))
        return std::nullopt;
    const ByteView body = bodyOf<Layout>(row);
    if (column.type == ColumnType::Boolean && !column.isCalculated())
        return body.first(0);
    if (column.isFixed())
        return slice(body, kNumber + std::size_t{column.offset}, fixedSize(column));
    if (body.size() < 2 * kNumber)
        throwDamaged(u"a row is too short");
    const std::optional<Extent> extent = Layout::extent(row, body, column.slot);
    if (!extent)
        return std::nullopt;
    if (extent->start < kNumber || extent->start > extent->end || extent->end > extent->limit)
        throwDamaged(u"a value reaches outside its row");
    return body.subspan(extent->start, extent->end - extent->start);
}

} // namespace

bool isPresent(const Format& format, ByteView row, const Column& column)
{
    return format.narrowRows ? isPresentIn<NarrowRow>(row, column) : isPresentIn<WideRow>(row, column);
}

std::optional<ByteView> columnBytes(const Format& format, ByteView row, const Column& column)
{
    return format.narrowRows ? columnBytesIn<NarrowRow>(row, column) : columnBytesIn<WideRow>(row, column);
}

Bytes encodeRow(const TableDefinition& definition, const RowContent& content)
{
    assert(content.size() == definition.columns.size());
    Bytes row;
    append<std::uint16_t>(row, definition.columnSlots);
    row.resize(2 + definition.fixedLength());
    Bytes mask(maskBytes(definition.columnSlots));
    std::vector<const Bytes*> bySlot(definition.variableSlots, nullptr);
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const Column& column = definition.columns[i];
        if (!content[i])
            continue;
        mask[column.number / 8u] |= static_cast<std::byte>(1u << (column.number % 8));
        if (column.type == ColumnType::Boolean)
            continue;
        if (column.isFixed()) {
            if (content[i]->size() > fixedSize(column))
                throwDamaged(u"a field of fixed length holds longer values");
            std::copy(content[i]->begin(), content[i]->end(), row.begin() + 2 + column.offset);
        } else {
            bySlot[column.slot] = &*content[i];
        }
    }
    if (!bySlot.empty()) {
        std::vector<std::size_t> starts;
        for (const Bytes* value : bySlot) {
            starts.push_back(row.size());
            if (value != nullptr)
                append(row, *value);
        }
        append<std::uint16_t>(row, static_cast<std::uint16_t>(row.size()));
        for (auto start = starts.rbegin(); start != starts.rend(); ++start)
            append<std::uint16_t>(row, static_cast<std::uint16_t>(*start));
        append<std::uint16_t>(row, definition.variableSlots);
    }
    while (row.size() + mask.size() < 4) // a pointer must fit when the row moves
        row.push_back(std::byte{0});
    append(row, mask);
    return row;
}

} // namespace vellums::jet

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

// The part in front of the null mask.
ByteView bodyOf(ByteView row)
{
    const std::size_t mask = maskBytes(load<std::uint16_t>(row, 0));
    if (row.size() < 2 + mask)
        throwDamaged(u"a row is too short");
    return row.first(row.size() - mask);
}

} // namespace

bool isPresent(ByteView row, const Column& column)
{
    const std::size_t slots = load<std::uint16_t>(row, 0);
    if (column.number >= slots)
        return false;
    const ByteView body = bodyOf(row);
    const auto byte = std::to_integer<unsigned>(row[body.size() + column.number / 8u]);
    return (byte >> (column.number % 8) & 1) != 0;
}

std::optional<ByteView> columnBytes(ByteView row, const Column& column)
{
    if (!isPresent(row, column))
        return std::nullopt;
    const ByteView body = bodyOf(row);
    if (column.type == ColumnType::Boolean && !column.isCalculated())
        return body.first(0);
    if (column.isFixed())
        return slice(body, 2 + std::size_t{column.offset}, fixedSize(column));
    if (body.size() < 4)
        throwDamaged(u"a row is too short");
    const std::size_t countAt = body.size() - 2;
    const std::size_t count = load<std::uint16_t>(body, countAt);
    if (column.slot >= count)
        return std::nullopt;
    // From the back: the count, then one offset for each slot, slot 0 first, then the end of the data. So
    // the offset behind that of a slot is where its value ends.
    if (countAt < 2 * (count + 1) + 2)
        throwDamaged(u"a row has too many offsets");
    const std::size_t tableAt = countAt - 2 * (count + 1);
    const std::size_t start = load<std::uint16_t>(body, countAt - 2 * (column.slot + 1u));
    const std::size_t end = load<std::uint16_t>(body, countAt - 2 * (column.slot + 2u));
    if (start < 2 || start > end || end > tableAt)
        throwDamaged(u"a value reaches outside its row");
    return body.subspan(start, end - start);
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

// Makes the bytes of a table definition:
//
//   63 bytes          header: counts, table type, where the maps of the table lie
//   12 * physical     counters of the indexes
//   25 * columns      columns
//                     their names, each two bytes of length and UTF-16LE
//   52 * physical     indexes as trees: columns, usage map, root
//   28 * logical      indexes as names: number, tree, role
//                     their names
//   10 * long values  column number, map of its pages, map of those with free space
//   FF FF
//
// Places of maps and roots have the same length whether they are known or not, so a definition can be made
// once to learn how many pages it takes and a second time when they are there.
#include "jet/catalogue/definitionBuilder.h"

#include "jet/file/dataPage.h"
#include "jet/file/maps/mapRow.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::uint32_t kRecordMagic = 1625;
constexpr std::uint16_t kNone = 0xFFFF;

// Calls back with every place of a usage map, in the order of their rows; the page is that of an
// index's root, else 0.
template <typename Callback>
void eachMap(TableDefinition& definition, Callback&& callback)
{
    callback(definition.ownedMap, PageNo{0});
    callback(definition.freeMap, PageNo{0});
    std::vector<Column*> columns;
    for (Column& column : definition.columns)
        if (isLongValue(column.type))
            columns.push_back(&column);
    std::sort(columns.begin(), columns.end(), [](auto* a, auto* b) { return a->number < b->number; });
    for (Column* const column : columns) {
        callback(column->ownedMap, PageNo{0});
        callback(column->freeMap, PageNo{0});
    }
    for (PhysicalIndex& index : definition.physicalIndexes)
        callback(index.usageMap, index.root);
}

void appendHeader(Bytes& bytes, const TableDefinition& definition)
{
    append<std::uint32_t>(bytes, 0x0102); // kind of the page; its free bytes are set with the page
    append<std::uint32_t>(bytes, 0);      // next page
    append<std::uint32_t>(bytes, 0);      // length
    append<std::uint32_t>(bytes, kRecordMagic);
    append<std::uint32_t>(bytes, definition.rowCount);
    append<std::uint32_t>(bytes, definition.lastAutoNumber);
    append<std::uint32_t>(bytes, 1); // step of the autonumber
    bytes.resize(bytes.size() + 12);
    append<std::uint8_t>(bytes, definition.tableType);
    append<std::uint16_t>(bytes, definition.columnSlots);
    append<std::uint16_t>(bytes, definition.variableSlots);
    append<std::uint16_t>(bytes, static_cast<std::uint16_t>(definition.columns.size()));
    append<std::uint32_t>(bytes, static_cast<std::uint32_t>(definition.logicalIndexes.size()));
    append<std::uint32_t>(bytes, static_cast<std::uint32_t>(definition.physicalIndexes.size()));
    append<std::uint32_t>(bytes, pointerTo(definition.ownedMap));
    append<std::uint32_t>(bytes, pointerTo(definition.freeMap));
}

} // namespace

std::size_t mapCount(const TableDefinition& definition)
{
    TableDefinition copy = definition;
    std::size_t count = 0;
    eachMap(copy, [&count](RowRef&, PageNo) { ++count; });
    return count;
}

void placeMaps(TableDefinition& definition, const std::vector<PageNo>& mapPages)
{
    std::size_t count = 0;
    eachMap(definition, [&](RowRef& place, PageNo) {
        place = {mapPages.at(count / kMapsOnPage), static_cast<std::uint8_t>(count % kMapsOnPage)};
        ++count;
    });
}

void writeMapPage(MutableBytes page, PageNo number, const TableDefinition& definition)
{
    initDataPage(page, 0);
    TableDefinition copy = definition;
    eachMap(copy, [&](const RowRef& place, PageNo root) {
        if (place.page != number)
            return;
        Bytes map(kMapRowBytes);
        if (root != 0) { // a window that begins at 0 as long as the root lies in it
            const PageNo start = root < (kMapRowBytes - 5) * 8 ? 0 : root & ~PageNo{7};
            store<std::uint32_t>(map, 1, start);
            map[5 + (root - start) / 8] = static_cast<std::byte>(1U << (root - start) % 8);
        }
        appendRow(page, map, 0);
    });
}

void encodeDefinition(TableDefinition& definition, const std::vector<std::uint32_t>& distinctKeys)
{
    Bytes bytes;
    appendHeader(bytes, definition);
    definition.counterOffsets.clear();
    for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i) {
        definition.counterOffsets.push_back(bytes.size());
        append<std::uint32_t>(bytes, 0);
        append<std::uint32_t>(bytes, i < distinctKeys.size() ? distinctKeys[i] : 0);
        append<std::uint32_t>(bytes, 0);
    }
    for (const Column& column : definition.columns)
        appendColumnRecord(bytes, column);
    for (const Column& column : definition.columns)
        appendName(bytes, column.name);
    for (const PhysicalIndex& index : definition.physicalIndexes)
        appendPhysicalRecord(bytes, index);
    for (const LogicalIndex& index : definition.logicalIndexes)
        appendLogicalRecord(bytes, index);
    for (const LogicalIndex& index : definition.logicalIndexes)
        appendName(bytes, index.name);
    for (const Column& column : definition.columns) {
        if (!isLongValue(column.type))
            continue;
        append<std::uint16_t>(bytes, column.number);
        append<std::uint32_t>(bytes, pointerTo(column.ownedMap));
        append<std::uint32_t>(bytes, pointerTo(column.freeMap));
    }
    append<std::uint16_t>(bytes, kNone);
    store<std::uint32_t>(bytes, 8, static_cast<std::uint32_t>(bytes.size()));
    definition.joined = std::move(bytes);
}

} // namespace vellums::jet

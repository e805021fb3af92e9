// Appending a column to a table, and removing one. A new column takes the next number, the next slot or the
// next bytes of the fixed area, and its record, its name and the maps of its pages are put in behind those of
// the others:
//
//   header | counters | records, + one | names, + one | indexes | maps of long values, + one | FF FF
//
// Parts further back are put in first, so that the places of those in front stay right. Rows stay as they
// are: a row knows how many columns there were when it was written.
//
// Removing one takes the same parts out again; the counts of numbers and slots ever used stay. Rows stay as
// they are here, too: what they hold of the column is passed over from then on, by its number and its slot.
#include "jet/file/dataPage.h"
#include "jet/file/maps/freePages.h"
#include "jet/file/maps/mapRow.h"
#include "jet/file/maps/usageMap.h"
#include "jet/table/table.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::size_t kMaxColumnSlots = 255;

// Two empty maps for the pages of a long-value column: on the page of the table's own maps when they
// fit there, else on a new one.
void makeLongValueMaps(PageFile& file, const TableDefinition& definition, Column& column)
{
    const PageNo page = pageForMaps(file, {definition.ownedMap.page}, 2);
    column.ownedMap = addMapRow(file, page);
    column.freeMap = addMapRow(file, page);
}

// The pages that a long-value column owns, and those of the bits of its maps. A page of values says what it
// is; one that does not, or that is free, is damage.
std::vector<PageNo> pagesOfLongValues(PageFile& file, const Column& column)
{
    std::vector<PageNo> pages = UsageMap(file, column.ownedMap).pages();
    for (const PageNo page : pages)
        if (DataPage(file.read(page)).owner() != kLongValueOwner)
            throwDamaged(u"a page of long values belongs to a table");
    for (const RowRef map : {column.ownedMap, column.freeMap})
        if (map.page != 0)
            for (const PageNo page : UsageMap(file, map).bitmapPages())
                pages.push_back(page);
    const FreePages free(file);
    for (const PageNo page : pages)
        if (free.isFree(page))
            throwDamaged(u"a page of long values is free");
    return pages;
}

void giveBackLongValues(PageFile& file, const Column& column)
{
    FreePages free(file);
    for (const PageNo page : pagesOfLongValues(file, column)) {
        const PageView view = file.read(page);
        free.release(page, view.bytes()[0] == std::byte{1} ? kFreedData : kKeepsFirstByte);
        file.makeRoom();
    }
    for (const RowRef map : {column.ownedMap, column.freeMap})
        if (map.page != 0)
            removeMapRow(file, map);
}

} // namespace

void Table::appendColumn(const Column& wanted)
{
    if (definition_.columnSlots >= kMaxColumnSlots)
        throw Error(3190, kErrorsInCommand, u"Too many fields defined.");
    if (wanted.isAutoNumber())
        throwUnsupported(u"An autonumber field cannot be added to a table that exists.");
    const std::uint16_t variableSlotsBefore = definition_.variableSlots;
    Column column = wanted;
    column.number = definition_.columnSlots;
    column.slot = definition_.variableSlots;
    if (column.isFixed() && column.type != ColumnType::Boolean)
        column.offset = static_cast<std::uint16_t>(definition_.fixedLength());
    for (const Column& c : definition_.columns)
        column.position = std::max(column.position, static_cast<std::uint16_t>(c.position + 1));
    if (column.isFixed() && definition_.fixedLength() + fixedSize(column) > 4000)
        throw Error(3047, kFail, u"Record is too large.");

    constexpr Format::Definition places = kJet4.definition;
    Bytes& joined = definition_.joined;
    const DefinitionParts parts = partsOf(definition_);
    if (isLongValue(column.type)) {
        makeLongValueMaps(file_, definition_, column);
        Bytes entry;
        append<std::uint16_t>(entry, column.number);
        append<std::uint32_t>(entry, pointerTo(column.ownedMap));
        append<std::uint32_t>(entry, pointerTo(column.freeMap));
        insertBytes(joined, joined.size() - 2, entry);
    }
    Bytes name;
    appendName(name, column.name);
    Bytes record;
    appendColumnRecord(record, column);
    insertBytes(joined, parts.physicalIndexes, name);
    insertBytes(joined, parts.columnNames, record);
    store<std::uint16_t>(joined, places.columnSlots, static_cast<std::uint16_t>(definition_.columnSlots + 1));
    if (!column.isFixed())
        store<std::uint16_t>(
            joined, places.variableSlots, static_cast<std::uint16_t>(definition_.variableSlots + 1));
    store<std::uint16_t>(joined, places.columns, static_cast<std::uint16_t>(definition_.columns.size() + 1));
    writeDefinitionBytes(file_, definition_);
    definition_ = readTableDefinition(file_, definition_.page);
    rules_.resize(definition_.columns.size());
    // Other programs lose rows without a variable part once the table has a variable column.
    if (variableSlotsBefore == 0 && definition_.variableSlots != 0)
        rewriteRows();
}

void Table::removeColumn(std::size_t at)
{
    constexpr std::size_t kLongValueEntry = 10; // number, and the places of two maps
    const Column column = definition_.columns[at];
    if (column.ownedMap.page != 0)
        giveBackLongValues(file_, column);
    Bytes& joined = definition_.joined;
    const DefinitionParts parts = partsOf(definition_);
    const std::size_t nameAt = skipNames(joined, parts.columnNames, at);
    if (column.mapsOffset != 0)
        eraseBytes(joined, column.mapsOffset - 2, kLongValueEntry);
    eraseBytes(joined, nameAt, skipNames(joined, nameAt, 1) - nameAt);
    eraseBytes(joined, parts.columns + kColumnRecord * at, kColumnRecord);
    store<std::uint16_t>(
        joined, kJet4.definition.columns, static_cast<std::uint16_t>(definition_.columns.size() - 1));
    writeDefinitionBytes(file_, definition_);
    definition_ = readTableDefinition(file_, definition_.page);
    if (at < rules_.size())
        rules_.erase(rules_.begin() + static_cast<std::ptrdiff_t>(at));
}

} // namespace vellums::jet

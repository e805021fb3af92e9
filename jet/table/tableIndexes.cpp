// Indexes that come to a table with rows, and go. The definition holds an index at four places, its name
// apart from its tree:
//
//   header | counters, +- one | columns | trees, +- one | names' records, +- one | names, +- one | ...
//
// Parts further back are put in or taken out first, so that the places of those in front stay right. A tree
// is known by its number in the list of trees: a new one is the last, and where one goes, the numbers behind
// it come one down in the records of names. A new index is looked at from end to end before anything
// changes: the keys of all rows are made, sorted and compared with their neighbours, and become its tree.
#include "jet/file/maps/freePages.h"
#include "jet/file/maps/mapRow.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/table/indexKeys.h"
#include "jet/table/table.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::size_t kPhysicalRecord = kJet4.definition.physicalBytes;
constexpr std::size_t kLogicalRecord = kJet4.definition.logicalBytes;
constexpr std::size_t kPhysicalInLogical = 8; // the number of the tree in the record of a name

struct NewTree {
    std::vector<IndexEntry> entries;
    std::uint32_t differentKeys = 0;
};

void refuseNull(const Table& table, const PhysicalIndex& index, const Row& row)
{
    const std::vector<Column>& columns = table.definition().columns;
    for (const IndexColumn& part : index.columns)
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (columns[i].number == part.number && row.isNull(i))
                throwNullNotAllowed(table.name(), columns[i].name);
}

// The entries that the rows give, sorted. Only keys that are NULL in every column may repeat.
NewTree treeOfRows(
    const PageFile& file, const Table& table, const PhysicalIndex& index, const std::u16string& name)
{
    NewTree tree;
    Bytes allNull;
    table.forEachRow([&](const Row& row) {
        RowKey key = rowKey(file, table.definition(), index, row);
        if (key.state == RowKey::State::Unencodable)
            throwUnsupported(u"The index '" + name + u"' cannot be made: the sort order of the table '" +
                table.name() + u"' is not known to this engine for all of its values.");
        if (index.required && key.anyNull)
            refuseNull(table, index, row);
        if (key.allNull)
            allNull = key.bytes;
        if (key.state != RowKey::State::Absent)
            tree.entries.push_back({std::move(key.bytes), row.home()});
        return true;
    });
    std::sort(tree.entries.begin(), tree.entries.end());
    for (std::size_t i = 0; i < tree.entries.size(); ++i) {
        const bool repeats = i > 0 && tree.entries[i].key == tree.entries[i - 1].key;
        if (repeats && index.unique && tree.entries[i].key != allNull)
            throwDuplicateKey();
        if (!repeats)
            ++tree.differentKeys;
    }
    return tree;
}

// The pages where the table has maps already, its own first.
std::vector<PageNo> mapPagesOf(const TableDefinition& definition)
{
    std::vector<PageNo> pages = {definition.ownedMap.page};
    for (const PhysicalIndex& index : definition.physicalIndexes)
        if (std::find(pages.begin(), pages.end(), index.usageMap.page) == pages.end())
            pages.push_back(index.usageMap.page);
    return pages;
}

// Its map, and a root that is an empty leaf.
void plantTree(PageFile& file, const TableDefinition& definition, PhysicalIndex& index)
{
    FreePages free(file);
    index.root = free.allocate();
    BTree::initRoot(file.writeNew(index.root), definition.page);
    index.usageMap = addMapRow(file, pageForMaps(file, mapPagesOf(definition), 1));
    UsageMap(file, index.usageMap).add(index.root, free);
}

void storeIndexCounts(TableDefinition& definition, std::size_t logical, std::size_t physical)
{
    const Format::Definition& places = definition.format->definition;
    store<std::uint32_t>(definition.joined, places.logicalIndexes, static_cast<std::uint32_t>(logical));
    store<std::uint32_t>(definition.joined, places.physicalIndexes, static_cast<std::uint32_t>(physical));
}

void addToDefinition(TableDefinition& definition, const PhysicalIndex& index, const LogicalIndex& logical,
    std::size_t place, std::uint32_t differentKeys)
{
    Bytes& joined = definition.joined;
    const DefinitionParts parts = partsOf(definition);
    Bytes name;
    appendName(name, logical.name);
    insertBytes(joined, skipNames(joined, parts.indexNames, place), name);
    Bytes record;
    appendLogicalRecord(record, logical);
    insertBytes(joined, parts.logicalIndexes + kLogicalRecord * place, record);
    Bytes tree;
    appendPhysicalRecord(tree, index);
    insertBytes(joined, parts.logicalIndexes, tree); // where the trees end
    Bytes counter(kIndexCounter);
    store<std::uint32_t>(counter, 4, differentKeys);
    insertBytes(joined, parts.columns, counter); // where the counters end
    storeIndexCounts(definition, definition.logicalIndexes.size() + 1, definition.physicalIndexes.size() + 1);
}

void takeFromDefinition(TableDefinition& definition, std::size_t at, bool withTree)
{
    Bytes& joined = definition.joined;
    const DefinitionParts parts = partsOf(definition);
    const std::uint32_t tree = definition.logicalIndexes[at].physical;
    for (std::size_t i = 0; withTree && i < definition.logicalIndexes.size(); ++i)
        if (const std::uint32_t other = definition.logicalIndexes[i].physical; other > tree)
            store<std::uint32_t>(
                joined, parts.logicalIndexes + kLogicalRecord * i + kPhysicalInLogical, other - 1);
    const std::size_t nameAt = skipNames(joined, parts.indexNames, at);
    eraseBytes(joined, nameAt, skipNames(joined, nameAt, 1) - nameAt);
    eraseBytes(joined, parts.logicalIndexes + kLogicalRecord * at, kLogicalRecord);
    if (withTree) {
        eraseBytes(joined, definition.physicalIndexes[tree].offset, kPhysicalRecord);
        eraseBytes(joined, definition.counterOffsets[tree], kIndexCounter);
    }
    storeIndexCounts(definition, definition.logicalIndexes.size() - 1,
        definition.physicalIndexes.size() - (withTree ? 1 : 0));
}

// A tree is given back only when it is sound: its pages are then those of its map, and nobody else's.
void fellTree(PageFile& file, const TableDefinition& definition, const PhysicalIndex& index)
{
    const BTree::Report report = BTree(file, treeOf(definition, index)).inspect();
    if (!report.faults.empty())
        throwDamaged(report.faults.front());
    FreePages free(file);
    std::vector<PageNo> pages = report.pages;
    for (const PageNo page : UsageMap(file, index.usageMap).bitmapPages())
        pages.push_back(page);
    for (const PageNo page : pages)
        if (free.isFree(page))
            throwDamaged(u"a page of an index is free");
    for (const PageNo page : pages)
        free.release(page, kKeepsFirstByte);
    removeMapRow(file, index.usageMap);
}

} // namespace

void Table::appendIndex(PhysicalIndex index, LogicalIndex name, std::size_t place)
{
    NewTree tree = treeOfRows(file_, *this, index, name.name);
    plantTree(file_, definition_, index);
    FreePages free(file_);
    BTree(file_, treeOf(definition_, index)).rebuild(std::move(tree.entries), free);
    name.physical = static_cast<std::uint32_t>(definition_.physicalIndexes.size());
    addToDefinition(definition_, index, name, place, tree.differentKeys);
    writeDefinitionBytes(file_, definition_);
    definition_ = readTableDefinition(file_, definition_.page);
}

void Table::removeIndex(std::size_t logicalIndex)
{
    const std::uint32_t tree = definition_.logicalIndexes[logicalIndex].physical;
    const auto names = std::count_if(definition_.logicalIndexes.begin(), definition_.logicalIndexes.end(),
        [tree](const LogicalIndex& name) { return name.physical == tree; });
    if (names == 1)
        fellTree(file_, definition_, definition_.physicalIndexes[tree]);
    takeFromDefinition(definition_, logicalIndex, names == 1);
    writeDefinitionBytes(file_, definition_);
    definition_ = readTableDefinition(file_, definition_.page);
}

} // namespace vellums::jet

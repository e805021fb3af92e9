// Dropping tables and columns. Everything that a table owns is gathered and checked before anything changes:
// each page says itself whose it is, so a map that names a page of somebody else is found out in time.
#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/file/dataPage.h"
#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/collation.h"
#include "jet/index/indexPage.h"
#include "platform/clock.h"

#include <algorithm>
#include <set>

namespace vellums::jet {
namespace {

constexpr std::uint8_t kNotTaken = 0xFF;
constexpr unsigned kComplexType = 0x12;
constexpr std::uint32_t kComplexFlags = 0x000C0000; // has complex columns, or lies behind one

// The pages and map rows of one table, and giving them back.
class Belongings {
public:
    Belongings(PageFile& file, const TableDefinition& definition)
        : file_(file)
        , definition_(definition)
        , free_(file)
        , kinds_(file.pageCount(), kNotTaken)
    {
        for (const PageNo page : definition.pages)
            take(page, kFreedDefinition);
        takePages(definition.ownedMap, [&](PageNo page) { takeData(page, definition_.page); });
        if (definition.freeMap.page != 0)
            takeMap(definition.freeMap);
        for (const Column& column : definition.columns) {
            if (column.ownedMap.page == 0)
                continue;
            takePages(column.ownedMap, [&](PageNo page) { takeData(page, kLongValueOwner); });
            if (column.freeMap.page != 0)
                takeMap(column.freeMap);
        }
        for (const PhysicalIndex& index : definition.physicalIndexes) {
            takePages(index.usageMap, [&](PageNo page) {
                readIndexPage(file_, page, definition_.page); // throws when it is not the table's
                take(page, kKeepsFirstByte);
            });
            if (index.root >= kinds_.size() || kinds_[index.root] == kNotTaken)
                throwDamaged(u"the root of an index is not among its pages");
        }
    }

    void giveBack()
    {
        for (PageNo page = 0; page < kinds_.size(); ++page) {
            if (kinds_[page] == kNotTaken)
                continue;
            free_.release(page, kinds_[page]);
            file_.makeRoom();
        }
        std::set<PageNo> mapPages;
        for (const RowRef map : maps_) {
            deleteRow(file_.write(map.page), map.row);
            mapPages.insert(map.page);
        }
        for (const PageNo page : mapPages)
            if (DataPage(file_.read(page)).isEmpty())
                free_.release(page, kFreedData);
    }

private:
    void take(PageNo page, std::uint8_t kind)
    {
        if (page <= kRelationshipsPage || page >= kinds_.size() || free_.isFree(page) ||
            kinds_[page] != kNotTaken)
            throwDamaged(u"a page of the table has another owner too");
        kinds_[page] = kind;
    }

    void takeData(PageNo page, std::uint32_t owner)
    {
        if (DataPage(file_.read(page)).owner() != owner)
            throwDamaged(u"a page of a table belongs to another one");
        take(page, kFreedData);
    }

    // The row of a map goes with the pages that hold its bits.
    void takeMap(RowRef map)
    {
        const UsageMap usage(file_, map);
        const DataPage page(file_.read(map.page));
        if (page.owner() != 0 || page.flags(map.row) != 0 || !maps_.insert(map).second)
            throwDamaged(u"a usage map of the table has another owner too");
        for (const PageNo bitmap : usage.bitmapPages())
            take(bitmap, kKeepsFirstByte);
    }

    template <typename Take>
    void takePages(RowRef map, Take&& takePage)
    {
        takeMap(map);
        for (const PageNo page : UsageMap(file_, map).pages())
            takePage(page);
    }

    PageFile& file_;
    const TableDefinition& definition_;
    FreePages free_;
    std::vector<std::uint8_t> kinds_; // by page: the first byte it gets, see FreePages::release
    std::set<RowRef> maps_;
};

void refuseRelationships(PageFile& file, const std::u16string& name, const TableDefinition& definition)
{
    for (const LogicalIndex& index : definition.logicalIndexes)
        if (index.kind == kForeignKeyKind)
            throwInRelationship();
    const Table relationships(file, kRelationshipsPage, u"MSysRelationships");
    const std::size_t sides[] = {
        columnOf(relationships, u"szObject"), columnOf(relationships, u"szReferencedObject")};
    relationships.forEachRow([&](const Row& row) {
        for (const std::size_t side : sides)
            if (compareTexts(textIn(row, side), name, file.header().sortOrder) == 0)
                throwInRelationship();
        return true;
    });
}

void refuseComplexColumns(const CatalogueEntry& entry, const TableDefinition& definition)
{
    const bool complex = (entry.flags & kComplexFlags) != 0 ||
        std::any_of(definition.columns.begin(), definition.columns.end(),
            [](const Column& column) { return static_cast<unsigned>(column.type) == kComplexType; });
    if (complex)
        throwUnsupported(u"The table '" + entry.name +
            u"' has attachments or fields of several values, which lie in tables of their own; it is left "
            u"as it is.");
}

void removePermissions(PageFile& file, std::int32_t id)
{
    Table permissions(file, kPermissionsPage, u"MSysACEs");
    permissions.requireWritable();
    const std::size_t object = columnOf(permissions, u"ObjectId");
    std::vector<RowRef> rows;
    permissions.forEachRow([&](const Row& row) {
        if (numberIn(row, object) == id)
            rows.push_back(row.home());
        return true;
    });
    for (const RowRef row : rows)
        permissions.erase(row);
}

[[noreturn]] void throwFieldInUse()
{
    throw Error(3280, kFail, u"Cannot delete a field that is part of an index or is needed by the system.");
}

// A relationship that is not enforced has no index, but names its columns all the same.
void refuseUsedColumn(PageFile& file, const Table& table, const Column& column)
{
    for (const PhysicalIndex& index : table.definition().physicalIndexes)
        for (const IndexColumn& part : index.columns)
            if (part.number == column.number)
                throwFieldInUse();
    const SortOrder order = file.header().sortOrder;
    const Table relationships(file, kRelationshipsPage, u"MSysRelationships");
    const std::pair<std::size_t, std::size_t> sides[] = {
        {columnOf(relationships, u"szObject"), columnOf(relationships, u"szColumn")},
        {columnOf(relationships, u"szReferencedObject"), columnOf(relationships, u"szReferencedColumn")}};
    relationships.forEachRow([&](const Row& row) {
        for (const auto& [object, name] : sides)
            if (compareTexts(textIn(row, object), table.name(), order) == 0 &&
                compareTexts(textIn(row, name), column.name, order) == 0)
                throwFieldInUse();
        return true;
    });
}

} // namespace

void Catalogue::dropColumn(const CatalogueEntry& entry, std::u16string_view name)
{
    Table table = openForDesign(entry);
    const std::optional<std::size_t> at = table.columnIndex(name);
    if (!at)
        throw Error(3381, kErrorsOccurred,
            u"There is no field named '" + std::u16string(name) + u"' in table '" + entry.name + u"'.");
    const std::u16string column = table.definition().columns[*at].name;
    refuseUsedColumn(file_, table, table.definition().columns[*at]);
    table.requireWritable();
    if (table.definition().columns.size() == 1)
        throwUnsupported(u"The field '" + column + u"' is the only one of the table '" + entry.name +
            u"'; the table can be dropped instead.");
    Table objects(file_, kObjectsPage, u"MSysObjects");
    const std::size_t propertiesColumn = columnOf(objects, u"LvProp");
    std::vector<Assignment> changes = {{columnOf(objects, u"DateUpdate"), Date{platform::oleNow()}}};
    if (const auto blob = bytesIn(objects.rowAt(entry.row), propertiesColumn)) {
        PropertySet properties = PropertySet::parse(*blob).value(); // open() has parsed it
        if (!properties.tableRule().empty())
            throwUnsupported(u"The table '" + entry.name + u"' has the validation rule '" +
                properties.tableRule() + u"', which may need the field; it is left as it is.");
        properties.removeColumn(column, file_.header().sortOrder);
        changes.push_back({propertiesColumn, properties.encode()});
    }
    table.removeColumn(*at);
    objects.update(entry.row, changes);
}

void Catalogue::dropTable(const CatalogueEntry& entry)
{
    requireOwnTable(entry);
    if (!entry.isUserTable())
        throwUnsupported(u"The table '" + entry.name + u"' belongs to the system and is left as it is.");
    const TableDefinition definition = readTableDefinition(file_, static_cast<PageNo>(entry.id));
    refuseComplexColumns(entry, definition);
    refuseRelationships(file_, entry.name, definition);
    Belongings belongings(file_, definition);
    Table objects(file_, kObjectsPage, u"MSysObjects");
    objects.requireWritable();

    removePermissions(file_, entry.id);
    objects.erase(entry.row);
    belongings.giveBack();
}

} // namespace vellums::jet

// Creating tables and adding columns: the pages of the table, and what the system tables say of it.
//
// A table is its definition, a page or more of usage maps, and a leaf for each index; no page of rows as
// yet. Its id in the catalogue is its first definition page. The catalogue gets a row in MSysObjects with
// the properties, and a row in MSysACEs for each right that the container of tables hands down. Whatever may
// be refused is looked at before the first page is taken.
#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/definitionBuilder.h"
#include "jet/catalogue/objectName.h"
#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/catalogue/tableDesign.h"
#include "jet/file/maps/freePages.h"
#include "jet/index/bTree.h"
#include "jet/index/collation.h"
#include "platform/clock.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::int32_t kTableType = 1;
constexpr std::size_t kOwnerBytes = 2; // of the engine, the user and the creator
// Who somebody is, is stored under a stream of bytes that differs from file to file but is the same for all
// values of one. So the one known value, of the engine, tells the others: the creator's second byte differs
// by these bits.
constexpr std::byte kCreatorMark{0x07};

// Pages for the definition, the maps and the index roots, written in full.
void layOut(PageFile& file, TableDefinition& definition)
{
    FreePages free(file);
    encodeDefinition(definition); // for its length; places do not change it
    for (std::size_t i = definitionPageCount(definition.joined.size()); i > 0; --i)
        definition.pages.push_back(free.allocate());
    definition.page = definition.pages[0];
    std::vector<PageNo> mapPages((mapCount(definition) + kMapsOnPage - 1) / kMapsOnPage);
    for (PageNo& page : mapPages)
        page = free.allocate();
    for (PhysicalIndex& index : definition.physicalIndexes) {
        index.root = free.allocate();
        BTree::initRoot(file.writeNew(index.root), definition.page);
    }
    placeMaps(definition, mapPages);
    for (const PageNo page : mapPages)
        writeMapPage(file.writeNew(page), page, definition);
    encodeDefinition(definition);
    writeDefinitionBytes(file, definition);
}

struct Permission {
    Bytes sid;
    std::int32_t rights;
};

// What a new table inherits from the container of tables. Rights of the container's creator go to the
// owner of the table.
std::vector<Permission> inheritedPermissions(
    const Table& objects, const Table& permissions, const Bytes& owner)
{
    const std::size_t object = columnOf(permissions, u"ObjectId");
    const std::size_t sid = columnOf(permissions, u"SID");
    const std::size_t rights = columnOf(permissions, u"ACM");
    const std::size_t inheritable = columnOf(permissions, u"FInheritable");
    std::optional<Bytes> creator;
    if (const auto row = objectRow(objects, static_cast<std::int32_t>(kObjectsPage)))
        creator = bytesIn(*row, columnOf(objects, u"Owner"));
    if (creator && creator->size() == kOwnerBytes)
        (*creator)[1] ^= kCreatorMark;

    std::vector<Permission> inherited;
    permissions.forEachRow([&](const Row& row) {
        if (numberIn(row, object) != kTablesId || row.value(inheritable) != Value(true))
            return true;
        Permission permission{bytesIn(row, sid).value_or(Bytes()), numberIn(row, rights)};
        if (creator && permission.sid == *creator)
            permission.sid = owner;
        const auto same = std::find_if(
            inherited.begin(), inherited.end(), [&](const Permission& p) { return p.sid == permission.sid; });
        if (same != inherited.end())
            same->rights |= permission.rights;
        else
            inherited.push_back(std::move(permission));
        return true;
    });
    return inherited;
}

void addPermissions(Table& permissions, std::int32_t id, const std::vector<Permission>& granted)
{
    for (const Permission& permission : granted)
        permissions.insert(
            {{columnOf(permissions, u"ObjectId"), id}, {columnOf(permissions, u"SID"), permission.sid},
                {columnOf(permissions, u"ACM"), permission.rights},
                {columnOf(permissions, u"FInheritable"), false}});
}

bool isNameTaken(const Table& objects, std::u16string_view name, SortOrder order)
{
    const std::size_t parentColumn = columnOf(objects, u"ParentId");
    const std::size_t nameColumn = columnOf(objects, u"Name");
    bool taken = false;
    objects.forEachRow([&](const Row& row) {
        taken = numberIn(row, parentColumn) == kTablesId &&
            compareTexts(textIn(row, nameColumn), name, order) == 0;
        return !taken;
    });
    return taken;
}

} // namespace

PageNo Catalogue::createTable(const TableSpec& spec)
{
    const SortOrder order = file_.header().sortOrder;
    const std::u16string name = checkedTableName(spec.name, order);
    TableDefinition definition = designTable(spec, file_.header());
    Table objects(file_, kObjectsPage, u"MSysObjects");
    Table permissions(file_, kPermissionsPage, u"MSysACEs");
    if (isNameTaken(objects, name, order))
        throw Error(3010, kErrorsInCommand, u"Table '" + name + u"' already exists.");
    std::optional<Bytes> owner;
    if (const auto row = objectRow(objects, kDatabaseId))
        owner = bytesIn(*row, columnOf(objects, u"Owner"));
    if (!owner)
        throwDamaged(u"the catalogue does not say who owns the database");
    const std::vector<Permission> granted = inheritedPermissions(objects, permissions, *owner);
    PropertySet properties;
    for (std::size_t i = 0; i < spec.columns.size(); ++i)
        properties.addColumn(
            definition.columns[i].name, definition.columns[i].type, spec.columns[i].required);

    layOut(file_, definition);
    const auto id = static_cast<std::int32_t>(definition.page);
    const Date now{platform::oleNow()};
    objects.insert({{columnOf(objects, u"Id"), id}, {columnOf(objects, u"ParentId"), kTablesId},
        {columnOf(objects, u"Name"), name}, {columnOf(objects, u"Type"), kTableType},
        {columnOf(objects, u"DateCreate"), now}, {columnOf(objects, u"DateUpdate"), now},
        {columnOf(objects, u"Owner"), *owner}, {columnOf(objects, u"Flags"), std::int32_t{0}},
        {columnOf(objects, u"LvProp"), properties.encode()}});
    addPermissions(permissions, id, granted);
    return definition.page;
}

void Catalogue::addColumn(const CatalogueEntry& entry, const ColumnSpec& spec)
{
    const SortOrder order = file_.header().sortOrder;
    Table table = openForDesign(entry);
    table.requireWritable();
    Column column = designColumn(spec, order);
    if (table.columnIndex(column.name))
        throw Error(3380, kErrorsOccurred,
            u"Field '" + column.name + u"' already exists in table '" + entry.name + u"'.");
    bool hasRows = false;
    table.forEachRow([&](const Row&) {
        hasRows = true;
        return false;
    });
    if (spec.required && hasRows)
        throwUnsupported(u"A required field cannot be added to the table '" + entry.name +
            u"', because its rows would have no value there.");

    Table objects(file_, kObjectsPage, u"MSysObjects");
    const std::size_t propertiesColumn = columnOf(objects, u"LvProp");
    PropertySet properties;
    if (const auto blob = bytesIn(objects.rowAt(entry.row), propertiesColumn))
        properties = PropertySet::parse(*blob).value();
    properties.addColumn(column.name, column.type, spec.required);
    table.appendColumn(column);
    objects.update(entry.row,
        {{columnOf(objects, u"DateUpdate"), Date{platform::oleNow()}},
            {propertiesColumn, properties.encode()}});
}

} // namespace vellums::jet

// What must agree among the system tables: the eight objects that every file has, with their ids; ids and
// names that are unique, and parents that exist; the definitions of the four tables themselves; properties,
// rights, relationships and complex columns that speak of tables and columns which are there. A relationship
// that is enforced stands in three places, its rows, its object and an index on either side, and they must
// meet.
//
// Names are compared as the file's sort order does, not byte by byte, as all who look them up do.
#include "jet/upkeep/catalogueChecker.h"

#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/index/collation.h"

#include <algorithm>
#include <map>
#include <set>

namespace vellums::jet {
namespace {

constexpr std::int32_t kTable = 1;
constexpr std::int32_t kRelationship = 8;
constexpr std::int32_t kDocument = -32757; // may have no permissions
constexpr std::int32_t kNotEnforced = 2;
constexpr std::uint8_t kForeignKey = 2;

struct FixedObject {
    std::int32_t id;
    std::int32_t parentId;
    const char16_t* name;
    std::int32_t type;
};

// These stand in every file.
const FixedObject kFixedObjects[] = {
    {kTablesId, kRootId, u"Tables", 3},
    {kDatabasesId, kRootId, u"Databases", 3},
    {kRelationshipsId, kRootId, u"Relationships", 3},
    {kDatabaseId, kDatabasesId, u"MSysDb", 2},
    {kObjectsPage, kTablesId, u"MSysObjects", kTable},
    {kPermissionsPage, kTablesId, u"MSysACEs", kTable},
    {kQueriesPage, kTablesId, u"MSysQueries", kTable},
    {kRelationshipsPage, kTablesId, u"MSysRelationships", kTable},
};

bool sameColumn(const Column& a, const Column& b)
{
    const bool samePlace = a.isFixed() ? a.offset == b.offset : a.slot == b.slot;
    return a.name == b.name && a.type == b.type && a.number == b.number && a.flags == b.flags &&
        a.length == b.length && samePlace;
}

bool sameIndex(const PhysicalIndex& a, const PhysicalIndex& b)
{
    return a.flags == b.flags &&
        std::equal(a.columns.begin(), a.columns.end(), b.columns.begin(), b.columns.end(),
            [](const IndexColumn& x, const IndexColumn& y) {
                return x.number == y.number && x.ascending == y.ascending;
            });
}

// Compares what the rows depend on; where maps and roots lie may differ from file to file.
bool sameShape(const TableDefinition& a, const TableDefinition& b)
{
    return std::equal(a.columns.begin(), a.columns.end(), b.columns.begin(), b.columns.end(), sameColumn) &&
        std::equal(a.physicalIndexes.begin(), a.physicalIndexes.end(), b.physicalIndexes.begin(),
            b.physicalIndexes.end(), sameIndex);
}

class CatalogueChecker {
public:
    CatalogueChecker(PageLedger& ledger, const std::vector<CatalogueObject>& objects)
        : ledger_(ledger)
        , file_(ledger.file())
        , objects_(objects)
    {
        for (const CatalogueObject& object : objects)
            byId_.emplace(object.id, &object);
    }

    void run()
    {
        checkFixedObjects();
        checkTree();
        if (!file_.format().writable) {
            ledger_.attempt(u"MSysACEs", [&] { checkPermissions(); });
            return;
        }
        checkSystemDefinitions();
        for (const CatalogueObject& object : objects_)
            if (object.type == kTable && object.properties)
                ledger_.attempt(u"table '" + object.name + u"'", [&] { checkProperties(object); });
        ledger_.attempt(u"MSysACEs", [&] { checkPermissions(); });
        ledger_.attempt(u"MSysRelationships", [&] { checkRelationships(); });
        ledger_.attempt(u"MSysComplexColumns", [&] { checkComplexColumns(); });
    }

private:
    void checkFixedObjects()
    {
        for (const FixedObject& expected : kFixedObjects) {
            const auto found = byId_.find(expected.id);
            if (found == byId_.end() || found->second->parentId != expected.parentId ||
                found->second->name != expected.name || found->second->type != expected.type)
                ledger_.fault(u"MSysObjects: the object '" + std::u16string(expected.name) +
                    u"' is missing or not as it should be");
        }
    }

    void checkTree()
    {
        std::set<std::int32_t> ids;
        std::map<std::pair<std::int32_t, Bytes>, std::u16string> names;
        for (const CatalogueObject& object : objects_) {
            if (!ids.insert(object.id).second)
                ledger_.fault(u"MSysObjects: the id of '" + object.name + u"' is used twice");
            if (object.parentId != kRootId && !byId_.contains(object.parentId))
                ledger_.fault(u"MSysObjects: the parent of '" + object.name + u"' is missing");
            const Bytes key = comparisonKey(object.name, file_.header().sortOrder);
            if (!names.emplace(std::pair(object.parentId, key), object.name).second)
                ledger_.fault(u"MSysObjects: the name '" + object.name + u"' is used twice");
        }
    }

    void checkSystemDefinitions()
    {
        const std::vector<SystemTable> tables = coreTables(file_.header().sortOrder);
        for (std::size_t i = 0; i < tables.size(); ++i)
            ledger_.attempt(tables[i].name, [&] {
                const TableDefinition real =
                    readTableDefinition(file_, kObjectsPage + static_cast<PageNo>(i));
                if (!sameShape(real, tables[i].definition))
                    ledger_.fault(tables[i].name + u": the definition is not that of the system table");
            });
    }

    void checkProperties(const CatalogueObject& object)
    {
        const std::optional<PropertySet> properties = PropertySet::parse(*object.properties);
        if (!properties)
            return ledger_.fault(u"table '" + object.name + u"': its properties cannot be read");
        const Table table(file_, static_cast<PageNo>(object.id), object.name);
        for (const std::u16string& column : properties->columns())
            if (!table.columnIndex(column))
                ledger_.fault(
                    u"table '" + object.name + u"': properties of a missing column '" + column + u"'");
    }

    void checkPermissions()
    {
        const Table permissions(file_, kPermissionsPage, u"MSysACEs");
        const std::size_t objectColumn = columnOf(permissions, u"ObjectId");
        std::set<std::int32_t> granted;
        permissions.forEachRow([&](const Row& row) {
            const std::int32_t id = numberIn(row, objectColumn);
            granted.insert(id);
            if (!byId_.contains(id) && id != kRootId)
                ledger_.fault(u"MSysACEs: " + placeText(row.home()) + u" names a missing object");
            return true;
        });
        for (const CatalogueObject& object : objects_)
            if (object.type != kDocument && !granted.contains(object.id))
                ledger_.fault(u"MSysACEs: the object '" + object.name + u"' has no permissions");
    }

    const CatalogueObject* tableNamed(const std::u16string& name) const
    {
        for (const CatalogueObject& object : objects_)
            if (object.parentId == kTablesId &&
                compareTexts(object.name, name, file_.header().sortOrder) == 0)
                return &object;
        return nullptr;
    }

    // A side of a relationship: the table if its column exists as well.
    std::optional<Table> checkSide(
        const std::u16string& relationship, const std::u16string& table, const std::u16string& column)
    {
        const CatalogueObject* const object = tableNamed(table);
        if (object == nullptr) {
            ledger_.fault(u"relationship '" + relationship + u"': the table '" + table + u"' is missing");
            return std::nullopt;
        }
        if (object->type != kTable)
            return std::nullopt;
        Table opened(file_, static_cast<PageNo>(object->id), object->name);
        if (!opened.columnIndex(column))
            ledger_.fault(u"relationship '" + relationship + u"': the column '" + column + u"' is missing");
        return opened;
    }

    // The indexes of both sides name each other.
    void checkPartners(const std::u16string& name, const Table& referring, const Table& referenced)
    {
        const auto& indexes = referring.definition().logicalIndexes;
        const auto& others = referenced.definition().logicalIndexes;
        const auto own = std::find_if(indexes.begin(), indexes.end(), [&](const LogicalIndex& index) {
            return index.kind == kForeignKey && compareTexts(index.name, name, file_.header().sortOrder) == 0;
        });
        const auto other = std::find_if(others.begin(), others.end(), [&](const LogicalIndex& index) {
            return own != indexes.end() && index.kind == kForeignKey &&
                index.number == static_cast<std::uint32_t>(own->partner) &&
                static_cast<std::uint32_t>(index.partner) == own->number;
        });
        if (other == others.end())
            ledger_.fault(u"relationship '" + name + u"': the indexes of its tables do not name each other");
    }

    void checkRelationships()
    {
        const Table table(file_, kRelationshipsPage, u"MSysRelationships");
        const std::size_t nameColumn = columnOf(table, u"szRelationship");
        table.forEachRow([&](const Row& row) {
            const std::u16string name = textIn(row, nameColumn);
            const auto text = [&](const char16_t* column) { return textIn(row, columnOf(table, column)); };
            const bool known =
                std::any_of(objects_.begin(), objects_.end(), [&](const CatalogueObject& object) {
                    return object.type == kRelationship &&
                        compareTexts(object.name, name, file_.header().sortOrder) == 0;
                });
            if (!known)
                ledger_.fault(u"relationship '" + name + u"': its object is missing");
            const auto referring = checkSide(name, text(u"szObject"), text(u"szColumn"));
            const auto referenced = checkSide(name, text(u"szReferencedObject"), text(u"szReferencedColumn"));
            if (referring && referenced && (numberIn(row, columnOf(table, u"grbit")) & kNotEnforced) == 0)
                checkPartners(name, *referring, *referenced);
            return true;
        });
    }

    void checkComplexColumns()
    {
        const CatalogueObject* const object = tableNamed(u"MSysComplexColumns");
        if (object == nullptr || object->type != kTable)
            return;
        const Table table(file_, static_cast<PageNo>(object->id), object->name);
        table.forEachRow([&](const Row& row) {
            for (const char16_t* column : {u"ComplexTypeObjectID", u"FlatTableID", u"ConceptualTableID"}) {
                const auto found = byId_.find(numberIn(row, columnOf(table, column)));
                if (found == byId_.end() || found->second->type != kTable)
                    ledger_.fault(
                        u"MSysComplexColumns: " + placeText(row.home()) + u" names a missing table");
            }
            return true;
        });
    }

    PageLedger& ledger_;
    PageFile& file_;
    const std::vector<CatalogueObject>& objects_;
    std::map<std::int32_t, const CatalogueObject*> byId_;
};

} // namespace

// A row that cannot be read is a fault, and the others are read all the same; so are properties, without
// which an object is still one.
std::vector<CatalogueObject> readObjects(PageLedger& ledger)
{
    std::vector<CatalogueObject> objects;
    ledger.attempt(u"MSysObjects", [&] {
        const Table table(ledger.file(), kObjectsPage, u"MSysObjects");
        const std::size_t id = columnOf(table, u"Id");
        const std::size_t parent = columnOf(table, u"ParentId");
        const std::size_t name = columnOf(table, u"Name");
        const std::size_t type = columnOf(table, u"Type");
        const std::size_t properties = columnOf(table, u"LvProp");
        table.forEachRow([&](const Row& row) {
            ledger.attempt(u"MSysObjects, " + placeText(row.home()), [&] {
                CatalogueObject object{
                    numberIn(row, id), numberIn(row, parent), textIn(row, name), numberIn(row, type), {}};
                ledger.attempt(
                    u"'" + object.name + u"'", [&] { object.properties = bytesIn(row, properties); });
                objects.push_back(std::move(object));
            });
            return true;
        });
    });
    return objects;
}

void checkCatalogue(PageLedger& ledger, const std::vector<CatalogueObject>& objects)
{
    CatalogueChecker(ledger, objects).run();
}

} // namespace vellums::jet

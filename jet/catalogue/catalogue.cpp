// The tables of a file, by the rows of MSysObjects. A name is found by looking at all rows: an index of
// names exists, but its keys can be made in some sort orders only, and comparing works in every one.
#include "jet/catalogue/catalogue.h"

#include "jet/catalogue/objectName.h"
#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/index/collation.h"

namespace vellums::jet {
namespace {

constexpr std::int16_t kTable = 1;
constexpr std::int16_t kLinkedOdbc = 4;
constexpr std::int16_t kQuery = 5;
constexpr std::int16_t kLinkedFile = 6;
constexpr std::uint32_t kNotForUsers = 0x8000000A; // the engine's own, made by Access, hidden

bool isListed(std::int32_t type)
{
    return type == kTable || type == kLinkedOdbc || type == kQuery || type == kLinkedFile;
}

// Columns of MSysObjects, looked up once.
struct ObjectColumns {
    explicit ObjectColumns(const Table& objects)
        : id(columnOf(objects, u"Id"))
        , parent(columnOf(objects, u"ParentId"))
        , name(columnOf(objects, u"Name"))
        , type(columnOf(objects, u"Type"))
        , flags(columnOf(objects, u"Flags"))
    {
    }
    CatalogueEntry entry(const Row& row) const
    {
        return {numberIn(row, id), numberIn(row, parent), textIn(row, name),
            static_cast<std::int16_t>(numberIn(row, type)), static_cast<std::uint32_t>(numberIn(row, flags)),
            row.home()};
    }

    std::size_t id;
    std::size_t parent;
    std::size_t name;
    std::size_t type;
    std::size_t flags;
};

} // namespace

bool CatalogueEntry::isUserTable() const
{
    return type == kTable && (flags & kNotForUsers) == 0 && !isSystemName(name);
}

bool CatalogueEntry::isQuery() const
{
    return type == kQuery;
}

bool CatalogueEntry::isLinked() const
{
    return type == kLinkedFile || type == kLinkedOdbc;
}

bool CatalogueEntry::isOdbc() const
{
    return type == kLinkedOdbc;
}

Catalogue::Catalogue(PageFile& file)
    : file_(file)
{
}

std::vector<CatalogueEntry> Catalogue::entries() const
{
    const Table objects(file_, kObjectsPage, u"MSysObjects");
    const ObjectColumns columns(objects);
    std::vector<CatalogueEntry> entries;
    objects.forEachRow([&](const Row& row) {
        if (isListed(numberIn(row, columns.type)))
            entries.push_back(columns.entry(row));
        return true;
    });
    return entries;
}

std::optional<CatalogueEntry> Catalogue::find(std::u16string_view name) const
{
    const Table objects(file_, kObjectsPage, u"MSysObjects");
    const ObjectColumns columns(objects);
    std::optional<CatalogueEntry> found;
    objects.forEachRow([&](const Row& row) {
        if (numberIn(row, columns.parent) == kTablesId && isListed(numberIn(row, columns.type)) &&
            compareTexts(textIn(row, columns.name), name, file_.header().sortOrder) == 0)
            found = columns.entry(row);
        return !found;
    });
    return found;
}

// Of an ODBC source only the table is named: its connection string may hold a password.
void Catalogue::requireOwnTable(const CatalogueEntry& entry) const
{
    constexpr std::u16string_view kOnly = u" Only tables of the database itself can be read and changed.";
    if (entry.type == kTable)
        return;
    if (entry.isQuery())
        throwUnsupported(u"'" + entry.name + u"' is a query, no table." + std::u16string(kOnly));
    const Table objects(file_, kObjectsPage, u"MSysObjects");
    const Row row = objects.rowAt(entry.row);
    const auto text = [&](std::u16string_view name) {
        const std::optional<std::size_t> column = objects.columnIndex(name);
        return column ? textIn(row, *column) : std::u16string();
    };
    const std::u16string foreignName = text(u"ForeignName");
    const std::u16string file = entry.isOdbc() ? std::u16string() : text(u"Database");
    std::u16string sentence = u"'" + entry.name + u"' is a linked table";
    if (!foreignName.empty())
        sentence += u": its rows are in the table '" + foreignName + u"'" +
            (entry.isOdbc()        ? u" of an ODBC source"
                    : file.empty() ? u" of another file"
                                   : u" of '" + file + u"'");
    throwUnsupported(sentence + u"." + std::u16string(kOnly));
}

Table Catalogue::open(const CatalogueEntry& entry) const
{
    requireOwnTable(entry);
    Table table(file_, static_cast<PageNo>(entry.id), entry.name);
    if (!file_.format().writable) // what the properties say is for those who write
        return table;
    const Table objects(file_, kObjectsPage, u"MSysObjects");
    const std::optional<Bytes> blob = bytesIn(objects.rowAt(entry.row), columnOf(objects, u"LvProp"));
    if (!blob)
        return table;
    const std::optional<PropertySet> properties = PropertySet::parse(*blob);
    if (!properties) {
        table.refuseChanges(u"its properties cannot be read");
        return table;
    }
    std::vector<ColumnRule> rules;
    const std::u16string tableRule = properties->tableRule();
    for (const Column& column : table.definition().columns) {
        rules.push_back(properties->ruleFor(column.name, file_.header().sortOrder));
        // A rule of the whole table may concern every column.
        if (rules.back().validationRule.empty())
            rules.back().validationRule = tableRule;
    }
    return {file_, static_cast<PageNo>(entry.id), entry.name, std::move(rules)};
}

} // namespace vellums::jet

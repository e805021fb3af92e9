// Making and dropping indexes of tables that exist: what the definition is to hold, and the catalogue's note
// that it has changed. An index stands in the definition of its table alone, no system table names it; but a
// relationship leans on the trees of both its sides.
#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/systemRows.h"
#include "jet/catalogue/tableDesign.h"
#include "jet/index/collation.h"
#include "platform/clock.h"

#include <algorithm>

namespace vellums::jet {
namespace {

// Itself, or by another name of the same tree.
bool isInRelationship(const TableDefinition& definition, const LogicalIndex& index)
{
    return std::any_of(
        definition.logicalIndexes.begin(), definition.logicalIndexes.end(), [&](const LogicalIndex& other) {
            return other.physical == index.physical && other.kind == kForeignKeyKind;
        });
}

} // namespace

Table Catalogue::openForDesign(const CatalogueEntry& entry) const
{
    Table table = open(entry);
    if (!entry.isUserTable())
        throwUnsupported(u"The table '" + entry.name + u"' belongs to the system and is left as it is.");
    return table;
}

void Catalogue::noteDesignChange(const CatalogueEntry& entry)
{
    Table objects(file_, kObjectsPage, u"MSysObjects");
    objects.update(entry.row, {{columnOf(objects, u"DateUpdate"), Date{platform::oleNow()}}});
}

void Catalogue::createIndex(const CatalogueEntry& entry, const IndexSpec& spec)
{
    Table table = openForDesign(entry);
    table.requireWritable();
    DesignedIndex design = designIndex(table.definition(), spec, entry.name, file_.header());
    table.appendIndex(std::move(design.tree), std::move(design.name), design.place);
    noteDesignChange(entry);
}

void Catalogue::dropIndex(const CatalogueEntry& entry, std::u16string_view name)
{
    Table table = openForDesign(entry);
    const std::vector<LogicalIndex>& indexes = table.definition().logicalIndexes;
    const auto index = std::find_if(indexes.begin(), indexes.end(),
        [&](const LogicalIndex& i) { return compareTexts(i.name, name, file_.header().sortOrder) == 0; });
    if (index == indexes.end())
        throw Error(3372, kErrorsInCommand,
            u"No such index '" + std::u16string(name) + u"' on table '" + entry.name + u"'.");
    if (isInRelationship(table.definition(), *index))
        throwInRelationship();
    table.requireWritable();
    table.removeIndex(static_cast<std::size_t>(index - indexes.begin()));
    noteDesignChange(entry);
}

} // namespace vellums::jet

// The system tables as lists, from which their definitions are made. Columns are numbered as they are listed
// here; the records of a definition stand in another order, by name. Types, numbers, places and flags are
// the same in every file, and the checker compares real files with them.
#include "jet/catalogue/systemTables.h"

#include "jet/catalogue/definitionBuilder.h"

#include <algorithm>

namespace vellums::jet {
namespace {

// A column of a system table. Numbers count in the order of the list; fixed columns lie one behind
// the other, variable ones take slots in turn.
struct SystemColumn {
    const char16_t* name;
    ColumnType type;
    std::uint16_t length;
    std::uint8_t flags;
};

struct SystemIndex {
    const char16_t* name;
    std::vector<std::uint16_t> columns;
    std::uint8_t flags;
    std::uint8_t kind;
};

constexpr std::uint8_t kFixed = 0x13;
constexpr std::uint8_t kVariable = 0x12;
constexpr std::uint8_t kCoded = 0x32; // coded by a stream of the file
constexpr std::uint8_t kPlain = 0;
constexpr std::uint8_t kPrimary = 1;
constexpr std::uint16_t kNameBytes = 510;

using enum ColumnType;

// clang-format off
const SystemColumn kObjects[] = {
    {u"Id", Long, 4, kFixed}, {u"ParentId", Long, 4, kFixed}, {u"Name", Text, kNameBytes, kVariable},
    {u"Type", Integer, 2, kFixed}, {u"DateCreate", Date, 8, kFixed}, {u"DateUpdate", Date, 8, kFixed},
    {u"Owner", Binary, kNameBytes, kCoded}, {u"Flags", Long, 4, kFixed}, {u"Database", Memo, 0, kVariable},
    {u"Connect", Memo, 0, kVariable}, {u"ForeignName", Text, kNameBytes, kVariable},
    {u"RmtInfoShort", Binary, kNameBytes, kVariable}, {u"RmtInfoLong", Ole, 0, kVariable},
    {u"Lv", Ole, 0, kVariable}, {u"LvProp", Ole, 0, kVariable}, {u"LvModule", Ole, 0, kVariable},
    {u"LvExtra", Ole, 0, kVariable},
};
const SystemColumn kPermissions[] = {
    {u"ObjectId", Long, 4, kFixed}, {u"SID", Binary, kNameBytes, kCoded}, {u"ACM", Long, 4, kFixed},
    {u"FInheritable", Boolean, 1, kFixed},
};
const SystemColumn kQueries[] = {
    {u"ObjectId", Long, 4, kFixed}, {u"Attribute", Byte, 1, kFixed}, {u"Order", Binary, kNameBytes, kVariable},
    {u"Name1", Text, kNameBytes, kVariable}, {u"Name2", Text, kNameBytes, kVariable},
    {u"Expression", Memo, 0, kVariable}, {u"Flag", Integer, 2, kFixed}, {u"LvExtra", Long, 4, kFixed},
};
const SystemColumn kRelationships[] = {
    {u"szRelationship", Text, kNameBytes, kVariable}, {u"grbit", Long, 4, kFixed},
    {u"ccolumn", Long, 4, kFixed}, {u"icolumn", Long, 4, kFixed}, {u"szObject", Text, kNameBytes, kVariable},
    {u"szColumn", Text, kNameBytes, kVariable}, {u"szReferencedObject", Text, kNameBytes, kVariable},
    {u"szReferencedColumn", Text, kNameBytes, kVariable},
};
const SystemColumn kComplexColumns[] = {
    {u"ColumnName", Text, kNameBytes, kVariable}, {u"ComplexTypeObjectID", Long, 4, kFixed},
    {u"FlatTableID", Long, 4, kFixed}, {u"ConceptualTableID", Long, 4, kFixed},
    {u"ComplexID", Long, 4, kFixed | 0x04},
};
const SystemColumn kAttachment[] = {
    {u"FileURL", Memo, 0, 0x02}, {u"FileName", Text, kNameBytes, 0x02}, {u"FileType", Text, kNameBytes, 0x02},
    {u"FileData", Ole, 0, 0x02}, {u"FileTimeStamp", Date, 8, 0x03}, {u"FileFlags", Long, 4, 0x03},
};
// The one column of the type tables, by the table's name.
const SystemColumn kComplexTypes[] = {
    {u"UnsignedByte", Byte, 1, 0x03}, {u"Short", Integer, 2, 0x03}, {u"Long", Long, 4, 0x03},
    {u"IEEESingle", Single, 4, 0x03}, {u"IEEEDouble", Double, 8, 0x03}, {u"GUID", Guid, 16, 0x03},
    {u"Decimal", Decimal, 9, 0x02}, {u"Text", Text, kNameBytes, 0x02},
};
// clang-format on

bool nameBefore(const std::u16string& a, const std::u16string& b)
{
    const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; };
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
        [lower](char16_t x, char16_t y) { return lower(x) < lower(y); });
}

SystemTable makeTable(std::u16string name, std::uint8_t tableType, std::span<const SystemColumn> columns,
    const std::vector<SystemIndex>& indexes, SortOrder order)
{
    SystemTable table{std::move(name), {}};
    TableDefinition& definition = table.definition;
    definition.tableType = tableType;
    std::uint16_t offset = 0;
    for (const SystemColumn& from : columns) {
        Column column;
        column.name = from.name;
        column.type = from.type;
        column.number = definition.columnSlots++;
        column.slot = definition.variableSlots;
        column.flags = from.flags;
        column.length = from.length;
        column.precision = 18; // of the type table for decimals
        column.sortOrder = order;
        if (!column.isFixed()) {
            ++definition.variableSlots;
        } else if (column.type != ColumnType::Boolean) {
            column.offset = offset;
            offset = static_cast<std::uint16_t>(offset + from.length);
        }
        definition.columns.push_back(column);
    }
    std::sort(definition.columns.begin(), definition.columns.end(),
        [](const Column& a, const Column& b) { return nameBefore(a.name, b.name); });
    for (const SystemIndex& from : indexes) {
        PhysicalIndex& physical = definition.physicalIndexes.emplace_back();
        for (const std::uint16_t number : from.columns)
            physical.columns.push_back({number, true});
        physical.flags = from.flags;
        const auto number = static_cast<std::uint32_t>(definition.logicalIndexes.size());
        definition.logicalIndexes.push_back({from.name, number, number, from.kind, -1});
    }
    std::sort(definition.logicalIndexes.begin(), definition.logicalIndexes.end(),
        [](const LogicalIndex& a, const LogicalIndex& b) { return nameBefore(a.name, b.name); });
    return table;
}

} // namespace

std::vector<SystemTable> coreTables(SortOrder order)
{
    std::vector<SystemTable> tables;
    tables.push_back(makeTable(u"MSysObjects", kSystemTable, kObjects,
        {{u"ParentIdName", {1, 2}, 0x81, kPlain}, {u"Id", {0}, 0x81, kPrimary}}, order));
    tables.push_back(
        makeTable(u"MSysACEs", kSystemTable, kPermissions, {{u"ObjectId", {0}, 0x88, kPlain}}, order));
    tables.push_back(makeTable(
        u"MSysQueries", kSystemTable, kQueries, {{u"ObjectIdAttribute", {0, 1, 2}, 0x81, kPrimary}}, order));
    tables.push_back(makeTable(u"MSysRelationships", kSystemTable, kRelationships,
        {{u"szRelationship", {0}, 0x82, kPlain}, {u"szObject", {4}, 0x82, kPlain},
            {u"szReferencedObject", {6}, 0x82, kPlain}},
        order));
    return tables;
}

std::vector<SystemTable> complexTables(SortOrder order)
{
    std::vector<SystemTable> tables;
    tables.push_back(makeTable(u"MSysComplexColumns", kUserTable, kComplexColumns,
        {{u"IdxID", {4}, 0x8B, kPrimary}, {u"IdxConceptualTableID", {3}, 0x8A, kPlain},
            {u"IdxFlatTableID", {2}, 0x8A, kPlain}},
        order));
    const std::u16string prefix = u"MSysComplexType_";
    for (SystemColumn column : kComplexTypes) {
        const std::u16string name = prefix + column.name;
        column.name = u"Value";
        tables.push_back(makeTable(name, kUserTable, {&column, 1}, {}, order));
    }
    tables.push_back(makeTable(prefix + u"Attachment", kUserTable, kAttachment, {}, order));
    for (Column& column : tables.back().definition.columns)
        column.moreFlags = 0x10;
    return tables;
}

} // namespace vellums::jet

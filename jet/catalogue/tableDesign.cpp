// From what was asked for to a definition that can be written. Columns take numbers, slots and bytes of the
// fixed area in the order of the statement, so that a new table has no gaps; columns of variable length come
// behind the fixed area in every row, whatever their place in the list. Limits are those of the format: what
// passes here can be written and read by other programs. Places on pages come later.
#include "jet/catalogue/tableDesign.h"

#include "jet/catalogue/definitionBuilder.h"
#include "jet/catalogue/objectName.h"
#include "jet/index/collation.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 32;
constexpr std::size_t kMaxIndexColumns = 10;
constexpr std::size_t kMaxFixedArea = 4000; // leaves room for the rest of a row
constexpr std::uint16_t kMaxTextUnits = 255;
constexpr std::uint16_t kMaxBinaryBytes = 510;
constexpr std::uint8_t kFixedFlags = 0x03;
constexpr std::uint8_t kVariableFlags = 0x02;
constexpr std::uint8_t kAutoNumberFlag = 0x04;
constexpr std::uint8_t kCompressedFlag = 0x01;

[[noreturn]] void throwTooLong(const std::u16string& column)
{
    throw Error(3319, kErrorsInCommand, u"Size of field '" + column + u"' is too long.");
}

// The length in the record of a column whose values all have one length; 0 for the others.
std::uint16_t lengthOf(ColumnType type)
{
    return type == ColumnType::Boolean ? 1 : valueSize(type);
}

void setTextLength(Column& column, const ColumnSpec& spec)
{
    const std::uint16_t units = spec.length == 0 ? kMaxTextUnits : spec.length;
    if (units > kMaxTextUnits)
        throwTooLong(spec.name);
    column.length = static_cast<std::uint16_t>(units * 2);
    column.flags = spec.fixedText ? kFixedFlags : kVariableFlags;
    column.moreFlags = spec.fixedText ? 0 : kCompressedFlag;
}

bool sameName(std::u16string_view a, std::u16string_view b, SortOrder order)
{
    return compareTexts(a, b, order) == 0;
}

void addColumns(TableDefinition& definition, const TableSpec& spec, SortOrder order)
{
    if (spec.columns.size() > kMaxColumns)
        throw Error(3190, kErrorsInCommand, u"Too many fields defined.");
    if (spec.columns.empty())
        throw Error(3264, kErrorsInCommand, u"No field defined--cannot append TableDef or Index.");
    bool hasAutoNumber = false;
    for (const ColumnSpec& from : spec.columns) {
        Column column = designColumn(from, order);
        for (const Column& other : definition.columns)
            if (sameName(other.name, column.name, order))
                throw Error(3191, kErrorsInCommand, u"Cannot define field more than once.");
        if (column.isAutoNumber() && hasAutoNumber)
            throw Error(0, kErrorsInCommand, u"A table cannot have more than one AutoNumber field.");
        hasAutoNumber = hasAutoNumber || column.isAutoNumber();
        column.number = definition.columnSlots++;
        column.position = column.number;
        column.slot = definition.variableSlots;
        if (!column.isFixed())
            ++definition.variableSlots;
        else if (column.type != ColumnType::Boolean)
            column.offset = static_cast<std::uint16_t>(definition.fixedLength());
        definition.columns.push_back(std::move(column));
        if (definition.fixedLength() > kMaxFixedArea)
            throw Error(3047, kErrorsInCommand, u"Record is too large.");
    }
}

// What keys can be made for. Descending decimals of the older format do not sort, so they are left out.
bool canBeIndexed(const Column& column, bool ascending, const Header& header)
{
    if (column.type == ColumnType::Decimal)
        return ascending || header.isAce();
    if (isText(column.type))
        return canEncodeTexts(column.sortOrder);
    return column.type != ColumnType::Ole;
}

PhysicalIndex designTree(const TableDefinition& definition, const IndexSpec& spec, const Header& header)
{
    PhysicalIndex index;
    if (spec.columns.empty() || spec.columns.size() > kMaxIndexColumns)
        throw Error(
            3286, kErrorsInCommand, u"The index '" + spec.name + u"' has no field or too many fields.");
    for (const IndexSpec::Part& part : spec.columns) {
        const auto column = std::find_if(definition.columns.begin(), definition.columns.end(),
            [&](const Column& c) { return sameName(c.name, part.column, header.sortOrder); });
        if (column == definition.columns.end())
            throw Error(3409, kErrorsInCommand,
                u"Invalid field definition '" + part.column + u"' in definition of index or relationship.");
        const bool twice = std::any_of(index.columns.begin(), index.columns.end(),
            [&](const IndexColumn& c) { return c.number == column->number; });
        if (twice || !canBeIndexed(*column, part.ascending, header))
            throw Error(3409, kErrorsInCommand,
                u"The field '" + part.column + u"' cannot be indexed in the index '" + spec.name + u"'.");
        index.columns.push_back({column->number, part.ascending});
    }
    index.unique = spec.unique || spec.primary;
    index.required = spec.required || spec.primary;
    index.flags = static_cast<std::uint8_t>(
        0x80 | (index.unique ? 0x01 : 0) | (spec.ignoreNulls ? 0x02 : 0) | (index.required ? 0x08 : 0));
    return index;
}

} // namespace

Column designColumn(const ColumnSpec& spec, SortOrder order)
{
    Column column;
    column.name = checkedName(spec.name);
    column.type = spec.type;
    column.sortOrder = order;
    column.flags = kFixedFlags;
    column.length = lengthOf(spec.type);
    switch (spec.type) {
    case ColumnType::Text:
        setTextLength(column, spec);
        break;
    case ColumnType::Binary:
        column.length = spec.length == 0 ? kMaxBinaryBytes : spec.length;
        if (column.length > kMaxBinaryBytes)
            throwTooLong(spec.name);
        column.flags = kVariableFlags;
        break;
    case ColumnType::Memo:
    case ColumnType::Ole:
        column.flags = kVariableFlags;
        break;
    case ColumnType::Decimal:
        if (spec.precision < 1 || spec.precision > 28 || spec.scale > spec.precision)
            throw Error(3263, kErrorsInCommand, u"Invalid data type.");
        column.precision = spec.precision;
        column.scale = spec.scale;
        break;
    default: // of one length, or none that can be made
        if (column.length == 0)
            throwUnsupported(u"The field '" + spec.name + u"' has a type that cannot be created here.");
    }
    if (spec.autoNumber) {
        if (spec.type != ColumnType::Long)
            throw Error(3263, kErrorsInCommand, u"Invalid data type.");
        column.flags |= kAutoNumberFlag;
    }
    return column;
}

DesignedIndex designIndex(const TableDefinition& definition, const IndexSpec& spec,
    const std::u16string& table, const Header& header)
{
    const std::vector<LogicalIndex>& others = definition.logicalIndexes;
    const auto any = [&](auto&& isSo) { return std::any_of(others.begin(), others.end(), isSo); };
    if (std::max(others.size(), definition.physicalIndexes.size()) >= kMaxIndexes)
        throw Error(3626, kErrorsInCommand, u"There are too many indexes on table '" + table + u"'.");
    DesignedIndex design;
    LogicalIndex& name = design.name;
    name.name = checkedName(spec.name);
    if (any([&](const LogicalIndex& other) { return sameName(other.name, name.name, header.sortOrder); }))
        throw Error(3284, kErrorsInCommand,
            u"Table '" + table + u"' already has an index named '" + name.name + u"'.");
    if (spec.primary && any([](const LogicalIndex& other) { return other.kind == kPrimaryKind; }))
        throw Error(3283, kErrorsInCommand, u"Primary key already exists.");
    name.kind = spec.primary ? kPrimaryKind : 0;
    while (any([&](const LogicalIndex& other) { return other.number == name.number; }))
        ++name.number;
    design.tree = designTree(definition, spec, header);
    // Other programs keep the names of indexes sorted; the numbers say which tree is whose.
    while (design.place < others.size() &&
        compareTexts(others[design.place].name, name.name, header.sortOrder) < 0)
        ++design.place;
    return design;
}

TableDefinition designTable(const TableSpec& spec, const Header& header)
{
    TableDefinition definition;
    definition.tableType = kUserTable;
    addColumns(definition, spec, header.sortOrder);
    for (const IndexSpec& index : spec.indexes) {
        DesignedIndex design = designIndex(definition, index, spec.name, header);
        design.name.physical = static_cast<std::uint32_t>(definition.physicalIndexes.size());
        definition.physicalIndexes.push_back(std::move(design.tree));
        definition.logicalIndexes.insert(
            definition.logicalIndexes.begin() + static_cast<std::ptrdiff_t>(design.place),
            std::move(design.name));
    }
    return definition;
}

} // namespace vellums::jet

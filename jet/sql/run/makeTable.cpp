#include "jet/sql/run/makeTable.h"

#include "jet/sql/run/select.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/sqlError.h"

#include <algorithm>
#include <limits>

namespace vellums::jet::sql {

namespace {

constexpr std::uint8_t kPrimaryKind = 1;

// A column of the source table under the name that it has in the answer.
ColumnSpec copiedColumn(const Column& column, const std::u16string& name)
{
    const bool complex = static_cast<unsigned>(column.type) == 0x12; // attachments, several values
    if (complex || column.isCalculated())
        throwUnsupported(u"The field '" + column.name + u"' " +
            (complex ? u"holds attachments or several values" : u"is calculated") +
            u" and cannot be taken into a new table.");
    ColumnSpec spec;
    spec.name = name;
    spec.type = column.valueType;
    spec.autoNumber = column.isAutoNumber();
    spec.precision = column.precision;
    spec.scale = column.scale;
    if (column.type == ColumnType::Text) {
        spec.length = static_cast<std::uint16_t>(column.length / 2);
        spec.fixedText = column.isFixed();
    } else if (column.type == ColumnType::Binary) {
        spec.length = column.length;
    }
    return spec;
}

// Whole numbers become Long, others Double; texts 255 characters or memos.
ColumnSpec computedColumn(const Select::Output& output)
{
    ColumnSpec spec;
    spec.name = output.name;
    switch (output.type) {
    case ColumnType::Boolean:
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
        spec.type = ColumnType::Long;
        break;
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Date:
    case ColumnType::Guid:
    case ColumnType::Binary:
    case ColumnType::Ole:
        spec.type = output.type;
        break;
    default:
        spec.type = ColumnType::Double;
    }
    return spec;
}

// The unique index on an autonumber column; null: there is none.
const PhysicalIndex* uniqueIndexOf(const TableDefinition& definition)
{
    for (const PhysicalIndex& index : definition.physicalIndexes) {
        if (!index.understood || !index.unique || index.columns.size() != 1)
            continue;
        const Column* const column = definition.columnByNumber(index.columns[0].number);
        if (column != nullptr && column->isAutoNumber())
            return &index;
    }
    return nullptr;
}

void copyUniqueIndex(TableSpec& spec, const TableDefinition& source)
{
    const PhysicalIndex* const index = uniqueIndexOf(source);
    if (index == nullptr)
        return;
    const auto physical = static_cast<std::uint32_t>(index - source.physicalIndexes.data());
    for (const LogicalIndex& logical : source.logicalIndexes) {
        if (logical.physical != physical || logical.kind > kPrimaryKind)
            continue;
        IndexSpec copy;
        copy.name = logical.name;
        copy.columns = {{source.columnByNumber(index->columns[0].number)->name, index->columns[0].ascending}};
        copy.unique = true;
        copy.primary = logical.kind == kPrimaryKind;
        copy.required = index->required;
        copy.ignoreNulls = (index->flags & 0x02) != 0;
        spec.indexes.push_back(std::move(copy));
        return;
    }
}

TableSpec designOf(const Select& select, const SelectStatement& statement)
{
    TableSpec spec;
    spec.name = *statement.into;
    for (const Select::Output& output : select.outputs()) {
        const std::optional<std::size_t> column = output.expression->column;
        spec.columns.push_back(column
                ? copiedColumn(select.table()->definition().columns[*column], output.name)
                : computedColumn(output));
    }
    if (select.table() != nullptr && statement.items.size() == 1 && statement.items.front().all)
        copyUniqueIndex(spec, select.table()->definition());
    return spec;
}

} // namespace

std::int32_t runSelectInto(PageFile& file, SelectStatement& statement, Date now)
{
    Select select(file, statement, now);
    const PageNo page = Catalogue(file).createTable(designOf(select, statement));
    Table table(file, page, *statement.into);
    const std::vector<Column>& columns = table.definition().columns;
    std::int32_t rows = 0;
    select.run([&](std::vector<Value> values) {
        std::vector<Assignment> assignments;
        for (std::size_t i = 0; i < values.size(); ++i)
            assignments.push_back({i, coerceFor(columns[i], std::move(values[i]))});
        table.insert(assignments);
        if (rows == std::numeric_limits<std::int32_t>::max())
            throwOverflow();
        ++rows;
    });
    return rows;
}

} // namespace vellums::jet::sql

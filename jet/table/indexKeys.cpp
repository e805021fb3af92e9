#include "jet/table/indexKeys.h"

#include "jet/table/valueCodec.h"

#include <algorithm>

namespace vellums::jet {
namespace {

std::size_t positionOf(const TableDefinition& definition, std::uint16_t columnNumber)
{
    const Column* const column = definition.columnByNumber(columnNumber);
    if (column == nullptr)
        throwDamaged(u"an index names a column that does not exist");
    return static_cast<std::size_t>(column - definition.columns.data());
}

} // namespace

KeyColumn keyColumnOf(const PageFile& file, const TableDefinition& definition, const IndexColumn& column)
{
    const Column& c = definition.columns[positionOf(definition, column.number)];
    return {c.type, column.ascending, c.sortOrder, file.header().isAce()};
}

TreePlace treeOf(const TableDefinition& definition, const PhysicalIndex& index)
{
    return {index.root, index.usageMap, definition.page};
}

RowKey rowKey(
    const PageFile& file, const TableDefinition& definition, const PhysicalIndex& index, const Row& row)
{
    RowKey key;
    key.allNull = true;
    for (const IndexColumn& column : index.columns) {
        const std::size_t at = positionOf(definition, column.number);
        std::optional<KeyValue> value;
        Bytes scratch;
        if (!row.isNull(at)) {
            value.emplace();
            const Column& c = definition.columns[at];
            if (c.type == ColumnType::Boolean)
                value->boolean = isPresent(*definition.format, row.bytes(), c);
            else if (isText(c.type))
                value->text = toText(row.text(at, scratch));
            else
                value->bytes = row.stored(at).value_or(ByteView());
        }
        (value ? key.allNull : key.anyNull) = !value;
        if (!appendKeyPart(key.bytes, keyColumnOf(file, definition, column), value))
            key.state = RowKey::State::Unencodable;
    }
    if (key.allNull && (index.flags & 0x02) != 0)
        key.state = RowKey::State::Absent;
    return key;
}

} // namespace vellums::jet

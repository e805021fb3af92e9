#include "jet/catalogue/systemRows.h"

namespace vellums::jet {

std::size_t columnOf(const Table& table, std::u16string_view name)
{
    const std::vector<Column>& columns = table.definition().columns;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].name == name)
            return i;
    throwDamaged(u"the table '" + table.name() + u"' lacks the column '" + std::u16string(name) + u"'");
}

std::int32_t numberIn(const Row& row, std::size_t column)
{
    const Value value = row.value(column);
    if (isNull(value))
        return 0;
    if (const auto* number = std::get_if<std::int32_t>(&value))
        return *number;
    throwDamaged(u"a column of a system table has a wrong type");
}

std::u16string textIn(const Row& row, std::size_t column)
{
    Value value = row.value(column);
    if (isNull(value))
        return {};
    if (auto* text = std::get_if<std::u16string>(&value))
        return std::move(*text);
    throwDamaged(u"a column of a system table has a wrong type");
}

std::optional<Bytes> bytesIn(const Row& row, std::size_t column)
{
    Value value = row.value(column);
    if (isNull(value))
        return std::nullopt;
    if (auto* bytes = std::get_if<Bytes>(&value))
        return std::move(*bytes);
    throwDamaged(u"a column of a system table has a wrong type");
}

std::optional<Row> objectRow(const Table& objects, std::int32_t id)
{
    const std::size_t idColumn = columnOf(objects, u"Id");
    std::optional<Row> found;
    objects.forEachRow([&](const Row& row) {
        if (numberIn(row, idColumn) == id)
            found = row;
        return !found;
    });
    return found;
}

} // namespace vellums::jet

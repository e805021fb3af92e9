#include "store/snippetTable.h"

#include "text/decimal.h"

#include <algorithm>
#include <iterator>

namespace vellums {

const SnippetColumn* snippetColumn(std::u16string_view name)
{
    const auto found = std::find_if(std::begin(kSnippetColumns), std::end(kSnippetColumns),
        [&](const SnippetColumn& column) { return column.name == name; });
    return found == std::end(kSnippetColumns) ? nullptr : found;
}

std::vector<std::u16string> snippetColumnNames(int version)
{
    std::vector<std::u16string> names;
    for (const SnippetColumn& column : kSnippetColumns)
        if (column.since <= version)
            names.emplace_back(column.name);
    return names;
}

std::u16string columnDefinition(const SnippetColumn& column)
{
    std::u16string definition(column.name);
    switch (column.kind) {
    case SnippetKind::Counter:
        definition.append(u" COUNTER CONSTRAINT ").append(kSnippetIndex).append(u" UNIQUE");
        break;
    case SnippetKind::Text:
        definition.append(u" VARCHAR(").append(text::decimal(column.length)).append(u")");
        break;
    case SnippetKind::Memo:
        definition.append(u" MEMO");
        break;
    case SnippetKind::Date:
        definition.append(u" DATETIME");
        break;
    }
    if (!column.nullable && column.kind != SnippetKind::Counter)
        definition.append(u" NOT NULL");
    return definition;
}

} // namespace vellums

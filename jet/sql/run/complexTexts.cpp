// A complex column holds numbers. Its values are rows of a hidden table of its own, which MSysComplexColumns
// names: each has the number of the row to which it belongs, under the column's name with a "_" in front, a
// number of its own, and what the kind of the column asks for. The hidden table is read when the first text
// is wanted, once for the statement, by whichever thread comes first.
#include "jet/sql/run/complexTexts.h"

#include "jet/catalogue/systemRows.h"
#include "jet/sql/values/conversion.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace vellums::jet::sql {
namespace {

class FlatTableTexts : public ComplexTexts {
public:
    FlatTableTexts(PageFile& file, PageNo page, const std::u16string& column)
        : table_(file, page, column)
        , key_(table_.columnIndex(u"_" + column))
        , value_(valueColumn(table_.definition().columns))
    {
    }

    std::optional<std::u16string> textOf(std::int32_t key) const override
    {
        const std::lock_guard guard(lock_);
        if (!loaded_)
            load();
        const auto found = texts_.find(key);
        return found == texts_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    // Of an attachment the name of the file, of several values the one, of a history the memo.
    static std::optional<std::size_t> valueColumn(const std::vector<Column>& columns)
    {
        const auto find = [&](auto fits) -> std::optional<std::size_t> {
            const auto found = std::find_if(columns.begin(), columns.end(), fits);
            return found == columns.end() ? std::nullopt
                                          : std::optional(static_cast<std::size_t>(found - columns.begin()));
        };
        for (const std::u16string_view name : {u"FileName", u"Value"})
            if (const auto column = find([&](const Column& c) { return c.name == name; }))
                return column;
        return find([](const Column& c) { return isText(c.type); });
    }

    void load() const
    {
        texts_.clear();
        if (key_ && value_)
            table_.forEachRow([this](const Row& row) {
                if (row.isNull(*value_))
                    return true;
                const auto [text, first] = texts_.try_emplace(numberIn(row, *key_));
                text->second += (first ? u"" : u";") + sql::textOf(row.value(*value_));
                return true;
            });
        loaded_ = true;
    }

    Table table_;
    std::optional<std::size_t> key_;
    std::optional<std::size_t> value_;
    mutable std::mutex lock_; // of what follows
    mutable bool loaded_ = false;
    mutable std::map<std::int32_t, std::u16string> texts_;
};

} // namespace

void attachComplexTexts(PageFile& file, const Catalogue& catalogue, const CatalogueEntry& entry, Table& table)
{
    const std::vector<Column>& columns = table.definition().columns;
    const auto isComplex = [](const Column& column) { return column.type == ColumnType::Complex; };
    if (std::none_of(columns.begin(), columns.end(), isComplex))
        return;
    const std::optional<CatalogueEntry> list = catalogue.find(u"MSysComplexColumns");
    if (!list)
        return;
    const Table complexColumns = catalogue.open(*list);
    const std::size_t name = columnOf(complexColumns, u"ColumnName");
    const std::size_t owner = columnOf(complexColumns, u"ConceptualTableID");
    const std::size_t flat = columnOf(complexColumns, u"FlatTableID");
    complexColumns.forEachRow([&](const Row& row) {
        if (numberIn(row, owner) != entry.id)
            return true;
        const std::optional<std::size_t> column = table.columnIndex(textIn(row, name));
        if (column && isComplex(columns[*column]))
            table.setComplexTexts(*column,
                std::make_shared<FlatTableTexts>(
                    file, static_cast<PageNo>(numberIn(row, flat)), columns[*column].name));
        return true;
    });
}

} // namespace vellums::jet::sql

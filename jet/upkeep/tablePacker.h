// Writes one table anew into another file: its rows and long values close together, its indexes over them.
#pragma once

#include "jet/table/table.h"

#include <map>
#include <optional>
#include <vector>

namespace vellums::jet {

// Tables whose definition gets another page, which is their id in the system tables.
using MovedIds = std::map<std::int32_t, std::int32_t>;

class TablePacker {
public:
    // `table` is read; `fresh` is its definition as it shall be in `to`: pages, maps (empty but for the
    // roots) and roots (empty leaves) are there. `idColumn`: the column that holds ids of tables.
    TablePacker(PageFile& from, const Table& table, PageFile& to, TableDefinition fresh,
        std::optional<std::size_t> idColumn, const MovedIds& moved);

    // Writes rows, indexes and the definition. Throws Error.
    void run();

private:
    void copyRow(const Row& row);
    void renumber(MutableBytes number) const;
    void buildIndex(std::size_t index);
    RowRef placeOf(RowRef before) const;

    PageFile& from_;
    const Table& table_;
    PageFile& to_;
    TableDefinition fresh_;
    std::optional<std::size_t> idColumn_;
    const MovedIds& moved_;
    struct Place {
        std::uint32_t before;
        std::uint32_t now;
    };
    std::vector<Place> places_; // of the rows, by the first
    PageNo lastPage_ = 0;       // of rows in `to`
};

} // namespace vellums::jet

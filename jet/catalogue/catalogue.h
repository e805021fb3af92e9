// The system tables: which tables there are, creating one, adding a column or an index, dropping one.
#pragma once

#include "jet/table/table.h"

#include <optional>
#include <string>
#include <vector>

namespace vellums::jet {

// A row of MSysObjects.
struct CatalogueEntry {
    std::int32_t id = 0; // for a table its definition page
    std::int32_t parentId = 0;
    std::u16string name;
    std::int16_t type = 0; // 1 table, 4 and 6 linked tables, 5 query
    std::uint32_t flags = 0;
    RowRef row; // its place in MSysObjects

    // An ordinary table: offered in lists, may be written.
    bool isUserTable() const;
    bool isQuery() const;
    bool isLinked() const; // to a table of another file, or through ODBC
    bool isOdbc() const;
};

struct ColumnSpec {
    std::u16string name;
    ColumnType type = ColumnType::Text;
    std::uint16_t length = 0; // texts and binaries: characters, bytes
    bool autoNumber = false;
    bool required = false;
    std::uint8_t precision = 18; // decimals
    std::uint8_t scale = 0;
    bool fixedText = false;
};

struct IndexSpec {
    std::u16string name;
    struct Part {
        std::u16string column;
        bool ascending = true;
    };
    std::vector<Part> columns;
    bool unique = false;
    bool primary = false;
    bool ignoreNulls = false;
    bool required = false;
};

struct TableSpec {
    std::u16string name;
    std::vector<ColumnSpec> columns;
    std::vector<IndexSpec> indexes;
};

// Reading is in catalogue.cpp, new tables and columns are in tableCreation.cpp, indexes in
// indexChanges.cpp, dropping tables and columns is in tableRemoval.cpp.
class Catalogue {
public:
    explicit Catalogue(PageFile& file);

    // All rows that are tables, queries or linked tables, in the order of MSysObjects.
    std::vector<CatalogueEntry> entries() const;

    // The table, query or linked table of that name (compared by the file's sort order).
    std::optional<CatalogueEntry> find(std::u16string_view name) const;

    // Throws Error (unsupported) for queries and linked tables; it says which, and where a linked one lies.
    void requireOwnTable(const CatalogueEntry& entry) const;

    // Opens a table with the rules that its properties set. Throws as requireOwnTable() does.
    // Properties that do not parse make the table read-only.
    Table open(const CatalogueEntry& entry) const;

    // Makes a table. Throws Error: name taken (3010), name or column not allowed, too many columns,
    // a name that the file's sort order cannot encode. Gives the definition page.
    PageNo createTable(const TableSpec& spec);

    // Appends a column. Throws Error: the field exists (3380), too many fields (3190).
    void addColumn(const CatalogueEntry& entry, const ColumnSpec& column);

    // Drops a column with its values and properties. Throws Error: there is none of that name (3381); an
    // index or a relationship uses it (3280); it is the only one, or a rule of the table may need it
    // (unsupported).
    void dropColumn(const CatalogueEntry& entry, std::u16string_view name);

    // Makes an index over the rows of a table. Throws Error as designIndex() and Table::appendIndex() do.
    void createIndex(const CatalogueEntry& entry, const IndexSpec& index);

    // Removes an index. Throws Error: there is none of that name (3372); it is part of a relationship (3281).
    void dropIndex(const CatalogueEntry& entry, std::u16string_view name);

    // Gives back every page of the table and takes it out of the catalogue, with its properties and
    // permissions. Throws Error: it takes part in a relationship (3281); it is no ordinary table of this
    // file, or holds something that is not fully understood (unsupported); damaged file.
    void dropTable(const CatalogueEntry& entry);

private:
    Table openForDesign(const CatalogueEntry& entry) const;
    void noteDesignChange(const CatalogueEntry& entry);

    PageFile& file_;
};

} // namespace vellums::jet

// The rows of one table: reading them lazily, column by column, and changing them together with the
// table's indexes, usage maps and counters.
#pragma once

#include "jet/file/dataPage.h"
#include "jet/table/tableDefinition.h"
#include "jet/table/value.h"

#include <optional>
#include <string>
#include <vector>

namespace vellums::jet {

// A text as it lies in the file: UTF-16LE, or one byte per character (U+0001 to U+00FF) when
// `latin`. Compressed texts that switch modes are decoded into `scratch` first.
struct StoredText {
    bool latin = false;
    ByteView bytes;
};

// One row, decoded when asked. Valid until the table is changed; what it gives of its bytes, as long as
// the row.
class Row {
public:
    Row(const PageFile& file, const TableDefinition& definition, RowRef home, PageView bytes);

    // Its identity: page and entry, for indexes and changes. A moved row keeps it.
    RowRef home() const { return home_; }

    // Columns count in the order of definition().columns. All throw (damaged file) on malformed rows.
    bool isNull(std::size_t column) const;
    Value value(std::size_t column) const;
    // The text of a text or memo column that is not NULL. `scratch` is used where the bytes do not lie
    // together in the file; it must live as long as the result.
    StoredText text(std::size_t column, Bytes& scratch) const;
    // The bytes that the row itself holds for the column, for long values the reference; nullopt for
    // NULL. A boolean has no bytes.
    std::optional<ByteView> stored(std::size_t column) const;
    ByteView bytes() const { return bytes_; }

private:
    // The value's bytes, of long values and calculated columns too; nullopt for NULL.
    std::optional<ByteView> content(std::size_t column, Bytes& scratch) const;

    const PageFile* file_;
    const TableDefinition* definition_;
    RowRef home_;
    PageView bytes_;
};

// What the catalogue says about a column beyond its definition.
struct ColumnRule {
    bool required = false;
    bool allowsEmpty = true;
    std::u16string defaultValue;          // an expression; empty: none
    std::u16string validationRule;        // empty: none
    std::optional<ColumnType> resultType; // of a calculated column
};

// A value for a column.
struct Assignment {
    std::size_t column = 0; // index into definition().columns
    Value value;            // already of the column's type, see coerceFor()
};

// One table. Finding and reading rows is in table.cpp, adding, changing and removing them in tableWrite.cpp,
// columns and indexes that come and go in tableColumns.cpp and tableIndexes.cpp.
class Table {
public:
    // `rules` runs parallel to the columns; empty: no rules.
    Table(PageFile& file, PageNo definitionPage, std::u16string name, std::vector<ColumnRule> rules = {});

    const std::u16string& name() const { return name_; }
    const TableDefinition& definition() const { return definition_; }
    const std::vector<ColumnRule>& rules() const { return rules_; }
    std::optional<std::size_t> columnIndex(std::u16string_view name) const; // by the file's sort order

    // All rows in the order of the table. The callback returns false to stop.
    template <typename Callback>
    void forEachRow(Callback&& callback) const
    {
        Scan scan(*this);
        while (const std::optional<Row> row = scan.next())
            if (!callback(*row))
                return;
    }

    // A pass over all rows, or over those of some pages. The table must not be changed meanwhile.
    class Scan {
    public:
        explicit Scan(const Table& table);
        Scan(const Table& table, std::vector<PageNo> pages);
        std::optional<Row> next();

    private:
        const Table& table_;
        std::vector<PageNo> pages_;
        std::size_t pageIndex_ = 0;    // of the page after the current one
        std::optional<DataPage> page_; // the current one
        int row_ = 0;
    };

    // Passes over up to `parts` pieces of about the same size that together give all rows in the order of
    // the table. Each may run in a thread of its own.
    std::vector<Scan> scans(std::size_t parts) const;

    // The row with that identity. Throws (damaged file) when there is none.
    Row rowAt(RowRef home) const;

    // Rows whose column holds the number, through an index when a suitable one exists (an ascending or
    // descending index on the column alone); nullopt: no such index, scan instead.
    std::optional<std::vector<RowRef>> findLong(std::size_t column, std::int32_t number) const;

    // Throws Error (with a sentence that says why) when the engine cannot maintain this table.
    void requireWritable() const;
    // From now on the rows give these texts for a complex column.
    void setComplexTexts(std::size_t column, std::shared_ptr<const ComplexTexts> texts);

    // From now on requireWritable() refuses, and gives this reason.
    void refuseChanges(std::u16string reason) { readOnlyReason_ = std::move(reason); }

    // Inserts a row. Columns without an assignment get NULL, the autonumber its next value; an
    // autonumber assigned NULL as well. Checks rules, lengths, nulls and unique indexes before anything
    // is written. Gives the autonumber of the new row, 0 when the table has none.
    std::int32_t insert(const std::vector<Assignment>& assignments);

    // Changes columns of one row.
    void update(RowRef home, const std::vector<Assignment>& assignments);

    void erase(RowRef home);

    // Appends a column to the definition; existing rows read NULL. For catalogue/, which also writes
    // the column's properties.
    void appendColumn(const Column& column);

    // Takes a column that no index has out of the definition, and gives back the pages of its long values.
    // Rows keep its bytes until they are written again; its number and its slot are never another column's.
    void removeColumn(std::size_t column);

    // Makes an index over the rows that are there. `name.physical` is set here; the name takes that place
    // among the others. Throws Error, with nothing changed: two rows have the same key (3022), a row has no
    // value where one is required (3314), a key cannot be made (unsupported).
    void appendIndex(PhysicalIndex index, LogicalIndex name, std::size_t place);

    // Takes the name of an index out of the definition. When no other name stands for its tree the tree goes,
    // too, and its pages are given back.
    void removeIndex(std::size_t logicalIndex);

    // Gives every row the layout of the definition as it is now.
    void rewriteRows();

private:
    friend class Scan;

    PageFile& file_;
    std::u16string name_;
    TableDefinition definition_;
    std::vector<ColumnRule> rules_;
    std::u16string readOnlyReason_;
};

} // namespace vellums::jet

// The definition of one table: its columns, indexes and usage maps, read from the definition pages.
#pragma once

#include "jet/file/columnType.h"
#include "jet/file/header.h"
#include "jet/file/pageFile.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::jet {

// The texts that stand for the values of a complex column, by the number in its rows.
class ComplexTexts {
public:
    virtual ~ComplexTexts() = default;
    // Nullopt: no values. By several threads at once too.
    virtual std::optional<std::u16string> textOf(std::int32_t key) const = 0;
};

struct Column {
    std::u16string name;
    ColumnType type = ColumnType::Long; // as it is stored
    // Of the values that rows give: dates of the extended kind are dates, a calculated column has the type
    // that its properties tell, a complex one gives texts where they are known.
    ColumnType valueType = ColumnType::Long;
    std::uint16_t number = 0;   // its bit in the null mask of rows; never changes
    std::uint16_t slot = 0;     // variable columns: place in the row's table of offsets
    std::uint16_t position = 0; // for display
    std::uint8_t flags = 0;     // byte 15 of the record
    std::uint8_t moreFlags = 0; // byte 16
    std::uint16_t offset = 0;   // fixed columns: where the value lies in the fixed area
    std::uint16_t length = 0;   // bytes: of the value if fixed, at most if variable, 0 for long values
    std::uint8_t precision = 0; // decimals
    std::uint8_t scale = 0;
    SortOrder sortOrder; // texts
    RowRef ownedMap;     // long values: usage maps of the column's pages; page 0: none
    RowRef freeMap;
    std::size_t mapsOffset = 0; // of their places, in the definition's `joined`; 0: they have none
    std::shared_ptr<const ComplexTexts> complexTexts;

    bool isFixed() const { return (flags & 0x01) != 0; }
    bool isAutoNumber() const { return (flags & 0x04) != 0 && type == ColumnType::Long; }
    bool isCalculated() const { return (moreFlags & 0xC0) != 0; }
    // Rows hold references; a calculated memo may call itself a text.
    bool holdsLongValues() const { return isLongValue(type) || ownedMap.page != 0; }
    bool isCompressed() const { return (moreFlags & 0x01) != 0; }
};

struct IndexColumn {
    std::uint16_t number = 0; // of the column
    bool ascending = true;
};

// One B-tree.
struct PhysicalIndex {
    std::vector<IndexColumn> columns;
    RowRef usageMap;
    PageNo root = 0;
    std::size_t offset = 0; // of its record, in the definition's `joined`
    std::uint8_t flags = 0; // 0x01 unique, 0x02 ignore nulls, 0x08 required, 0x80 always
    bool unique = false;    // by the flag or by a primary key on it
    bool required = false;
    bool understood = true; // false: unknown flags or columns; the table is not written
};

inline constexpr std::uint8_t kPrimaryKind = 1; // of logical indexes
inline constexpr std::uint8_t kForeignKeyKind = 2;

// A name and a role for a physical index.
struct LogicalIndex {
    std::u16string name;
    std::uint32_t number = 0;
    std::uint32_t physical = 0;
    std::uint8_t kind = 0;     // 0 plain, 1 primary key, 2 foreign key
    std::int32_t partner = -1; // foreign keys: logical number in the other table
};

struct TableDefinition {
    const Format* format = &kJet4;
    std::uint16_t codePage = 0;    // of texts, where the format has them so
    PageNo page = 0;               // the first definition page; it names the table in the file
    std::vector<PageNo> pages;     // all definition pages, in order
    Bytes joined;                  // first page whole, then the others from byte 8 on, cut to the length at 8
    std::uint8_t tableType = 0x4E; // 0x4E user, 0x53 system
    std::uint32_t rowCount = 0;    // a hint
    std::uint32_t lastAutoNumber = 0;
    std::uint16_t columnSlots = 0;   // highest column number ever used + 1
    std::uint16_t variableSlots = 0; // variable slots ever used
    RowRef ownedMap;
    RowRef freeMap;
    std::vector<Column> columns; // in the order that SELECT * has
    std::vector<PhysicalIndex> physicalIndexes;
    std::vector<LogicalIndex> logicalIndexes;
    std::vector<std::size_t> counterOffsets; // of each physical index's counters, in `joined`

    const Column* columnByNumber(std::uint16_t number) const;
    // Bytes of the fixed area of a row written today.
    std::size_t fixedLength() const;
};

// Bytes of a value in the fixed area: by the type, for texts and binaries by the column's length. 0 for
// booleans, which are a bit of the null mask.
std::size_t fixedSize(const Column& column);

// The 25 bytes that describe a column, and its name as the definition holds it.
void appendColumnRecord(Bytes& bytes, const Column& column);
void appendName(Bytes& bytes, std::u16string_view name);

// The records of an index: as a tree, and as a name that is no part of a relationship.
void appendPhysicalRecord(Bytes& bytes, const PhysicalIndex& index);
void appendLogicalRecord(Bytes& bytes, const LogicalIndex& index);

// Where in `joined` the parts behind the head and the counters begin.
struct DefinitionParts {
    std::size_t columns;
    std::size_t columnNames;
    std::size_t physicalIndexes;
    std::size_t logicalIndexes;
    std::size_t indexNames; // in the order of the logical indexes
};

DefinitionParts partsOf(const TableDefinition& definition);
// The place behind so many names, where they are UTF-16.
std::size_t skipNames(const Bytes& joined, std::size_t at, std::size_t count);

// Pages that a definition of so many bytes takes.
std::size_t definitionPageCount(std::size_t bytes);

// Throws (damaged file) when any part breaks a rule of the format.
TableDefinition readTableDefinition(const PageFile& file, PageNo page);

// Writes `joined` back over the definition pages, taking more pages where it has grown.
void writeDefinitionBytes(PageFile& file, TableDefinition& definition);

// Writes where the maps and the roots lie, as the fields say it, into `joined` alone.
void storePlaces(TableDefinition& definition);

// Changes one number in `joined` and on its page (or pages).
void patchDefinition(PageFile& file, TableDefinition& definition, std::size_t offset, std::uint32_t number);

// Sizes of the parts of `joined` where it is written: the header, then a counter for each physical index,
// then the columns.
inline constexpr std::size_t kDefinitionHeader = kJet4.definition.headBytes;
inline constexpr std::size_t kIndexCounter = kJet4.definition.counterBytes;
inline constexpr std::size_t kColumnRecord = kJet4.definition.columnBytes;

// Offsets of counters in `joined`.
inline constexpr std::size_t kRowCountOffset = kJet4.definition.rowCount;
inline constexpr std::size_t kAutoNumberOffset = kJet4.definition.autoNumber;

} // namespace vellums::jet

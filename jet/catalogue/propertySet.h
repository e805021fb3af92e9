// The properties of a table and its columns: the value of LvProp in MSysObjects.
//
//   4 bytes   "MR2" and a zero byte
//   blocks    u32 length of the block, u16 kind, content
//
//   kind 0x80  the names that all properties use, each u16 byte length and UTF-16LE; the first block
//   kind 0     properties of the table, kind 1 properties of a column: u32 length of this head
//              (6 + name bytes), u16 byte length of the name, the column's name; then records:
//
//   u16 length of the record, u8 1 when it belongs to the definition, u8 type as of columns,
//   u16 number of the name, u16 byte length of the value, the value (texts UTF-16LE, booleans a byte)
#pragma once

#include "jet/file/header.h"
#include "jet/table/table.h"

#include <optional>
#include <string>
#include <vector>

namespace vellums::jet {

class PropertySet {
public:
    // An empty one, ready for the properties of a new table.
    PropertySet();

    // Nullopt when the bytes break a rule of the form.
    static std::optional<PropertySet> parse(ByteView bytes);
    // What was parsed comes back byte for byte.
    Bytes encode() const;

    // What the properties set for a column; absent properties set no rule. Names compare by the order.
    ColumnRule ruleFor(std::u16string_view column, SortOrder order) const;
    // The validation rule of the whole table; empty: none.
    std::u16string tableRule() const;

    // Adds the block of a new column: nulls, and for texts empty values and compression.
    void addColumn(const std::u16string& column, ColumnType type, bool required);

    // Takes the block of a column out; the names that it used stay.
    void removeColumn(std::u16string_view column, SortOrder order);

    // The columns that have a block.
    std::vector<std::u16string> columns() const;

private:
    struct Property {
        std::uint8_t definition = 0;
        ColumnType type = ColumnType::Boolean;
        std::uint16_t name = 0;
        Bytes value;
    };
    struct Block {
        bool column = false;
        std::u16string name;
        std::vector<Property> properties;
    };

    bool parseBlock(std::uint16_t kind, ByteView content);
    std::uint16_t nameNumber(std::u16string_view name);
    void addBoolean(Block& block, std::u16string_view name, bool value);
    void applyTo(ColumnRule& rule, const Property& property) const;

    std::vector<std::u16string> names_;
    std::vector<Block> blocks_;
};

} // namespace vellums::jet

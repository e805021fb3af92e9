// The types of columns, by their code in the file.
#pragma once

#include <cstdint>

namespace vellums::jet {

enum class ColumnType : std::uint8_t {
    Boolean = 0x01,
    Byte = 0x02,
    Integer = 0x03, // 16 bits
    Long = 0x04,
    Currency = 0x05,
    Single = 0x06,
    Double = 0x07,
    Date = 0x08,
    Binary = 0x09,
    Text = 0x0A,
    Ole = 0x0B,
    Memo = 0x0C,
    Guid = 0x0F,
    Decimal = 0x10,
    FixedBinary = 0x11, // 3992 bytes, in a system table of older files
    Complex = 0x12,
    BigInteger = 0x13,
    ExtendedDate = 0x14,
};

inline bool isText(ColumnType type)
{
    return type == ColumnType::Text || type == ColumnType::Memo;
}
inline bool isLongValue(ColumnType type)
{
    return type == ColumnType::Memo || type == ColumnType::Ole;
}

} // namespace vellums::jet

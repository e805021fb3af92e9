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

// Bytes of a stored value, for types whose values all have one length; 0 for the others and for booleans,
// which are a bit of the null mask.
constexpr std::uint8_t valueSize(ColumnType type)
{
    switch (type) {
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Complex:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::BigInteger:
    case ColumnType::Double:
    case ColumnType::Date:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Decimal:
        return 17;
    case ColumnType::ExtendedDate:
        return 42;
    default:
        return 0;
    }
}

inline bool isText(ColumnType type)
{
    return type == ColumnType::Text || type == ColumnType::Memo;
}
inline bool isLongValue(ColumnType type)
{
    return type == ColumnType::Memo || type == ColumnType::Ole;
}

} // namespace vellums::jet

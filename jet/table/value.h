// One value of a row or of an expression.
#pragma once

#include "jet/file/bytes.h"

#include <array>
#include <cstdint>
#include <string>
#include <variant>

namespace vellums::jet {

// Its copy is not trivial on purpose. A variant of GCC 12 whose alternatives are all trivial, strings or
// vectors believes that it always holds one; where copying a text then fails for lack of memory, it
// destroys what was never made.
struct Null {
    Null() noexcept = default;
    Null(const Null&) noexcept { }
    Null& operator=(const Null&) noexcept { return *this; }
    friend bool operator==(Null, Null) { return true; }
};

// Days since 1899-12-30, local time; the fraction is the time of day and counts forward from midnight
// for days before that date as well.
struct Date {
    double days = 0;
    friend bool operator==(const Date&, const Date&) = default;
};

struct Currency {
    std::int64_t tenThousandths = 0;
    friend bool operator==(const Currency&, const Currency&) = default;
};

// (negative ? -1 : 1) * magnitude / 10^scale; the words count from the most significant one.
struct Decimal {
    bool negative = false;
    std::array<std::uint32_t, 4> magnitude{};
    std::uint8_t scale = 0;
    friend bool operator==(const Decimal&, const Decimal&) = default;
};

// The sixteen bytes as they are stored: u32, u16, u16 little-endian, eight bytes.
struct Guid {
    std::array<std::byte, 16> bytes{};
    friend bool operator==(const Guid&, const Guid&) = default;
};

// Byte, Integer and Long columns give std::int32_t; Single gives float; Big integer std::int64_t;
// Text and Memo std::u16string; Binary, OLE and unknown types Bytes.
using Value = std::variant<Null, bool, std::int32_t, std::int64_t, float, double, Date, Currency, Decimal,
    Guid, std::u16string, Bytes>;

inline bool isNull(const Value& value)
{
    return std::holds_alternative<Null>(value);
}

} // namespace vellums::jet

// What one UTF-16 code unit contributes to a text key, for each sort order.
#pragma once

#include "jet/file/bytes.h"
#include "jet/file/header.h"

#include <array>
#include <cstdint>
#include <vector>

namespace vellums::jet {

enum class WeightKind : std::uint8_t {
    Ignored,
    Weight,      // primary weights and as many diacritic values
    Kana,        // the same and a kana flag
    Modifier,    // a combining mark: adds to the last diacritic value
    Punctuation, // no weight; counts by its position, after everything else
    Unknown,     // has no place in the sort order
};

constexpr std::uint8_t kPlainDiacritic = 0x02;

// The table of one sort order, unpacked: code unit to weights.
class TextWeights {
public:
    // The table for a sort order; the first call for a table unpacks it, in any thread. Orders without
    // a table of their own give General legacy.
    static const TextWeights& of(SortOrder order);

    explicit TextWeights(std::span<const std::uint8_t> ranges);

    WeightKind kind(char16_t unit) const { return units_[unit].kind; }
    // Primary weights; empty unless kind is Weight or Kana.
    ByteView primary(char16_t unit) const
    {
        const Unit& u = units_[unit];
        return {u.primaryLength <= 4 ? u.primary.data() : pool_.data() + u.at(), u.primaryLength};
    }
    // Diacritic values, one for each primary weight.
    ByteView diacritics(char16_t unit) const
    {
        const Unit& u = units_[unit];
        return {u.diacriticLength == 1 ? &u.diacritic : pool_.data() + u.diacriticAt, u.diacriticLength};
    }
    // Kana flag, modifier value or punctuation value.
    std::uint8_t detail(char16_t unit) const { return units_[unit].detail; }

private:
    // Up to four bytes of primary weights lie here; more lie in the pool, and `primary` says where.
    struct Unit {
        std::array<std::byte, 4> primary{};
        std::uint16_t diacriticAt = 0;
        std::uint8_t primaryLength = 0;
        std::uint8_t diacriticLength = 0;
        std::byte diacritic{};
        WeightKind kind = WeightKind::Ignored;
        std::uint8_t detail = 0;

        std::uint32_t at() const
        {
            std::uint32_t value;
            std::memcpy(&value, primary.data(), sizeof value);
            return value;
        }
    };

    void setPrimary(Unit& unit, const Bytes& primary);
    void setDiacritics(Unit& unit, ByteView diacritics);

    std::vector<Unit> units_;
    Bytes pool_;
};

} // namespace vellums::jet

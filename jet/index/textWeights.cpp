// Unpacks the ranges of a packed table (collationTables.h) into an entry of a few bytes for each code unit,
// so that a look-up is one step; a table takes less than a megabyte, and is unpacked when it is first asked
// for. Within a range the weight moves on by a step from unit to unit. Short weights lie in the entry
// itself. Longer ones lie in a pool, and the entry has their place; so do diacritics of more than one value.
#include "jet/index/textWeights.h"

#include "jet/index/collationTables.h"

#include <cassert>

namespace vellums::jet {
namespace {

// Kinds as the packed tables number them; the first six are those of WeightKind.
constexpr std::uint8_t kPrivateUse = 6; // four units share a weight and differ in their diacritic value
constexpr std::array<std::uint8_t, 4> kPrivateUseDiacritics = {0x02, 0x43, 0x84, 0xC5};

class RangeReader {
public:
    explicit RangeReader(std::span<const std::uint8_t> bytes)
        : bytes_(bytes)
    {
    }
    std::uint8_t byte()
    {
        assert(at_ < bytes_.size());
        return bytes_[at_++];
    }
    std::uint32_t number()
    {
        std::uint32_t value = 0;
        for (int shift = 0;; shift += 7) {
            const std::uint8_t part = byte();
            value |= static_cast<std::uint32_t>(part & 0x7F) << shift;
            if ((part & 0x80) == 0)
                return value;
        }
    }
    Bytes take(std::size_t count)
    {
        Bytes taken;
        for (std::size_t i = 0; i < count; ++i)
            taken.push_back(std::byte{byte()});
        return taken;
    }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

// The weight `steps` places after `primary`. Of longer weights the last two bytes count, the lower one from
// 02 to FF: 00 and 01 end a key and its levels. So there are 254 of them to one of the upper byte.
Bytes advanced(Bytes primary, std::uint32_t steps)
{
    if (steps == 0)
        return primary;
    const std::size_t n = primary.size();
    if (n == 1) {
        primary[0] = static_cast<std::byte>(std::to_integer<std::uint32_t>(primary[0]) + steps);
        return primary;
    }
    const std::uint32_t value = std::to_integer<std::uint32_t>(primary[n - 2]) * 254 +
        std::to_integer<std::uint32_t>(primary[n - 1]) - 2 + steps;
    primary[n - 2] = static_cast<std::byte>(value / 254);
    primary[n - 1] = static_cast<std::byte>(value % 254 + 2);
    return primary;
}

} // namespace

const TextWeights& TextWeights::of(SortOrder order)
{
    if (order == SortOrder{1033, 1}) {
        static const TextWeights general(generalRanges());
        return general;
    }
    static const TextWeights legacy(generalLegacyRanges());
    return legacy;
}

TextWeights::TextWeights(std::span<const std::uint8_t> ranges)
    : units_(0x10000)
{
    RangeReader in(ranges);
    for (std::uint32_t unit = 0; unit < 0x10000;) {
        const std::uint32_t count = in.number() + 1;
        const std::uint8_t tag = in.byte();
        const std::uint8_t kind = tag & 7;
        const std::uint32_t step = tag >> 3;
        const bool weighs = kind == 1 || kind == 2 || kind == kPrivateUse;
        const std::uint8_t lengths = weighs ? in.byte() : std::uint8_t{0};
        const Bytes primary = in.take(lengths & 0x0F);
        Bytes diacritics = in.take(lengths >> 4);
        if (weighs && diacritics.empty())
            diacritics.push_back(std::byte{kPlainDiacritic});
        const std::uint8_t detail = kind >= 2 && kind <= 4 ? in.byte() : std::uint8_t{0};
        assert(unit + count <= 0x10000); // the table is generated: its ranges cover the units exactly
        for (std::uint32_t i = 0; i < count; ++i, ++unit) {
            Unit& u = units_[unit];
            u.kind = kind == kPrivateUse ? WeightKind::Weight : static_cast<WeightKind>(kind);
            u.detail = static_cast<std::uint8_t>(kind == 4 ? detail + i * step : detail);
            if (kind == kPrivateUse) {
                setPrimary(u, advanced(primary, i / 4));
                diacritics[0] = std::byte{kPrivateUseDiacritics[i % 4]};
            } else if (weighs) {
                setPrimary(u, advanced(primary, i * step));
            }
            if (weighs)
                setDiacritics(u, diacritics);
        }
    }
}

void TextWeights::setPrimary(Unit& unit, const Bytes& primary)
{
    unit.primaryLength = static_cast<std::uint8_t>(primary.size());
    if (primary.size() <= 4) {
        std::copy(primary.begin(), primary.end(), unit.primary.begin());
        return;
    }
    const auto at = static_cast<std::uint32_t>(pool_.size());
    std::memcpy(unit.primary.data(), &at, sizeof at);
    append(pool_, ByteView(primary));
}

void TextWeights::setDiacritics(Unit& unit, ByteView diacritics)
{
    unit.diacriticLength = static_cast<std::uint8_t>(diacritics.size());
    unit.diacritic = diacritics[0];
    if (diacritics.size() == 1)
        return;
    assert(pool_.size() <= 0xFFFF);
    unit.diacriticAt = static_cast<std::uint16_t>(pool_.size());
    append(pool_, diacritics);
}

} // namespace vellums::jet

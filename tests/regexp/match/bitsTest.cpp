#include "regexp/match/bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace vellums::regexp {
namespace {

class Chance {
public:
    explicit Chance(unsigned seed)
        : random_(seed)
    {
    }
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

private:
    std::mt19937 random_;
};

UnitSet randomSet(Chance& chance)
{
    std::vector<UnitRange> ranges;
    // Some sets reach to the largest unit, some have more ranges than are compared at once.
    for (std::uint32_t count = chance.below(10); count > 0; --count) {
        const std::uint32_t first = chance.below(4) == 0 ? 0xFFF0 + chance.below(16) : chance.below(128);
        ranges.push_back({first, std::min(first + chance.below(6), kUnits - 1)});
    }
    const UnitSet set(std::move(ranges));
    return chance.below(3) == 0 ? set.complement() : set;
}

TEST(UnitBits, TellWhichUnitsBelongToTheSet)
{
    for (unsigned seed = 0; seed < 20000; ++seed) {
        Chance chance(seed);
        const UnitSet set = randomSet(chance);
        const UnitBits bits(set);
        if (!bits.usable())
            continue;
        std::u16string units;
        for (std::size_t i = 0; i < kRow; ++i)
            units +=
                static_cast<char16_t>(chance.below(3) == 0 ? 0xFFE0 + chance.below(32) : chance.below(160));
        unsigned expected = 0;
        for (std::size_t i = 0; i < kRow; ++i)
            expected |= unsigned{set.contains(units[i])} << i;
        ASSERT_EQ(bits.of(units.data()), expected) << "seed " << seed;
    }
}

} // namespace
} // namespace vellums::regexp

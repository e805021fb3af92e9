// Which of sixteen units belong to a set, told at once: where a run of them ends is then found by counting
// bits, without a look at each unit.
#pragma once

#include "regexp/parse/units.h"

#include <cstddef>
#include <vector>

namespace vellums::regexp {

inline constexpr std::size_t kRow = 16;

class UnitBits {
public:
    explicit UnitBits(const UnitSet& set);

    // False: the set has too many ranges to be compared, or the processor cannot do it.
    bool usable() const { return usable_; }
    // Bit i: units[i] is one of the set. There are kRow units.
    unsigned of(const char16_t* units) const;

private:
    static constexpr std::size_t kMostRanges = 6;
    static constexpr std::size_t kLanes = 8;

    // A range as the processor compares it, with eight units at once.
    struct Lanes {
        char16_t first[kLanes];
        char16_t length[kLanes];
    };

    std::vector<Lanes> lanes_; // the ranges of the set or of its complement, what has fewer
    bool complement_;
    bool usable_ = false;
};

} // namespace vellums::regexp

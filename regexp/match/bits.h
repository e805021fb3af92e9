// Which units of a row belong to a set, 64 at a time: where runs of them begin and end is then told by
// counting bits, without a look at each unit.
#pragma once

#include "regexp/parse/units.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vellums::regexp {

inline constexpr std::size_t kRow = 64;

class UnitBits {
public:
    explicit UnitBits(const UnitSet& set);

    // Bit i: the unit at `from` + i is one of the set. 0 behind the end of the text.
    std::uint64_t at(std::u16string_view text, std::size_t from) const;

private:
#ifdef __SSE2__
    static constexpr std::size_t kMostRanges = 6;
#else
    static constexpr std::size_t kMostRanges = 0;
#endif
    static constexpr std::size_t kLanes = 8;

    // A range as the processor compares it, with eight units at once.
    struct Lanes {
        char16_t first[kLanes];
        char16_t length[kLanes];
    };

    bool listed(char16_t unit) const;
    std::uint64_t wholeRow(const char16_t* units) const;

    std::vector<UnitRange> ranges_;    // of the set or of its complement, what has fewer
    std::vector<Lanes> lanes_;         // the same ranges
    std::vector<std::uint8_t> listed_; // by unit, where they are too many to be compared
    bool complement_;
};

} // namespace vellums::regexp

// Quick search of a whole text for what a match must contain or begin with. Compares eight units at a
// time where the processor can.
#pragma once

#include "regexp/parse/units.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::regexp {

inline constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// Where the next CR LF stands from `from` on; the text's size when none does.
std::size_t findLineEnd(std::u16string_view text, std::size_t from);

class LiteralScan {
public:
    // None of the texts is empty; they are folded where case does not count.
    LiteralScan(std::vector<std::u16string> literals, bool ignoreCase);

    bool usable() const { return usable_; } // false: there is nothing that could be compared quickly

    struct Hit {
        std::size_t place = kNowhere;
        std::size_t length = 0;
    };
    // The leftmost place from `from` on where one of the literals stands, and of those that stand there
    // the first in order.
    Hit next(std::u16string_view text, std::size_t from) const;

private:
    // Two units of a literal by which it is looked for: a unit fits if it has this value, some bits set.
    struct Probe {
        std::uint32_t offset[2];
        std::uint16_t value[2];
        std::uint16_t bits[2];
    };

    static constexpr std::size_t kMostProbes = 16; // compared at once

    struct Lanes;

    bool addProbe(const std::u16string& literal);
    // Length 0: none stands before the place given, where too little text is left to be compared at once.
    Hit nextOfOne(std::u16string_view text, std::size_t place) const;
    Hit nextOfSeveral(std::u16string_view text, std::size_t place) const;
    Hit hitIn(std::u16string_view text, std::size_t place, unsigned bits) const;
    std::size_t lengthAt(std::u16string_view text, std::size_t place) const; // 0: none stands there

    std::vector<std::u16string> literals_;
    const char16_t* fold_; // null: case counts
    std::vector<Probe> probes_;
    std::size_t reach_ = 0; // the largest offset
    bool usable_ = true;
};

// Looks for units of a set.
class UnitScan {
public:
    explicit UnitScan(const UnitSet& set);

    std::size_t next(std::u16string_view text, std::size_t from) const; // kNowhere: none
    bool has(char16_t unit) const { return has_[unit] != 0; }

private:
    static constexpr std::size_t kMostRanges = 4;

    std::vector<UnitRange> ranges_; // empty: too many for a quick comparison
    std::vector<std::uint8_t> has_;
};

} // namespace vellums::regexp

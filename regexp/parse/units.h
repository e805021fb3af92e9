// Sets of UTF-16 units, and what counts as the same unit without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vellums::regexp {

inline constexpr std::uint32_t kUnits = 0x10000;

// The form in which units are compared without regard to case.
char16_t folded(char16_t unit);
const char16_t* foldTable(); // the same for each of the 65536 units
// All units with the folded form of this one, ascending; itself among them.
std::vector<char16_t> sameFolded(char16_t unit);

struct UnitRange {
    std::uint32_t first;
    std::uint32_t last; // belongs to it
    friend bool operator==(const UnitRange&, const UnitRange&) = default;
    friend auto operator<=>(const UnitRange&, const UnitRange&) = default;
};

// A set of units: ranges that ascend and neither overlap nor touch.
class UnitSet {
public:
    UnitSet() = default;
    // Any ranges, in any order.
    explicit UnitSet(std::vector<UnitRange> ranges);

    const std::vector<UnitRange>& ranges() const { return ranges_; }
    bool empty() const { return ranges_.empty(); }
    bool contains(char16_t unit) const;
    std::size_t size() const;               // units
    bool meets(const UnitSet& other) const; // they have a unit in common

    UnitSet complement() const;
    UnitSet with(const UnitSet& other) const;
    // Together with every unit that has the folded form of one of its own.
    UnitSet withFolded() const;

    friend bool operator==(const UnitSet&, const UnitSet&) = default;
    friend auto operator<=>(const UnitSet&, const UnitSet&) = default;

private:
    std::vector<UnitRange> ranges_;
};

// \d, \w, \s: ASCII only. Line ends: LF and CR.
UnitSet digits();
UnitSet wordUnits();
UnitSet blanks();
UnitSet lineEnds();

} // namespace vellums::regexp

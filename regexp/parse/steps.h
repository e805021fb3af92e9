// Some patterns leave no choice: a row of units and runs of units in which a run, once it has taken all
// it can, never gains from giving a unit back, since what follows cannot begin with one of its units.
// Such a pattern is a list of steps, and a match is found or missed by going through them once.
#pragma once

#include "regexp/parse/tree.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace vellums::regexp {

struct Step {
    enum class Kind : std::uint8_t {
        Run,       // takes units of the set, as many as stand there, fewest to most
        Assert,    // goes on where the assertion holds
        Open,      // a group begins; only where a reference asks
        Close,     // it ends
        Reference, // takes what the group holds, which has ended
    };

    Kind kind = Kind::Run;
    Assertion assertion = Assertion::Start;
    std::uint32_t set = 0;   // Run: its number among the sets of the steps
    std::uint32_t group = 0; // Open, Close, Reference
    std::size_t fewest = 1;  // Run
    std::size_t most = 1;    // Run; kNoMost: any number
};

inline constexpr std::size_t kNoMost = static_cast<std::size_t>(-1);

struct Steps {
    std::vector<Step> list;
    std::vector<UnitSet> sets; // no two alike
    UnitSet beginnings;        // every match begins with one of these
};

// Nothing when the pattern leaves a choice, may match the empty text, or has too many steps.
std::optional<Steps> stepsOf(const Tree& tree);

} // namespace vellums::regexp

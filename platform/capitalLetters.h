// Which unit of UTF-16 is the capital letter of another: the simple upper-case mappings of Unicode 17 that
// stay one unit and do not lead from outside ASCII into it.
#pragma once

#include <cstdint>
#include <span>

namespace vellums::platform {

// Every step-th unit from first to last has the capital letter that lies delta further on.
struct CapitalRun {
    std::uint16_t first;
    std::uint16_t last;
    std::uint16_t step;
    std::int32_t delta;
};

// Ascending.
std::span<const CapitalRun> capitalRuns();

} // namespace vellums::platform

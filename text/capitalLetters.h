// Capital and small letters of UTF-16 units: the simple case mappings of Unicode 17 that stay one unit and
// do not lead from outside ASCII into it.
#pragma once

#include <cstdint>
#include <span>

namespace vellums::text {

// Every step-th unit from first to last has its other form delta further on.
struct LetterRun {
    std::uint16_t first;
    std::uint16_t last;
    std::uint16_t step;
    std::int32_t delta;
};

// Both ascending.
std::span<const LetterRun> capitalRuns(); // the units that have a capital letter
std::span<const LetterRun> smallRuns();   // the units that have a small one

} // namespace vellums::text

// Which units a search without regard to case takes for others, as runs.
#pragma once

#include <cstdint>
#include <span>

namespace vellums::regexp {

// Every step-th unit from first to last stands for itself + delta.
struct FoldRun {
    std::uint16_t first;
    std::uint16_t last;
    std::uint16_t step;
    std::int32_t delta;
};

std::span<const FoldRun> foldRuns();

} // namespace vellums::regexp

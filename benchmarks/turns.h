// Times that can be compared on a busy machine: whoever is measured takes turns with the others, and the
// median counts.
#pragma once

#include <functional>
#include <vector>

namespace vellums::benchmarks {

// The median time of each work over so many rounds, in milliseconds.
std::vector<double> medianTimes(const std::vector<std::function<void()>>& works, int rounds);

} // namespace vellums::benchmarks

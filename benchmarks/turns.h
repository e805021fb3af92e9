// Times that can be compared on a busy machine: whoever is measured takes turns with the others, and the
// median counts.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace vellums::benchmarks {

template <typename Work>
double millisecondsOf(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> times); // at least one

// The median time of each work over so many rounds, in milliseconds.
std::vector<double> medianTimes(const std::vector<std::function<void()>>& works, int rounds);

} // namespace vellums::benchmarks

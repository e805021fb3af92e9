#include "benchmarks/turns.h"

#include <algorithm>
#include <chrono>

namespace vellums::benchmarks {

std::vector<double> medianTimes(const std::vector<std::function<void()>>& works, int rounds)
{
    std::vector<std::vector<double>> times(works.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < works.size(); ++i) {
            const auto start = std::chrono::steady_clock::now();
            works[i]();
            const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
            times[i].push_back(took.count());
        }
    }
    std::vector<double> medians;
    for (std::vector<double>& all : times) {
        const auto middle = all.begin() + rounds / 2;
        std::nth_element(all.begin(), middle, all.end());
        medians.push_back(*middle);
    }
    return medians;
}

} // namespace vellums::benchmarks

#include "benchmarks/turns.h"

#include <algorithm>
#include <utility>

namespace vellums::benchmarks {

double median(std::vector<double> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

std::vector<double> medianTimes(const std::vector<std::function<void()>>& works, int rounds)
{
    std::vector<std::vector<double>> times(works.size());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < works.size(); ++i)
            times[i].push_back(millisecondsOf(works[i]));
    std::vector<double> medians;
    for (std::vector<double>& all : times)
        medians.push_back(median(std::move(all)));
    return medians;
}

} // namespace vellums::benchmarks

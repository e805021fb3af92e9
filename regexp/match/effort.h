// A bound on the work of one search, so that no pattern can hang the program.
#pragma once

#include "regexp/parse/regExpError.h"

#include <cstddef>
#include <cstdint>

namespace vellums::regexp {

// Counted in steps of a few nanoseconds. What is spent beyond the allowance ends the search.
class Effort {
public:
    explicit Effort(std::size_t textLength)
        : left_(kAtLeast + kForEachUnit * static_cast<std::int64_t>(textLength))
        , triesLeft_(kTriesAtLeast + kTriesForEachUnit * static_cast<std::int64_t>(textLength))
    {
    }

    // Throws RegExpError 7 when nothing is left.
    void spend(std::size_t steps)
    {
        left_ -= static_cast<std::int64_t>(steps);
        if (left_ < 0)
            throw RegExpError(RegExpFault::OutOfMemory, {});
    }

    // The same for trying one way after the other, which may be endless and gets less.
    void spendTrying(std::size_t steps)
    {
        triesLeft_ -= static_cast<std::int64_t>(steps);
        if (triesLeft_ < 0)
            throw RegExpError(RegExpFault::OutOfMemory, {});
    }

private:
    static constexpr std::int64_t kAtLeast = 6000000;
    static constexpr std::int64_t kForEachUnit = 64;
    static constexpr std::int64_t kTriesAtLeast = 2000000;
    static constexpr std::int64_t kTriesForEachUnit = 16;

    std::int64_t left_;
    std::int64_t triesLeft_;
};

} // namespace vellums::regexp

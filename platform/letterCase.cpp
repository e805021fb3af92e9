#include "platform/letterCase.h"

#include "platform/capitalLetters.h"

#include <algorithm>

namespace vellums::platform {
namespace {

std::u16string mapped(std::u16string_view text, std::span<const LetterRun> runs)
{
    std::u16string result(text);
    for (char16_t& unit : result) {
        const auto run = std::lower_bound(
            runs.begin(), runs.end(), unit, [](const LetterRun& r, char16_t c) { return r.last < c; });
        if (run != runs.end() && run->first <= unit && (unit - run->first) % run->step == 0)
            unit = static_cast<char16_t>(unit + run->delta);
    }
    return result;
}

} // namespace

std::u16string toCapitals(std::u16string_view text)
{
    return mapped(text, capitalRuns());
}

std::u16string toSmallLetters(std::u16string_view text)
{
    return mapped(text, smallRuns());
}

} // namespace vellums::platform

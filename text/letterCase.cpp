#include "text/letterCase.h"

#include "text/capitalLetters.h"

#include <algorithm>

namespace vellums::text {
namespace {

// The runs ascend and do not overlap; the first that does not end before the unit is the only one that can
// hold it, and one with a step of two leaves out every other unit.
char16_t mapped(char16_t c, std::span<const LetterRun> runs)
{
    const auto run = std::lower_bound(
        runs.begin(), runs.end(), c, [](const LetterRun& r, char16_t unit) { return r.last < unit; });
    const bool found = run != runs.end() && run->first <= c && (c - run->first) % run->step == 0;
    return found ? static_cast<char16_t>(c + run->delta) : c;
}

template <typename Change>
std::u16string changed(std::u16string_view text, Change change)
{
    std::u16string result(text);
    std::transform(result.begin(), result.end(), result.begin(), change);
    return result;
}

char16_t lowerCaseOfCapital(char16_t c)
{
    const char16_t small = lowerCase(c);
    return small != c && upperCase(small) == c ? small : c;
}

} // namespace

char16_t lowerCase(char16_t c)
{
    if (c < 0x80)
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    return mapped(c, smallRuns());
}

char16_t upperCase(char16_t c)
{
    if (c < 0x80)
        return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
    return mapped(c, capitalRuns());
}

std::u16string lowerCase(std::u16string_view text)
{
    return changed(text, [](char16_t c) { return lowerCase(c); });
}

std::u16string upperCase(std::u16string_view text)
{
    return changed(text, [](char16_t c) { return upperCase(c); });
}

std::u16string lowerCaseOfCapitals(std::u16string_view text)
{
    return changed(text, lowerCaseOfCapital);
}

bool equalNoCase(std::u16string_view a, std::u16string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
        [](char16_t x, char16_t y) { return x == y || lowerCase(x) == lowerCase(y); });
}

} // namespace vellums::text

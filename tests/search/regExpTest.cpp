#include "search/regExp.h"

#include "platform/text.h"
#include "tests/search/regExpCases.h"

#include <gtest/gtest.h>

#include <chrono>

namespace vellums {
namespace {

RegExp expression(std::u16string_view pattern, std::string_view flags)
{
    RegExp result;
    result.Pattern = pattern;
    result.IgnoreCase = flags.find('i') != flags.npos;
    result.Global = flags.find('g') != flags.npos;
    result.Multiline = flags.find('m') != flags.npos;
    return result;
}

std::string found(RegExp& regExp, std::u16string_view text)
{
    try {
        std::string result;
        for (const RegExpMatch& match : regExp.Execute(text))
            result += (result.empty() ? "" : " ") + std::to_string(match.FirstIndex) + ":" +
                std::to_string(match.Length);
        return result.empty() ? "-" : result;
    } catch (const RegExpError& e) {
        return "error " + std::to_string(e.number);
    }
}

std::string found(std::u16string_view pattern, std::string_view flags, std::u16string_view text)
{
    RegExp regExp = expression(pattern, flags);
    return found(regExp, text);
}

TEST(RegExp, FindsWhatThePatternsMean)
{
    for (const regexp::Case& c : regexp::kCases)
        EXPECT_EQ(found(c.pattern, c.flags, c.text), c.found)
            << platform::toUtf8(c.pattern) << " on " << platform::toUtf8(c.text);
}

} // namespace
} // namespace vellums

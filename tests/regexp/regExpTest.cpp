#include "regexp/regExp.h"

#include "tests/regexp/cases.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <chrono>

namespace vellums {
namespace {

regexp::RegExp expression(std::u16string_view pattern, std::string_view flags)
{
    regexp::RegExp result;
    result.Pattern = pattern;
    result.IgnoreCase = flags.find('i') != flags.npos;
    result.Global = flags.find('g') != flags.npos;
    result.Multiline = flags.find('m') != flags.npos;
    return result;
}

std::string found(regexp::RegExp& regExp, std::u16string_view text)
{
    try {
        std::string result;
        for (const regexp::RegExpMatch& match : regExp.Execute(text))
            result += (result.empty() ? "" : " ") + std::to_string(match.FirstIndex) + ":" +
                std::to_string(match.Length);
        return result.empty() ? "-" : result;
    } catch (const regexp::RegExpError& e) {
        return "error " + std::to_string(e.number);
    }
}

std::string found(std::u16string_view pattern, std::string_view flags, std::u16string_view text)
{
    regexp::RegExp regExp = expression(pattern, flags);
    return found(regExp, text);
}

TEST(RegExp, FindsWhatThePatternsMean)
{
    for (const regexp::Case& c : regexp::kCases)
        EXPECT_EQ(found(c.pattern, c.flags, c.text), c.found)
            << text::toUtf8(c.pattern) << " on " << text::toUtf8(c.text);
}

TEST(RegExp, TellsWhereAPatternIsWrong)
{
    const struct {
        std::u16string_view pattern;
        std::int32_t number;
        std::size_t position;
    } cases[] = {{u"ab(c", 5020, 2}, {u"ab)c", 5017, 2}, {u"a**", 5018, 2}, {u"x[a-", 5019, 1},
        {u"x[z-a]", 5021, 2}, {u"ab\\", 5017, 2}, {u"a{3,2}", 5017, 1}, {u"x(?<n>a)", 5018, 1},
        {u"(a|b", 5020, 0}, {u"[\\]", 5019, 0}};
    for (const auto& c : cases) {
        regexp::RegExp regExp = expression(c.pattern, "ig");
        try {
            regExp.Execute(u"");
            ADD_FAILURE() << text::toUtf8(c.pattern);
        } catch (const regexp::RegExpError& e) {
            EXPECT_EQ(e.number, c.number) << text::toUtf8(c.pattern);
            EXPECT_EQ(e.position, c.position) << text::toUtf8(c.pattern);
            EXPECT_FALSE(e.description.empty());
        }
    }
}

std::u16string repeated(std::u16string_view piece, std::size_t count)
{
    std::u16string result;
    for (std::size_t i = 0; i < count; ++i)
        result += piece;
    return result;
}

TEST(RegExp, TakesPatternsOfAnySize)
{
    const struct {
        std::u16string pattern;
        std::u16string text;
        const char* found;
    } cases[] = {
        {repeated(u"ab", 5000), repeated(u"ab", 12000), "0:10000 10000:10000"},
        {repeated(u"a|", 5000) + u"b", u"cab", "1:1 2:1"},
        {repeated(u"(", 1000) + u"a" + repeated(u")", 1000), u"ba", "1:1"},
        {repeated(u"(?:", 10000) + u"a" + repeated(u")", 10000), u"a", "error 28"},
        {repeated(u"(", 10000), u"a", "error 28"},
        {repeated(u"(?:", 500) + u"a" + repeated(u")*", 500), u"baa", "0:0 1:2 3:0"},
        {repeated(u"(?=", 900) + u"a" + repeated(u")", 900), u"ba", "1:0"},
        {repeated(u"a?", 2000) + repeated(u"a", 2000), repeated(u"a", 2000), "0:2000"},
        {u"a{1000000}", repeated(u"a", 1000), "-"},
        {u"a{0,1000000}b", repeated(u"a", 1000) + u"b", "0:1001"},
        {u"(a{0,1000}){0,1000}x|b", repeated(u"a", 100) + u"b", "100:1"},
        {u"(?:a?){1000000}b", u"aab", "0:3"},
        {u"((a{1,1000}){1,1000}){1,1000}", repeated(u"a", 3000), "error 7"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(found(c.pattern, "g", c.text), c.found) << text::toUtf8(c.pattern.substr(0, 40));
}

// Backtracking engines take minutes or years for these.
TEST(RegExp, EndsSoonWhateverThePattern)
{
    const std::u16string_view kPatterns[] = {u"(a+)+b", u"(a|aa)+$", u"(.*)*x", u"(a*)*b", u"^(a+)+$",
        u"(?:a|b|ab)*c", u".*.*.*=", u"(?:.*a){12}", u"(?=(a+)+$)a", u"(?!(a+)+b)a", u"a(?:.*b)?",
        u"((a*)*)*", u"(a?){50}a{50}", u"a*?b|a", u"[^b]*b|(a+)+", u"(a+)+\\1b", u"(a|aa)+\\1$", u"(a*)*\\1b",
        u"(a|aa)+\\1!$", u"(?=(a+))\\1b", u"(?:(a)|b|\\1a)+!", u"(?:a|aa)+(!)\\1", u"(?:a*)*(!)\\1"};
    const auto start = std::chrono::steady_clock::now();
    for (const std::u16string_view pattern : kPatterns)
        for (const std::u16string_view end : {u"", u"!"})
            found(pattern, "ig", repeated(u"a", 100000) + std::u16string(end));
    // Every start looks as far as the end of the text.
    const std::u16string farLook = u"!" + repeated(u"abc", 800000);
    EXPECT_EQ(found(u"[ab]+c[abc]+!", "g", farLook), "-");
    EXPECT_EQ(found(u"([ab]+)c\\1[abc]+!", "g", farLook), "-");
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_LT(took.count(), 40) << "seconds, on a busy machine and with every check of the compiler";
    EXPECT_EQ(found(u"(a|aa)+$", "i", repeated(u"a", 100000)), "0:100000");
    EXPECT_EQ(found(u"(a|aa)+$", "i", repeated(u"a", 100000) + u"!"), "-");
    EXPECT_EQ(found(u"(?:(a)|b|\\1a)+!", "", repeated(u"ab", 300000)), "-");
}

// Longer than a block of the automaton, so matches and look-aheads reach over several.
TEST(RegExp, FindsAcrossLongTexts)
{
    const std::u16string text = repeated(u"a", 150000) + u"b\r" + repeated(u"\u4e2d", 70000) + u"c";
    EXPECT_EQ(found(u"a+b", "", text), "0:150001");
    EXPECT_EQ(found(u"[ab]+?\\r[^b]*c", "g", text), "0:220003");
    EXPECT_EQ(found(u"b(?=[^]*c$)", "g", text), "150000:1");
    EXPECT_EQ(found(u"(a)\\1+(b)", "g", text), "0:150001");
    EXPECT_EQ(found(u"a{1499}b", "", repeated(u"a", 75000) + u"b"), "73501:1500");
    EXPECT_EQ(found(u"\\r|(?!a|\u4e2d).", "g", text), "150000:1 150001:1 220002:1");
    EXPECT_EQ(found(u"a|.", "g", text).size() > 1000000, true);
}

TEST(RegExp, MayBeGivenAnotherPattern)
{
    regexp::RegExp regExp = expression(u"a", "g");
    EXPECT_EQ(found(regExp, u"aA"), "0:1");
    regExp.IgnoreCase = true;
    EXPECT_EQ(found(regExp, u"aA"), "0:1 1:1");
    regExp.Pattern = u"(";
    EXPECT_EQ(found(regExp, u"aA"), "error 5020");
    regExp.Pattern = u"A$";
    EXPECT_EQ(found(regExp, u"aA"), "1:1");
    EXPECT_TRUE(regExp.Test(u"a"));
    EXPECT_FALSE(regExp.Test(u"ab"));
}

} // namespace
} // namespace vellums

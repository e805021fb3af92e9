// Patterns that leave no choice: which ones they are, and that they find what they find as part of a
// larger pattern that does leave one.
#include "regexp/parse/steps.h"

#include "regexp/regExp.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

namespace vellums {
namespace {

TEST(RegExpSteps, AreMadeOfPatternsThatLeaveNoChoice)
{
    const struct {
        std::u16string_view pattern;
        bool multiline;
        bool steps;
    } cases[] = {{u"[A-Z][a-z]+ [A-Z][a-z]+", false, true}, {u"a+b", false, true}, {u"a+a", false, false},
        {u"a{3}a", false, true}, {u"a{2,3}[^a]", false, true}, {u"a{2,3}.", false, false},
        {u"a+?b", false, true}, {u"a+?", false, false}, {u"a+?b?", false, false}, {u"a+b?", false, true},
        {u"a+b?a", false, false}, {u"a+b?c", false, true}, {u"a*", false, false}, {u"a*b*", false, false},
        {u"a*b", false, true}, {u"\\w+\\b", false, true}, {u"\\w*\\b-", false, false},
        {u"-*\\ba", false, false}, {u"-+\\ba", false, true}, {u"[a-]+\\b", false, false},
        {u"\\w+\\B-?", false, false}, {u"\\s+$", false, true}, {u"\\s+$", true, false},
        {u"a\\s+$", false, true}, {u"a\\s+$", true, false}, {u"a +$", true, true}, {u"^a+", false, true},
        {u"(a+)b", false, true}, {u"(a)+b", false, true}, {u"(ab)+c", false, false}, {u"a|b", false, false},
        {u"a(?=b)", false, false}, {u"(a+) \\1", false, true}, {u"(a+)\\1", false, false},
        {u"(a)\\1", false, true}, {u"(a+) \\1\\b", false, true}, {u"(a+\\1)b", false, false},
        {u"(a)+b\\1", false, false}, {u"\\1(a)", false, false}};
    for (const auto& c : cases) {
        const regexp::Tree tree = regexp::parsePattern(c.pattern, false, c.multiline);
        EXPECT_EQ(regexp::stepsOf(tree).has_value(), c.steps) << text::toUtf8(c.pattern);
    }
}

// Rows of units and runs, most of which leave no choice.
class RowMaker {
public:
    explicit RowMaker(unsigned seed)
        : random_(seed)
    {
    }

    std::u16string pattern()
    {
        const std::u16string_view edges[] = {u"\\b", u"^", u"$", u"\\B"};
        std::u16string result = below(4) == 0 ? std::u16string(edges[below(2)]) : u"";
        unsigned groups = 0;
        for (unsigned i = 1 + below(5); i > 0; --i) {
            const bool group = below(4) == 0;
            result += group ? u"(" + run() + u")" : run();
            groups += group ? 1 : 0;
            if (groups > 0 && below(5) == 0)
                result += u" \\" + text::decimal(1 + below(groups));
            if (below(8) == 0)
                result += edges[below(4)];
        }
        return result;
    }

    std::u16string text(unsigned longest)
    {
        const std::u16string_view pieces[] = {u"a", u"b", u"A", u"-", u" ", u"ab", u"abab ", u"\u00e9", u"\r",
            u"\n", u"\r\n", u"\u4e2d", u"1", u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"};
        std::u16string result;
        // Few different pieces, so that runs are long.
        const unsigned kinds = 2 + below(std::size(pieces) - 1);
        for (unsigned i = below(longest); i > 0; --i)
            result += pieces[below(4) == 0 ? below(std::size(pieces)) : below(kinds)];
        return result;
    }

private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

    std::u16string run()
    {
        const std::u16string_view units[] = {u"a", u"b", u"[ab]", u"-", u" ", u"\\w", u"\\W", u"\\s", u"[^a]",
            u"[^ ]", u"1", u"[\u00e9\u4e00-\u9fff]", u"[acegikmoqsuwy1-3]", u"[^acegikmoqsuwy-]", u"."};
        const std::u16string_view counts[] = {
            u"+", u"*", u"+?", u"{2}", u"{1,3}", u"{0,2}", u"{2,}?", u"?", u"{40,70}"};
        std::u16string result(units[below(std::size(units))]);
        if (below(2) == 0)
            result += counts[below(below(2) == 0 ? 2 : std::size(counts))];
        return result;
    }

    std::mt19937 random_;
};

std::string matchesOf(regexp::RegExp& regExp, std::u16string_view text)
{
    std::string result;
    for (const regexp::RegExpMatch& match : regExp.Execute(text))
        result += std::to_string(match.FirstIndex) + ":" + std::to_string(match.Length) + " ";
    return result;
}

std::string matchesInLines(regexp::RegExp& regExp, std::u16string_view text)
{
    std::string result;
    regExp.findInLines(text, [&](const regexp::RegExpLineMatch& match) {
        result += std::to_string(match.lineStart) + "+" + std::to_string(match.position) + ":" +
            std::to_string(match.length) + " ";
        return true;
    });
    return result;
}

TEST(RegExpSteps, FindWhatThePatternFindsAsOneOfTwo)
{
    int rows = 0;
    int matches = 0;
    for (unsigned seed = 0; seed < 4000; ++seed) {
        RowMaker maker(seed);
        regexp::RegExp row;
        row.Pattern = maker.pattern();
        row.Global = true;
        row.IgnoreCase = seed % 2 == 0;
        row.Multiline = seed % 3 == 0;
        regexp::RegExp either;
        either.Pattern = u"(?:" + row.Pattern + u"|[])"; // an empty class never matches
        either.Global = true;
        either.IgnoreCase = row.IgnoreCase;
        either.Multiline = row.Multiline;
        if (!regexp::stepsOf(regexp::parsePattern(row.Pattern, row.IgnoreCase, row.Multiline)))
            continue;
        ++rows;
        for (const unsigned longest : {12U, 80U, 600U}) {
            const std::u16string text = maker.text(longest);
            const std::string expected = matchesOf(either, text);
            matches += expected.empty() ? 0 : 1;
            ASSERT_EQ(matchesOf(row, text), expected)
                << "seed " << seed << ": " << text::toUtf8(row.Pattern) << " on " << text::toUtf8(text);
            ASSERT_EQ(matchesInLines(row, text), matchesInLines(either, text))
                << "seed " << seed << ": " << text::toUtf8(row.Pattern) << " on " << text::toUtf8(text);
        }
    }
    EXPECT_GT(rows, 1000);
    EXPECT_GT(matches, 1000);
}

// Too many starts that look far ahead: the automaton takes over, at whatever place that is.
TEST(RegExpSteps, LoseNoMatchWhereTheAutomatonTakesOver)
{
    regexp::RegExp regExp;
    regExp.Global = true;
    const std::u16string_view kPatterns[] = {u"a{1,40}b", u"(a{1,40})b(!{0})\\2"};
    for (const std::u16string_view pattern : kPatterns) {
        regExp.Pattern = pattern;
        for (std::size_t length = 1; length < 150; ++length) {
            const std::size_t first = length > 40 ? length - 40 : 0;
            const std::string one = std::to_string(length - first + 1) + " ";
            EXPECT_EQ(
                matchesOf(regExp, std::u16string(length, u'a') + u"b"), std::to_string(first) + ":" + one);
        }
    }
}

} // namespace
} // namespace vellums

// The engine against the reference matcher: every small pattern on every small text, and random larger
// ones.
#include "regexp/regExp.h"
#include "tests/regexp/patternMaker.h"
#include "tests/regexp/reference.h"
#include "tests/support/sanitized.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

namespace vellums {
namespace {

// One pattern in so many.
constexpr unsigned kFew = tests::kSanitized ? 4 : 1;

std::string shown(const std::vector<std::pair<std::size_t, std::size_t>>& matches)
{
    std::string result;
    for (const auto& [first, end] : matches)
        result += std::to_string(first) + "-" + std::to_string(end) + " ";
    return result;
}

std::string shown(regexp::RegExp& regExp, std::u16string_view text)
{
    std::vector<std::pair<std::size_t, std::size_t>> matches;
    for (const regexp::RegExpMatch& match : regExp.Execute(text))
        matches.emplace_back(match.FirstIndex, match.FirstIndex + match.Length);
    return shown(matches);
}

// Counts the patterns that are valid and the texts they were compared on.
class Comparison {
public:
    // False: they differ, and it is told.
    bool compare(const std::u16string& pattern, bool ignoreCase, bool multiline,
        const std::vector<std::u16string>& texts)
    {
        regexp::Tree tree;
        try {
            tree = regexp::parsePattern(pattern, ignoreCase, multiline);
        } catch (const regexp::RegExpError&) {
            return true;
        }
        ++patterns;
        regexp::RegExp regExp;
        regExp.Pattern = pattern;
        regExp.IgnoreCase = ignoreCase;
        regExp.Multiline = multiline;
        regExp.Global = true;
        for (const std::u16string& text : texts) {
            const auto expected = regexp::referenceMatches(tree, text, true);
            if (!expected)
                continue;
            ++texts_compared;
            matches += expected->empty() ? 0 : 1;
            if (const std::string result = shown(regExp, text); result != shown(*expected)) {
                ADD_FAILURE() << text::toUtf8(pattern) << " on \"" << text::toUtf8(text) << "\": " << result
                              << "instead of " << shown(*expected);
                return false;
            }
        }
        return true;
    }

    int patterns = 0;
    int texts_compared = 0;
    int matches = 0;
};

std::vector<std::u16string> allTexts(std::u16string_view letters, std::size_t longest)
{
    std::vector<std::u16string> texts = {u""};
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (texts[i].size() < longest)
            for (const char16_t letter : letters)
                texts.push_back(texts[i] + letter);
    return texts;
}

TEST(RegExpAgreement, OnEverySmallPatternAndText)
{
    const std::u16string_view kPieces[] = {u"a", u"b", u".", u"|", u"(", u"(?:", u"(?=", u"(?!", u")", u"*",
        u"+?", u"??", u"{2}", u"\\1", u"^", u"$", u"\\b"};
    const std::vector<std::u16string> texts = allTexts(u"ab", 4);
    Comparison comparison;
    std::vector<std::u16string> patterns = {u""};
    int failures = 0;
    for (int pieces = 0; pieces < 5; ++pieces) {
        std::vector<std::u16string> longer;
        for (const std::u16string& pattern : patterns)
            for (const std::u16string_view piece : kPieces)
                longer.push_back(pattern + std::u16string(piece));
        for (std::size_t i = 0; i < longer.size() && failures < 20; i += pieces < 3 ? 1
                 : pieces < 4                                                       ? kFew
                                                                                    : 31 * kFew)
            failures += comparison.compare(longer[i], false, false, texts) ? 0 : 1;
        patterns.swap(longer);
    }
    EXPECT_GT(comparison.patterns, 10000 / static_cast<int>(kFew));
}

constexpr std::u16string_view kQuantifiers[] = {u"*", u"+", u"?", u"*?", u"+?", u"??", u"{2}", u"{0,2}",
    u"{1,3}?", u"{2,}", u"{0}", u"{7}", u"{0,9}", u"{300}", u"{2,400}"};
constexpr tests::PatternChoices kChoices = {
    u"aabbcABx _1\n\r.\u00e9\u00c9\u03c3\u03c2", kQuantifiers, 9, 4, 10};

class EveryKindMaker : public tests::PatternMaker {
public:
    explicit EveryKindMaker(unsigned seed)
        : PatternMaker(seed, kChoices)
    {
    }

private:
    std::u16string atom(int depth) override
    {
        const std::u16string_view simple[] = {u"a", u"b", u"c", u"A", u"x", u".", u"\\w", u"\\W", u"\\s",
            u"\\d", u"[ab]", u"[^a]", u"[^\\w]", u"[B-c]", u"\u00e9", u"\u03c2", u"[^]", u"[]", u"\\n"};
        const std::u16string_view openings[] = {u"(", u"(", u"(?:", u"(?=", u"(?!"};
        if (depth > 0 && below(3) == 0)
            return std::u16string(openings[below(5)]) + pattern(depth - 1) + u")";
        if (below(8) == 0)
            return u"\\" + text::decimal(1 + below(3));
        return std::u16string(simple[below(below(2) == 0 ? 5 : 19)]);
    }
};

TEST(RegExpAgreement, OnRandomPatterns)
{
    Comparison comparison;
    int failures = 0;
    for (unsigned seed = 0; seed < 12000 / kFew && failures < 20; ++seed) {
        EveryKindMaker maker(seed);
        const std::u16string pattern = maker.pattern(3);
        std::vector<std::u16string> texts;
        for (int i = 0; i < 8; ++i)
            texts.push_back(maker.text());
        failures += comparison.compare(pattern, seed % 2 == 0, seed % 5 == 0, texts) ? 0 : 1;
    }
    EXPECT_GT(comparison.patterns, 9000 / static_cast<int>(kFew));
    EXPECT_GT(comparison.matches, 15000 / static_cast<int>(kFew));
}

// What findInLines promises: Execute on each line, without the empty matches.
std::string lineByLine(regexp::RegExp& regExp, std::u16string_view text)
{
    std::string result;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(u"\r\n", start), text.size());
        for (const regexp::RegExpMatch& match : regExp.Execute(text.substr(start, end - start)))
            if (match.Length > 0)
                result += std::to_string(start) + "+" + std::to_string(match.FirstIndex) + ":" +
                    std::to_string(match.Length) + " ";
        start = end + 2;
    }
    return result;
}

std::string inLines(regexp::RegExp& regExp, std::u16string_view text)
{
    std::string result;
    regExp.findInLines(text, [&](const regexp::RegExpLineMatch& match) {
        result += std::to_string(match.lineStart) + "+" + std::to_string(match.position - match.lineStart) +
            ":" + std::to_string(match.length) + " ";
        return true;
    });
    return result;
}

TEST(RegExpAgreement, OfWholeTextsWithTheirLines)
{
    const std::u16string_view kPatterns[] = {u"ab", u"b", u"cab|b", u"[ab]+", u"b{2}", u"[^x]", u"a\\r",
        u"\\n", u"a.*b", u"(a|b)c", u"^a", u"b$", u"x*", u"(a)\\1", u"[x ]{2,3}", u"\\bab", u".", u"\u00e9a",
        u"\u03c3|ab\u03c3", u"a[bc]x", u"(?=ab)a", u"\\r|b"};
    const std::u16string_view pieces[] = {u"a", u"b", u"ab", u"c", u"x", u" ", u"\r\n", u"\r", u"\n",
        u"\u00c9", u"\u03c2", u"aaaaaaaaaaaaaaaaaaaa"};
    std::mt19937 random(7);
    for (const std::u16string_view pattern : kPatterns) {
        regexp::RegExp regExp;
        regExp.Pattern = pattern;
        regExp.Global = true;
        for (int i = 0; i < 400; ++i) {
            std::u16string text;
            for (unsigned long length = random() % 60; length > 0; --length)
                text += pieces[random() % std::size(pieces)];
            regExp.IgnoreCase = i % 2 == 0;
            ASSERT_EQ(inLines(regExp, text), lineByLine(regExp, text))
                << text::toUtf8(pattern) << " on " << text::toUtf8(text);
        }
    }
}

} // namespace
} // namespace vellums

#include "jet/sql/values/likePattern.h"

#include "jet/sql/values/caseFold.h"
#include "jet/table/valueCodec.h"
#include "tests/support/referenceTable.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <random>

namespace vellums::jet::sql {
namespace {

Bytes bytesOf(std::u16string_view text, bool narrow)
{
    Bytes bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        if (!narrow)
            bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

bool isNarrow(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= 1 && unit <= 0xFF; });
}

// Matches the text as it is, as stored in two bytes at an odd address, and in one byte where it can be.
void expectMatch(std::u16string_view text, std::u16string_view pattern, bool expected)
{
    const LikePattern like(pattern);
    const std::string what = text::toUtf8(text) + " LIKE " + text::toUtf8(pattern);
    EXPECT_EQ(like.matches(text), expected) << what;
    Bytes wide{std::byte{0xEE}};
    append(wide, bytesOf(text, false));
    EXPECT_EQ(like.matches(StoredText{false, ByteView(wide).subspan(1)}), expected) << what << " (wide)";
    if (!isNarrow(text))
        return;
    const Bytes narrow = bytesOf(text, true);
    EXPECT_EQ(like.matches(StoredText{true, narrow}), expected) << what << " (narrow)";
}

struct LikeCase {
    const char16_t* text;
    const char16_t* pattern;
    bool matches;
};

// clang-format off
const LikeCase kLikeCases[] = {
    {u"A note about apples", u"%APPLE%", true},
    {u"A note about apples", u"%apples", true},
    {u"A note about apples", u"apples%", false},
    {u"A note about apples", u"a%about%s", true},
    {u"A note about apples", u"a%about%t", false},
    {u"abcabcabd", u"%abcabd%", true},
    {u"aXbXc", u"a%X%X%c", true},
    {u"aXbc", u"a%X%X%c", false},
    {u"ab", u"ab%ab", false},
    {u"aba", u"ab%ba", false},
    {u"abba", u"ab%ba", true},
    {u"50% of it", u"%[%]%", true},
    {u"50 of it", u"%[%]%", false},
    {u"x-y", u"x[a-]y", true},
    {u"x]y", u"x]y", true},
    {u"x[y", u"x[y", true},
    {u"xy", u"x[]y", true},
    {u"", u"[]", true},
    {u"", u"[]%[]", true},
    {u"a", u"%[]", true},
    {u"m", u"[z-a]", false},
    {u"m", u"[!z-a]", true},
    {u"m", u"[a-cl-n]", true},
    {u"é", u"e", false},
    {u"É", u"%é%", true},
    {u"ÿ", u"Ÿ", true},
    {u"µ", u"μ", true},
    {u"ＡＢＣ１", u"abc1", true},
    {u"abc1", u"ＡＢＣ１", true},
    {u"ﾊﾟﾋﾟ", u"は%ひ%", true},
    {u"￡￥", u"£¥", true},
    {u"ﾡￂ", u"\u3131\u314F", true},
    {u"\uFFC0", u"\uFFC1", false},
    {u"ΣΊΣΥΦΟΣ", u"σίσυφος", true},
    {u"ǆ", u"Ǆ", true},
    {u"中文笔记本", u"%笔记_", true},
    {u"line one\r\nline two", u"%one%two", true},
    {u"tail blank ", u"tail blank", false},
};
// clang-format on

TEST(LikePattern, MatchesByTheRules)
{
    for (const LikeCase& c : kLikeCases)
        expectMatch(c.text, c.pattern, c.matches);
}

TEST(LikePattern, AgreesWithTheReferenceCases)
{
    const auto rows = tests::referenceTable("like-cases.tsv");
    if (!rows)
        GTEST_SKIP() << "no reference cases on this machine";
    for (const std::vector<std::u16string>& row : *rows) {
        ASSERT_EQ(row.size(), 3u);
        expectMatch(tests::unescaped(row[0]), tests::unescaped(row[1]), row[2] == u"1");
    }
    EXPECT_GT(rows->size(), 90u);
}

// The plainest matcher there is, for literals, % and _ only.
bool slowMatch(std::u16string_view text, std::u16string_view pattern)
{
    if (pattern.empty())
        return text.empty();
    if (pattern[0] == u'%')
        return slowMatch(text, pattern.substr(1)) || (!text.empty() && slowMatch(text.substr(1), pattern));
    if (text.empty())
        return false;
    const FoldTable& fold = foldTable();
    return (pattern[0] == u'_' || fold[text[0]] == fold[pattern[0]]) &&
        slowMatch(text.substr(1), pattern.substr(1));
}

TEST(LikePattern, AgreesWithASlowMatcher)
{
    constexpr std::u16string_view kTextUnits = u"aAbBzÿé あア中";
    constexpr std::u16string_view kPatternUnits = u"aAbzé%%_あ中";
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        std::mt19937 random(seed);
        const auto make = [&](std::u16string_view units, std::size_t longest) {
            std::u16string made(random() % longest, u' ');
            // Few letters only, or all of them: both near misses and wide texts are wanted.
            const std::size_t choice = random() % 2 == 0 ? 6 : units.size();
            for (char16_t& unit : made)
                unit = units[random() % choice];
            return made;
        };
        const std::u16string text = make(kTextUnits, 40);
        const std::u16string pattern = make(kPatternUnits, 8);
        SCOPED_TRACE("seed " + std::to_string(seed));
        expectMatch(text, pattern, slowMatch(text, pattern));
        if (testing::Test::HasFailure())
            return;
    }
}

TEST(CaseFold, IsAFixedPointAndKeepsAccents)
{
    const FoldTable& fold = foldTable();
    for (std::uint32_t unit = 0; unit < 65536; ++unit)
        EXPECT_EQ(fold[fold[unit]], fold[unit]) << std::hex << unit;
    EXPECT_NE(fold[u'é'], fold[u'e']);
    EXPECT_NE(fold[u'が'], fold[u'か']);
    EXPECT_EQ(fold[0x3000], u' ');
    EXPECT_EQ(foldedAlike(u'A'), (std::vector<char16_t>{u'A', u'a', u'Ａ', u'ａ'}));
}

} // namespace
} // namespace vellums::jet::sql

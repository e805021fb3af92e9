#include "search/occurrences.h"

#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums {
namespace {

std::string listed(std::u16string_view text, std::u16string_view keyword)
{
    std::string result;
    for (const Occurrence& occurrence : findOccurrences(text, keyword).list)
        result += std::to_string(occurrence.position) + " > " + text::toUtf8(occurrence.text) + "; ";
    return result;
}

TEST(Occurrences, StandWhereTheirTextIsMetFirstInTheLine)
{
    const struct {
        std::u16string_view text;
        std::u16string_view keyword;
        const char* listed;
    } cases[] = {
        {u"ab\r\ncab", u"ab", "0 > ab; 5 > ab; "},
        {u"The Tax\r\ntax", u"tax", "4 > Tax; 9 > tax; "},
        {u"concat cat\r\ncat", u"\\bcat", "3 > cat; 12 > cat; "}, // within "concat", and anew in each line
        {u"aaaa", u"aa", "0 > aa; 1 > aa; "},
        {u"a\rb\nc\r\nd", u"[^x]+", "0 > a\rb\nc; 7 > d; "},
        {u"axxb", u"x*", "1 > xx; "},
        {u"学中文\r\n中文", u"中文", "1 > 中文; 5 > 中文; "},
        {u"", u"a", ""},
        {u"a b", u"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(listed(c.text, c.keyword), c.listed) << text::toUtf8(c.keyword);
}

TEST(Occurrences, EndEarlyAndTellWhy)
{
    const Occurrences bad = findOccurrences(u"", u"ab[c");
    ASSERT_TRUE(bad.ending);
    EXPECT_EQ(bad.ending->number, 5019);
    EXPECT_EQ(bad.ending->position, 2U);

    const std::u16string last = std::u16string(32766, u'-') + u"x";
    EXPECT_EQ(listed(u"x\r\n" + last, u"x"), "0 > x; 32769 > x; ");
    const Occurrences far = findOccurrences(u"x\r\n-" + last + u"\r\nx", u"x");
    EXPECT_EQ(far.list.size(), 1U);
    ASSERT_TRUE(far.ending);
    EXPECT_EQ(far.ending->number, 6);

    const std::u16string hard = u"aabb\r\n" + std::u16string(3000, u'a') + u"b";
    const Occurrences spent = findOccurrences(hard, u"(?:a|aa)+(b)\\1");
    EXPECT_EQ(spent.list.size(), 1U);
    ASSERT_TRUE(spent.ending) << "the second line takes too many steps";
    EXPECT_EQ(spent.ending->number, 7);

    const Occurrences many = findOccurrences(std::u16string(32767, u'a') + u"\r\naaa", u"a");
    EXPECT_EQ(many.list.size(), kMostOccurrences);
    EXPECT_FALSE(many.ending) << "a full list is no failure";
}

} // namespace
} // namespace vellums

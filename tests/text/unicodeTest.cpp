#include "text/unicode.h"

#include "text/decimal.h"
#include "text/letterCase.h"
#include "text/pieces.h"

#include <gtest/gtest.h>

namespace vellums::text {
namespace {

struct Utf8Case {
    const char* bytes;
    const char16_t* text;
};

const Utf8Case kMalformed[] = {
    {"a\x80z", u"a\uFFFDz"},
    {"a\xC0\x80z", u"a\uFFFD\uFFFDz"},
    {"\xE4\xB8", u"\uFFFD"},
    {"\xE4\xB8z", u"\uFFFDz"},
    {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
    {"\xF0\x9F\x98", u"\uFFFD"},
    {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"\xFF\xFE", u"\uFFFD\uFFFD"},
};

TEST(Utf8, ReadsWhatIsMalformedAsReplacementCharacters)
{
    for (const Utf8Case& c : kMalformed)
        EXPECT_EQ(fromUtf8(c.bytes), c.text);
    const char16_t lone[] = {u'a', 0xD800, u'b', 0xDC00};
    EXPECT_EQ(toUtf8({lone, 4}),
        "a\xEF\xBF\xBD"
        "b\xEF\xBF\xBD");
}

TEST(Utf8, KeepsEveryCharacterBothWays)
{
    std::u16string text;
    for (char32_t c = 0; c < 0x11000; ++c) {
        if (c < 0xD800 || c > 0xDFFF)
            appendUtf16(text, c);
    }
    appendUtf16(text, 0x10FFFF);
    EXPECT_EQ(fromUtf8(toUtf8(text)), text);
    EXPECT_EQ(toUtf8(u"中\U0001F600é"), "\xE4\xB8\xAD\xF0\x9F\x98\x80\xC3\xA9");
}

TEST(Text, ReplacesFromLeftToRightInOnePass)
{
    EXPECT_EQ(replaceAll(u"aaaaa", u"aa", u"a"), u"aaa");
    EXPECT_EQ(replaceAll(u"aXbxc", u"x", u""), u"aXbc");
    EXPECT_EQ(replaceAll(u"abc", u"", u"z"), u"abc");
    EXPECT_EQ(replaceAllNoCase(u"É/qrX, é", u"/QRX, ", u"-"), u"É-é");
    EXPECT_EQ(split(u"a||b|", u"|"), (std::vector<std::u16string>{u"a", u"", u"b", u""}));
    EXPECT_EQ(trimBlanks(u"  a b\t "), u"a b\t");
    EXPECT_EQ(decimal(-12), u"-12");
    EXPECT_EQ(decimal(7, 2), u"07");
    EXPECT_TRUE(equalNoCase(u"ÄÖ中b", u"äö中B"));
    EXPECT_FALSE(equalNoCase(u"ab", u"abc"));
}

} // namespace
} // namespace vellums::text

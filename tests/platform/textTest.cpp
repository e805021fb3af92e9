#include "platform/text.h"

#include "platform/codePage.h"
#include "tests/support/ansiCodePage.h"

#include <gtest/gtest.h>

#include <random>

namespace vellums::platform {
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

struct CodeCase {
    char16_t character;
    std::int16_t code;
};

const CodeCase kWestern[] = {{u'?', 63}, {u'é', 233}, {u'€', 128}, {u'中', 63}, {0x81, 129}, {0x9D, 157}};
const CodeCase kChinese[] = {
    {u'a', 97}, {u'中', static_cast<std::int16_t>(0xD6D0)}, {u'ゴ', static_cast<std::int16_t>(0xA5B4)}};

TEST(CodePage, NumbersCharactersInTheWesternPage)
{
    const tests::AnsiCodePage page(1252);
    if (!page.active())
        GTEST_SKIP() << "code page 1252 is not at hand";
    for (const CodeCase& c : kWestern)
        EXPECT_EQ(ansiCode(c.character), c.code) << static_cast<int>(c.character);
    EXPECT_EQ(toAnsi(u"é中x"), "\xE9?x");
    EXPECT_EQ(throughAnsi(u"é中x"), u"é?x");
    EXPECT_FALSE(toAnsiExact(u"中"));
    EXPECT_EQ(fromAnsi("\xE9\x80\x81"), u"é€\u0081");
}

TEST(CodePage, NumbersCharactersInTheChinesePage)
{
    const tests::AnsiCodePage page(936);
    if (!page.active())
        GTEST_SKIP() << "code page 936 is not at hand";
    for (const CodeCase& c : kChinese)
        EXPECT_EQ(ansiCode(c.character), c.code) << static_cast<int>(c.character);
    const std::u16string text = u"笔记 abc";
    EXPECT_EQ(toAnsi(text), "\xB1\xCA\xBC\xC7 abc");
    EXPECT_EQ(fromAnsi(toAnsi(text)), text);
    EXPECT_EQ(toAnsiExact(u"记"), "\xBC\xC7");
}

TEST(CodePage, LosesNothingInUtf8)
{
    const tests::AnsiCodePage page(kCodePageUtf8);
    if (!page.active())
        GTEST_SKIP() << "the system's code page is not UTF-8";
    EXPECT_EQ(throughAnsi(u"é中\U0001F600"), u"é中\U0001F600");
    EXPECT_EQ(ansiCode(u'é'), -1);
    EXPECT_EQ(fromAnsi("\xE9z"), u"\uFFFDz");
}

// Long texts pass the conversion in pieces: characters at the seams must not be lost.
TEST(CodePage, ConvertsLongTextsWhole)
{
    const tests::AnsiCodePage page(936);
    if (!page.active())
        GTEST_SKIP() << "code page 936 is not at hand";
    std::mt19937 random(4);
    std::u16string text;
    for (int i = 0; i < 100000; ++i)
        text += random() % 3 == 0 ? u'a' : static_cast<char16_t>(0x4E00 + random() % 2000);
    EXPECT_EQ(fromAnsi(toAnsi(text)), text);
}

} // namespace
} // namespace vellums::platform

#include "platform/codePage.h"

#include "tests/support/ansiCodePage.h"

#include <gtest/gtest.h>

#include <random>

namespace vellums::platform {
namespace {

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

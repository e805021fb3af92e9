#include "formats/charCleaner.h"

#include "tests/support/ansiCodePage.h"

#include <gtest/gtest.h>

namespace vellums::formats {
namespace {

std::u16string lowCharacters()
{
    std::u16string text;
    for (char16_t c = 0; c < 0x20; ++c)
        text.push_back(c);
    return text;
}

TEST(CharCleaner, TurnsControlCharactersIntoBlanksButKeepsTabsAndLineEnds)
{
    const std::u16string expected = u"         \t\n  \r                  ";
    EXPECT_EQ(cleanCharacters(lowCharacters()), expected);
    EXPECT_EQ(cleanCharacters(u"~\u007F?it's"), u"~\u007F?it's");
}

TEST(CharCleaner, BlanksUpperCharactersOfAWesternPage)
{
    const tests::AnsiCodePage page(1252);
    if (!page.active())
        GTEST_SKIP() << "code page 1252 is not at hand";
    EXPECT_EQ(
        cleanCharacters(u"caf\u00E9 \u20AC5 \u4E2D\u6587 \U0001F600\u0081\u00FF."), u"caf  \u20AC5 ?? ??  .");
}

TEST(CharCleaner, KeepsChineseInAChinesePage)
{
    const tests::AnsiCodePage page(936);
    if (!page.active())
        GTEST_SKIP() << "code page 936 is not at hand";
    EXPECT_EQ(cleanCharacters(u"\u7B14\u8BB0\f\u0416\U0001F600\u00FF"), u"\u7B14\u8BB0 \u0416???");
}

TEST(CharCleaner, ChangesNothingAboveAsciiInUtf8)
{
    const tests::AnsiCodePage page(platform::kCodePageUtf8);
    if (!page.active())
        GTEST_SKIP() << "the system's code page is not UTF-8";
    EXPECT_EQ(
        cleanCharacters(u"\u0085\u00E9\u4E2D\U0001F600\uFFFF\v"), u"\u0085\u00E9\u4E2D\U0001F600\uFFFF ");
}

} // namespace
} // namespace vellums::formats

#include "text/textCleanup.h"

#include "text/pieces.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace vellums::text {
namespace {

void repeat(std::u16string& text, std::u16string_view from, std::u16string_view to)
{
    for (std::u16string before; before != text;) {
        before = text;
        text = replaceAll(text, from, to);
    }
}

// The steps of the cleanup one after the other, each over the whole text.
std::u16string slowlyCleaned(std::u16string text)
{
    for (const char16_t* suffix : {u"/QRX@QRX,", u"/QRX,", u"/QRXGD@QRXGD,", u"/QRXGD,"})
        text = replaceAllNoCase(text, std::u16string(suffix) + u" ", std::u16string(suffix) + u"\r\n");
    repeat(text, u" \r", u"\r");
    repeat(text, u"\u3000\r", u"\r");
    repeat(text, u"\t\r", u"\r");
    repeat(text, u"\r\n", u"\n");
    repeat(text, u"\r", u"\n");
    repeat(text, u"\n ", u"\n");
    repeat(text, u"\n\u3000", u"\n");
    text = replaceAll(text, u"\n", u"\r\n");
    repeat(text, u"\r\n\r\n\r\n", u"\r\n\r\n");
    while (text.rfind(u"\r\n", 0) == 0)
        text.erase(0, 2);
    while (text.size() >= 2 && text.substr(text.size() - 2) == u"\r\n")
        text.erase(text.size() - 2);
    while (text.find(u"   ") != std::u16string::npos)
        text = replaceAll(text, u"   ", u" ");
    for (const char16_t c : std::u16string_view(u"ゴガギグゲザジズヅデドポベプビパヴボペブピバヂダゾゼ"))
        text = replaceAll(text, std::u16string(1, c), u"");
    return text;
}

TEST(TextCleanup, DoesTheSameAsItsStepsOneByOne)
{
    const std::u16string_view pieces[] = {u" ", u" ", u"  ", u"\r", u"\n", u"\r\n", u"\r\n", u"\t", u"\u3000",
        u"a", u"/QRX@QRX, ", u"/qrx, ", u"/QrxGD, ", u"/QRXGD@QRXGD, ", u"/QRX", u"ガ", u"カ", u", "};
    for (unsigned seed = 0; seed < 4000; ++seed) {
        std::mt19937 random(seed);
        std::u16string text;
        for (std::size_t i = random() % 40; i > 0; --i)
            text += pieces[random() % std::size(pieces)];
        ASSERT_EQ(cleanBody(text), slowlyCleaned(text)) << "seed " << seed;
    }
}

struct BodyCase {
    const char16_t* text;
    const char16_t* cleaned;
};

const BodyCase kBodies[] = {
    {u"", u""},
    {u"\r\n\n\r\r\n", u""},
    {u"a  \r\n\r\n\r\n\r\n  b   c", u"a\r\n\r\nb c"},
    {u"x/QRX@QRX, y/qrx@qrx, z", u"x/QRX@QRX,\r\ny/QRX@QRX,\r\nz"},
    {u"a     b    c", u"a b  c"},
    {u"  first\t\r\n\tsecond  ", u"  first\r\n\tsecond  "},
    {u"ガa゙ゴb", u"a゙b"},
};

TEST(TextCleanup, NormalisesBodies)
{
    for (const BodyCase& c : kBodies)
        EXPECT_EQ(cleanBody(c.text), c.cleaned);
}

TEST(TextCleanup, TakesTimeInProportionToTheText)
{
    const auto start = std::chrono::steady_clock::now();
    for (const char16_t* piece : {u" \r", u"\n ", u"\r\n", u" ", u"\u3000\r", u"\r\r\n", u"/QRX@QRX, "}) {
        std::u16string text;
        while (text.size() < 2000000)
            text += piece;
        cleanBody(text);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
} // namespace vellums::text

#include "io/textCleanup.h"

#include "platform/files.h"
#include "platform/text.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace vellums::io {
namespace {

using platform::replaceAll;
using platform::replaceAllNoCase;

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

struct TitleCase {
    std::u16string path;
    std::u16string title;
};

std::u16string manyOf(std::size_t count, char16_t c = u'x')
{
    return std::u16string(count, c);
}

const TitleCase kTitles[] = {
    {u"C:\\docs\\a note.txt", u"a note"},
    {u"C:\\docs\\a.b.txt", u"a.b"},
    {u"C:\\docs\\report.v2\\notes", u"report"},
    {u"C:\\docs\\notes", u""},
    {u"C:\\docs\\.profile", u""},
    {u"C:\\docs.\\x", u""},
    {u"notes.txt", u"notes"},
    {u"notes", u""},
    {u"", u""},
    {u"D:\\it's.txt", u"it''s"},
    {u"D:\\附件: Tarnwick Group Limited, Tarnwick North Branch.doc", u"Tarn, Tarn 分行"},
    {u"D:\\North City Branch.doc", u"分行"},
    {u"D:\\" + manyOf(100) + u".txt", manyOf(100)},
    {u"D:\\" + manyOf(101) + u".txt", manyOf(100) + u"..."},
    {u"D:\\" + manyOf(99) + u"'yy.txt", manyOf(99) + u"..."},
    {u"D:\\" + manyOf(98) + u"'yy.txt", manyOf(98) + u"''..."},
    {u"D:\\x" + manyOf(60, u'\'') + u".txt", u"x" + manyOf(98, u'\'') + u"..."},
    {u"D:\\" + manyOf(99) + u"\U0001F600yy.txt", manyOf(99) + u"..."},
};

TEST(TitleFromPath, TakesTheNameAndQuotesIt)
{
    for (const TitleCase& c : kTitles)
        EXPECT_EQ(titleFromPath(c.path), c.title);
    EXPECT_EQ(titleFromPath(std::u16string(u"x") + platform::separator() + u"y.z"), u"y");
}

} // namespace
} // namespace vellums::io

#include "text/titles.h"

#include <gtest/gtest.h>

namespace vellums::text {
namespace {

struct TitleCase {
    const char* why;
    std::u16string text;
    std::u16string title;
};

const TitleCase kTitles[] = {
    {"one long line is cut at fifty", std::u16string(80, u'x'), std::u16string(50, u'x')},
    {"a line of fifty stays whole", std::u16string(50, u'x') + u"\r\ny", std::u16string(50, u'x')},
    {"a line of fifty-one is cut", std::u16string(51, u'x') + u"\r\ny", std::u16string(50, u'x')},
    {"a short first line is the title", u"Groceries\r\nmilk", u"Groceries"},
    {"an empty first line gives none", u"\r\nmilk", u""},
    {"a short text without a line end", u"milk", u"milk"},
    {"a mail's subject wins", u"From: a\r\nTo: b\r\n主题: Meeting\r\nHello", u"Meeting"},
    {"a subject at the very start does not count", u"主题: Meeting\r\nHello", u"主题: Meeting"},
    {"a subject without a line end does not count", u"a 主题: Meeting", u"a 主题: Meeting"},
    {"an empty text", u"", u""},
    {"no half of a character", std::u16string(49, u'x') + u"😀y", std::u16string(49, u'x')},
    {"not of the first one of its kind either", std::u16string(49, u'x') + u"\U00010000y",
        std::u16string(49, u'x')},
};

TEST(TitleOf, ChoosesTheTitle)
{
    for (const TitleCase& c : kTitles)
        EXPECT_EQ(text::titleOf(c.text), c.title) << c.why;
}

struct PathCase {
    std::u16string path;
    std::u16string title;
};

std::u16string manyOf(std::size_t count, char16_t c = u'x')
{
    return std::u16string(count, c);
}

const PathCase kPaths[] = {
    {u"C:\\docs\\a note.txt", u"a note"},
    {u"C:\\docs\\a.b.txt", u"a.b"},
    {u"C:\\docs\\report.v2\\notes", u"report"},
    {u"C:\\docs\\notes", u""},
    {u"C:\\docs\\.profile", u""},
    {u"C:\\docs.\\x", u""},
    {u"notes.txt", u"notes"},
    {u"notes", u""},
    {u"", u""},
    {u"D:\\it's.txt", u"it's"},
    {u"D:\\附件: Tarnwick Group Limited, Tarnwick North Branch.doc", u"Tarn, Tarn 分行"},
    {u"D:\\North City Branch.doc", u"分行"},
    {u"D:\\" + manyOf(100) + u".txt", manyOf(100)},
    {u"D:\\" + manyOf(101) + u".txt", manyOf(100) + u"..."},
    {u"D:\\" + manyOf(99) + u"'yy.txt", manyOf(99) + u"..."},
    {u"D:\\" + manyOf(98) + u"'yy.txt", manyOf(98) + u"'..."},
    {u"D:\\x" + manyOf(60, u'\'') + u".txt", u"x" + manyOf(49, u'\'') + u"..."},
    {u"D:\\" + manyOf(99) + u"\U0001F600yy.txt", manyOf(99) + u"..."},
};

TEST(TitleFromPath, TakesTheNameAndCutsIt)
{
    for (const PathCase& c : kPaths)
        EXPECT_EQ(titleFromPath(c.path), c.title);
    EXPECT_EQ(titleFromPath(u"x/y.z"), u"y");
}

} // namespace
} // namespace vellums::text

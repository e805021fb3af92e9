#include "search/patternMenu.h"

namespace vellums {
namespace {

struct Piece {
    const char16_t* pattern;
    const char16_t* english;
    const char16_t* chinese;
};
// clang-format off
constexpr Piece kPieces[] = {
    {u".",                       u"any character",                          u"任意字符"},
    {u".*",                      u"anything, to the last place that fits",  u"任意内容 (尽量长)"},
    {u".*?",                     u"anything, to the first place that fits", u"任意内容 (尽量短)"},
    {u"\\d",                     u"a digit",                                u"数字"},
    {u"\\D",                     u"anything but a digit",                   u"非数字"},
    {u"\\w",                     u"a letter, a digit or _",                 u"字母、数字或下划线"},
    {u"\\W",                     u"anything but these",                     u"非字母、数字或下划线"},
    {u"\\s",                     u"a blank or a tab",                       u"空白字符"},
    {u"\\S",                     u"anything but blanks and tabs",           u"非空白字符"},
    {u"\\t",                     u"a tab",                                  u"制表符"},
    {u"[\\u4e00-\\u9fa5]",       u"a Chinese character",                    u"汉字"},
    {u"[...]",                   u"one of these characters",                u"其中任一字符"},
    {u"[^...]",                  u"none of these characters",               u"除此以外的字符"},
    {u"^",                       u"the start of the line",                  u"行首"},
    {u"$",                       u"the end of the line",                    u"行尾"},
    {u"\\b",                     u"the edge of a word",                     u"单词边界"},
    {u"?",                       u"once or not at all",                     u"零次或一次"},
    {u"*",                       u"any number of times",                    u"任意次"},
    {u"+",                       u"once or more",                           u"一次或多次"},
    {u"{2,5}",                   u"two to five times",                      u"二至五次"},
    {u"|",                       u"or",                                     u"或"},
    {u"(...)",                   u"a group",                                u"分组"},
    {u"(?:...)",                 u"a group that is not counted",            u"分组 (不编号)"},
    {u"(?=...)",                 u"followed by",                            u"后面是"},
    {u"(?!...)",                 u"not followed by",                        u"后面不是"},
    {u"\\1",                     u"the text of the first group again",      u"与第一个分组相同的内容"},
    {u"\\d{4}-\\d{1,2}-\\d{1,2}", u"a date",                                u"日期"},
    {u"https?://[^\\s]+",        u"a web address",                          u"网址"},
    {u"[\\w.-]+@[\\w.-]+",       u"a mail address",                         u"电子邮箱"},
};
// clang-format on

} // namespace

void fillPatternMenu(const Notebook& notebook, MenuItems& mnu_RegExChar)
{
    std::size_t index = 0;
    for (const Piece& piece : kPieces) {
        MenuItem item;
        item.tag = piece.pattern;
        item.caption = item.tag + u"\t" + notebook.say(piece.english, piece.chinese);
        item.visible = true;
        mnu_RegExChar.set(index++, item);
    }
}

} // namespace vellums

// The results are kept nowhere but in the list itself: an entry shows "position > text", its datum is the
// position, and what is selected in the record's text is as long as the entry's text behind the first " > ".
// That is safe as the position is a number and cannot hold the mark, however often the text does.
//
// The list is disabled while it is filled, and shown and enabled only when a search that came to its end has
// found something. Anything that ends the search early is told by the find box's tip, in the user's language:
// the sentences of the engine itself are those that scripts know.
#include "search/inlineSearch.h"

#include "app/clipboardText.h"
#include "search/occurrences.h"
#include "text/decimal.h"

namespace vellums {
namespace {

constexpr std::u16string_view kMark = u" > "; // between position and text of an entry

std::vector<ListEntry> entriesOf(const Occurrences& found)
{
    std::vector<ListEntry> entries;
    entries.reserve(found.list.size());
    for (const Occurrence& occurrence : found.list) {
        std::u16string text = text::decimal(occurrence.position);
        text += kMark;
        text += occurrence.text;
        entries.push_back({std::move(text), occurrence.position});
    }
    return entries;
}

std::u16string matchedText(const std::u16string& entry)
{
    const std::size_t mark = entry.find(kMark);
    return mark == std::u16string::npos ? std::u16string() : entry.substr(mark + kMark.size());
}

std::u16string summary(const Notebook& notebook, int count)
{
    const std::u16string number = text::decimal(count);
    return notebook.say(number + u" match" + (count > 1 ? u"es" : u"") + u" found.",
        u"关键字查找共 " + number + u" 处匹配。");
}

struct Reason {
    std::int32_t number;
    const char16_t* english;
    const char16_t* chinese;
};
constexpr Reason kReasons[] = {
    {6, u"The text has a line that is too long to be searched whole", u"文本中有一行过长，未能全部查找"},
    {7, u"The search was given up: this expression needs too many steps", u"该表达式过于复杂，查找已中止"},
    {28, u"Not a regular expression: nested too deeply", u"正则表达式有误: 嵌套过深"},
    {5017, u"Not a regular expression: syntax error", u"正则表达式有误: 语法错误"},
    {5018, u"Not a regular expression: a quantifier that repeats nothing", u"正则表达式有误: 量词前缺少内容"},
    {5019, u"Not a regular expression: \"]\" is missing", u"正则表达式有误: 缺少 \"]\""},
    {5020, u"Not a regular expression: \")\" is missing, or one too many", u"正则表达式有误: 括号不配对"},
    {5021, u"Not a regular expression: a range that ends before it begins", u"正则表达式有误: 字符范围颠倒"},
};

// Why the search ended early, and where in the find box.
std::u16string explanation(const Notebook& notebook, const Occurrences::Ending& ending)
{
    std::u16string text = ending.description;
    for (const Reason& reason : kReasons)
        if (reason.number == ending.number)
            text = notebook.say(reason.english, reason.chinese);
    if (ending.position) {
        const std::u16string place = text::decimal(static_cast<std::int64_t>(*ending.position) + 1);
        text += notebook.say(u" (character " + place + u")", u" (第 " + place + u" 个字符)");
    }
    return text + notebook.say(u".", u"。");
}

} // namespace

void doInlineSearch(const Notebook& notebook, const FindPorts& find)
{
    ListBox& list = find.lstInLineSrch;
    const std::u16string keyword = find.txtInline.text();
    list.setEnabled(false);
    // Set even when nothing is found: the same keyword is then searched for again, as the list is empty.
    list.setTag(keyword);
    const Occurrences found = findOccurrences(find.txtTarget.text(), keyword);
    find.txtInlineTip.setText(found.ending ? explanation(notebook, *found.ending) : u"");
    list.fill(entriesOf(found));
    const int count = list.count();
    if (static_cast<std::size_t>(count) < found.list.size()) { // the control holds no more
        notebook.status.failed(notebook.say(u"Too many matches.", u"匹配结果过多，请尝试修改查找条件。"));
        return;
    }
    if (found.ending || count == 0)
        return;
    list.setVisible(true);
    list.setEnabled(true);
    list.select(0);
    lstInLineSrchClick(find);
    notebook.status.done(summary(notebook, count));
}

void lstInLineSrchClick(const FindPorts& find)
{
    const ListBox& list = find.lstInLineSrch;
    const int entry = list.current();
    if (entry < 0 || list.datum(entry) < 0)
        return;
    const auto start = static_cast<std::size_t>(list.datum(entry));
    TextBox& text = find.txtTarget;
    text.select({start, start + matchedText(list.text(entry)).size()});
    text.scrollToCaret();
    text.focus();
}

void copyResult(const Notebook& notebook, const ListBox& lstInLineSrch)
{
    const int entry = lstInLineSrch.current();
    if (entry >= 0)
        copyText(notebook, matchedText(lstInLineSrch.text(entry)));
}

void copyAllResults(const Notebook& notebook, const ListBox& lstInLineSrch)
{
    std::u16string all;
    for (int i = 0; i < lstInLineSrch.count(); ++i)
        all += lstInLineSrch.text(i) + u"\r\n";
    copyText(notebook, all);
}

} // namespace vellums

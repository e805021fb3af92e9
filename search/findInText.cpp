#include "search/findInText.h"

#include "app/boxText.h"
#include "platform/clipboard.h"
#include "search/inlineSearch.h"
#include "text/pieces.h"

#include <cassert>

namespace vellums {
namespace {

std::u16string trimmed(const std::u16string& text)
{
    return std::u16string(text::trimBlanks(text));
}

// What the user probably wants to look for: the selected text, else the search words, else the clipboard.
// Words become an expression that finds them in this order on one line.
std::u16string suggestedKeyword(const TextBox& txtTarget, const TextBox& txtKey)
{
    std::u16string keyword = trimmed(txtTarget.selectedText());
    if (keyword.empty())
        keyword = txtKey.text();
    if (keyword.empty())
        keyword = platform::clipboardText().text;
    keyword.resize(firstLine(keyword).size());
    if (keyword.find(u' ') != std::u16string::npos)
        keyword = text::replaceAll(trimmed(keyword), u" ", u".*");
    return keyword;
}

void prepareFindBox(const FindPorts& find, const TextBox& txtKey)
{
    const std::u16string keyword = suggestedKeyword(find.txtTarget, txtKey);
    find.txtInline.focus();
    if (!keyword.empty() && find.txtInline.text().empty())
        find.txtInline.replaceSelection(keyword);
    find.txtInline.selectAll();
}

// The entry that the command goes to from the caret.
int nextEntry(const ListBox& list, std::int32_t caret, FindCommand command)
{
    const int count = list.count();
    assert(count > 0);
    if (command == FindCommand::Previous) {
        for (int i = count - 1; i >= 0; --i)
            if (list.datum(i) < caret)
                return i;
        return count - 1;
    }
    for (int i = 0; i < count; ++i)
        if (list.datum(i) > caret)
            return i;
    return 0;
}

} // namespace

void findInText(const Notebook& notebook, const FindPorts& find, const TextBox& txtKey, FindCommand command)
{
    const std::u16string keyword = find.txtInline.text();
    if (command == FindCommand::Inline || keyword.empty()) {
        prepareFindBox(find, txtKey);
        return;
    }
    ListBox& list = find.lstInLineSrch;
    // The tag is the keyword that the list was made for; the places of another one lead nowhere.
    if (list.tag() != keyword || list.count() == 0) {
        doInlineSearch(notebook, find);
        return;
    }
    const auto caret = static_cast<std::int32_t>(find.txtTarget.selection().start);
    list.setVisible(true);
    list.select(nextEntry(list, caret, command));
    lstInLineSrchClick(find);
}

} // namespace vellums

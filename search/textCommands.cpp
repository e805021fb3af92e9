#include "search/textCommands.h"

#include "app/boxText.h"
#include "app/clipboardText.h"
#include "platform/clock.h"
#include "text/decimal.h"
#include "text/letterCase.h"
#include "text/oleDate.h"
#include "text/pieces.h"
#include "text/textCleanup.h"

namespace vellums {
namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";

// Without the tabs that stand behind line ends, and then without line ends; what grows together to a line
// end goes as well.
std::u16string joined(std::u16string_view lines)
{
    std::u16string text;
    for (const char16_t c : lines)
        if (c != u'\t' || !text.ends_with(kLineEnd))
            text += c;
    std::u16string line;
    for (const char16_t c : text) {
        line += c;
        if (line.ends_with(kLineEnd))
            line.erase(line.size() - kLineEnd.size());
    }
    return line;
}

// With one line end where several stand in a row.
std::u16string compressed(std::u16string_view lines)
{
    std::u16string text;
    for (std::size_t i = 0; i < lines.size();) {
        const bool lineEnd = lines.substr(i).starts_with(kLineEnd);
        if (!lineEnd)
            text += lines[i];
        else if (!text.ends_with(kLineEnd))
            text += kLineEnd;
        i += lineEnd ? kLineEnd.size() : 1;
    }
    return text;
}

std::u16string dateStamp()
{
    using text::decimal;
    const text::LocalTime now = platform::localNow();
    return decimal(now.year, 4) + u"-" + decimal(now.month) + u"-" + decimal(now.day) + u" " +
        text::isoTime(now);
}

} // namespace

TextCommands::TextCommands(
    Notebook& notebook, TextBoxes boxes, SearchBoxes& searches, CheckItem& mnu_switchCase)
    : notebook_(notebook)
    , boxes_(boxes)
    , searches_(searches)
    , mnu_switchCase_(mnu_switchCase)
{
}

TextBox& TextCommands::target()
{
    switch (txtPopUpTarget_) {
    case PopUpTarget::Search:
        return boxes_.txtKey;
    case PopUpTarget::Title:
        return boxes_.txtType;
    case PopUpTarget::Find:
        return boxes_.txtInline;
    case PopUpTarget::RecordText:
        break;
    }
    return boxes_.txtTarget;
}

bool TextCommands::hasSelection()
{
    return !target().selection().empty();
}

void TextCommands::undo()
{
    target().undo();
}

void TextCommands::cut()
{
    target().cut();
}

void TextCommands::copy()
{
    target().copy();
}

void TextCommands::paste()
{
    if (const std::optional<std::u16string> text = clipboardText(notebook_); text && !text->empty())
        target().replaceSelection(*text);
}

void TextCommands::pasteAndGo()
{
    paste();
    if (txtPopUpTarget_ == PopUpTarget::Search)
        searches_.searchEnter();
    else if (txtPopUpTarget_ == PopUpTarget::Find)
        searches_.findEnter();
}

void TextCommands::deleteSelection()
{
    target().replaceSelection({});
}

void TextCommands::selectAll()
{
    target().selectAll();
}

void TextCommands::clearText()
{
    selectAll();
    deleteSelection();
}

void TextCommands::reset()
{
    if (txtPopUpTarget_ == PopUpTarget::Search)
        searches_.searchEscape();
    else if (txtPopUpTarget_ == PopUpTarget::Find)
        searches_.findEscape();
    else
        target().setText({});
}

void TextCommands::copyAll()
{
    copyText(notebook_, boxes_.txtTarget.text());
}

// The new text is selected as the old one was. It is brought to the form of the box first, so that its
// length is that of what the box holds then.
void TextCommands::replaceSelected(const std::u16string& changed)
{
    const std::u16string text = boxText(changed);
    TextBox& box = boxes_.txtTarget;
    const std::size_t start = box.selection().start;
    box.replaceSelection(text);
    box.select({start, start + text.size()});
}

void TextCommands::joinLines()
{
    if (!boxes_.txtTarget.selection().empty())
        replaceSelected(joined(boxText(boxes_.txtTarget.selectedText())));
}

void TextCommands::compressLines()
{
    if (!boxes_.txtTarget.selection().empty())
        replaceSelected(compressed(boxText(boxes_.txtTarget.selectedText())));
}

void TextCommands::insertDate()
{
    boxes_.txtTarget.replaceSelection(u"\r\n> " + dateStamp() + u"\r\n");
}

void TextCommands::insertTitle()
{
    boxes_.txtTarget.replaceSelection(boxes_.txtType.text());
}

void TextCommands::switchCase()
{
    TextBox& box = boxes_.txtTarget;
    const bool toSmall = !mnu_switchCase_.checked();
    mnu_switchCase_.setChecked(toSmall);
    const auto switched = [toSmall](const std::u16string& text) {
        return toSmall ? text::lowerCase(text) : text::upperCase(text);
    };
    if (box.selection().empty())
        box.setText(switched(box.text()));
    else
        replaceSelected(switched(box.selectedText()));
    box.scrollToCaret();
}

void TextCommands::trimText()
{
    boxes_.txtTarget.setText(text::cleanBody(boxes_.txtTarget.text()));
}

void TextCommands::insertPattern(std::u16string_view piece)
{
    boxes_.txtInline.focus();
    boxes_.txtInline.replaceSelection(text::replaceAll(piece, u"...", u""));
}

} // namespace vellums

// The commands of the text menu and of the Edit menu.
#pragma once

#include "ports/windowPorts.h"
#include "search/searchBoxes.h"

namespace vellums {

// The boxes that the text menu can be opened for.
enum class PopUpTarget { RecordText, Search, Title, Find };

class TextCommands {
public:
    // `mnu_switchCase` shows which way the next change of case does not go: checked after small letters.
    TextCommands(Notebook& notebook, TextBoxes boxes, SearchBoxes& searches, CheckItem& mnu_switchCase);

    // The menu was opened for this box, or the box got the focus: "the target" from now on.
    void setTarget(PopUpTarget target) { txtPopUpTarget_ = target; }

    // On the target.
    bool hasSelection();
    void undo();
    void cut();
    void copy();
    void paste();
    void pasteAndGo(); // then what Enter does in the search box or the find box
    void deleteSelection();
    void selectAll();
    void clearText(); // can be undone
    void reset();     // empties it; then what Esc does in the search box or the find box

    // On the record text. All but trimText() and switchCase() without a selection can be undone.
    void copyAll();
    void joinLines();     // of the selection, without the tabs that lines begin with
    void compressLines(); // of the selection: no empty lines
    void insertDate();    // on a line of its own
    void insertTitle();
    void switchCase(); // of the selection, or the whole text
    void trimText();

    // On the find box: puts the piece of a pattern at the caret. "..." in it is a gap and is left out.
    void insertPattern(std::u16string_view piece);

private:
    TextBox& target();
    void replaceSelected(const std::u16string& changed);

    Notebook& notebook_;
    TextBoxes boxes_;
    SearchBoxes& searches_;
    CheckItem& mnu_switchCase_;
    PopUpTarget txtPopUpTarget_ = PopUpTarget::RecordText;
};

} // namespace vellums

// The controls of the main window, by their names.
#pragma once

#include "ports/controls.h"
#include "ports/dialogs.h"
#include "ports/progress.h"

namespace vellums {

// What the commands of the main window work on. Everything outlives them.
struct WindowPorts {
    Label& caption;         // of the window
    TextBox& txtKey;        // search words
    TextBox& txtInline;     // what is looked for in the current text
    TextBox& txtType;       // title of the current record
    TextBox& txtShowWrap;   // text of the current record
    ListBox& lstHeads;      // titles of the records found; the datum is the ID
    ListBox& lstInLineSrch; // places found in the text; the datum is the position, the tag what was sought
    Label& txtInlineTip;    // tells why a search in the text came to nothing
    Label& lblDate;         // date of the current record
    CheckItem& chkSort;     // checked: oldest first; its caption carries the hand-over text
    CheckItem& mnu_SortOnTitle; // checked: by title before date
    CheckItem& mnu_ezdel;       // checked: deleting asks nothing
    CheckItem& mnu_InstantSrch; // checked: the list follows each letter of the search box
    MenuItems& mnu_AvailFields; // the columns that are searched
    Label& ucStatusRight;       // the link of the current record
    Progress& progress;
    Dialogs& dialogs;

    // The box that shows the current text.
    TextBox& txtTarget() const { return txtShowWrap; }
};

} // namespace vellums

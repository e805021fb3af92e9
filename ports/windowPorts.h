// The controls of the main window, by their names, in the groups that its commands ask for. Everything
// outlives the commands.
#pragma once

#include "ports/controls.h"
#include "ports/dialogs.h"
#include "ports/progress.h"

namespace vellums {

// The current record.
struct RecordPorts {
    TextBox& txtType;     // its title
    TextBox& txtTarget;   // its text
    Label& lblDate;       // its date
    Label& ucStatusRight; // its link
};

// The list of the records found.
struct ListPorts {
    Label& caption;     // of the window: names the table that is listed
    ListBox& lstHeads;  // their titles; the datum is the ID
    CheckItem& chkSort; // checked: oldest first; its caption carries the hand-over text
};

// The search box with its options.
struct SearchPorts {
    TextBox& txtKey;            // search words
    CheckItem& mnu_SortOnTitle; // checked: by title before date
    CheckItem& mnu_InstantSrch; // checked: the list follows each letter of the box
    MenuItems& mnu_AvailFields; // the columns that are searched
};

// The find box, with the text that it looks through.
struct FindPorts {
    TextBox& txtInline;     // what is looked for
    Label& txtInlineTip;    // tells why a search came to nothing
    ListBox& lstInLineSrch; // places found; the datum is the position, the tag what was sought
    TextBox& txtTarget;     // the text of the current record
};

// The boxes that text is typed into.
struct TextBoxes {
    TextBox& txtTarget;
    TextBox& txtType;
    TextBox& txtKey;
    TextBox& txtInline;
};

// The whole window: for whoever makes its commands, and for those that work all over it.
struct WindowPorts {
    RecordPorts record;
    ListPorts list;
    SearchPorts search;
    FindPorts find;
    CheckItem& mnu_ezdel; // checked: deleting asks nothing
    Progress& progress;
    Dialogs& dialogs;

    TextBoxes textBoxes() const { return {record.txtTarget, record.txtType, search.txtKey, find.txtInline}; }
};

} // namespace vellums

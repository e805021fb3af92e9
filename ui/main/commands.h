// All commands of the main window, behind the gate: whoever has a turn reaches them.
#pragma once

#include "app/listCommands.h"
#include "app/recordCommands.h"
#include "app/tableCommands.h"
#include "io/importCommands.h"
#include "maint/maintenanceCommands.h"
#include "search/searchBoxes.h"
#include "search/textCommands.h"

namespace vellums::ui {

// What the commands change of the window itself.
class WindowView {
public:
    virtual ~WindowView() = default;
    virtual void toggleWrap() = 0;
    virtual void toggleList() = 0;
    virtual void toggleEasyDelete() = 0;
    virtual void toggleOnTop() = 0;
    virtual void smallerText() = 0;
    virtual void largerText() = 0;
    virtual void resetDisplay() = 0;
    virtual void chooseSize(std::size_t index) = 0;
    virtual void chooseFont(std::size_t index) = 0;
    virtual void quit() = 0; // as soon as the command is over
};

// What the commands need besides the ports of the main window.
struct CommandMenus {
    TablePorts tables;
    ListMenus list;
    CheckItem& mnu_switchCase;
    MenuItems& mnu_RegExChar; // the tag of an item is a piece of a pattern
};

struct Commands {
    Commands(Notebook& notebook, WindowPorts window, Moments& moments, CommandMenus menus,
        InstantSearch& instantSearch, WindowView& windowView)
        : records(notebook, window, moments)
        , tables(notebook, window.list, window.search.mnu_AvailFields, records, menus.tables)
        , list(notebook, window.progress, window.dialogs, records, menus.list)
        , boxes(notebook, window.search, window.find, records, instantSearch)
        , text(notebook, window.textBoxes(), boxes, menus.mnu_switchCase)
        , imports(notebook, window.progress, window.dialogs, records)
        , maintenance(notebook, window.progress, window.dialogs, records)
        , mnu_RegExChar(menus.mnu_RegExChar)
        , view(windowView)
    {
    }

    RecordCommands records;
    TableCommands tables;
    ListCommands list;
    SearchBoxes boxes;
    TextCommands text;
    ImportCommands imports;
    MaintenanceCommands maintenance;
    MenuItems& mnu_RegExChar;
    WindowView& view;
};

} // namespace vellums::ui

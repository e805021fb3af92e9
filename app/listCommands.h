// The commands of the heading list's context menu that change the selected records: stick to the top,
// unstick, move or copy to another table of the database.
#pragma once

#include "app/databaseMenu.h"
#include "app/recordCommands.h"

namespace vellums {

// Where records can be moved to. Everything outlives the commands.
struct ListMenus {
    MenuItems& mnu_avtables; // the other snippet tables
    Switchable& mnu_moverec; // the menu they stand in
};

class ListCommands {
public:
    ListCommands(
        Notebook& notebook, Progress& progress, Dialogs& dialogs, RecordCommands& records, ListMenus menus);

    // Before the context menu is shown.
    void rebuildMenu();

    void stick();
    void unstick();
    // The user picked that entry of mnu_avtables.
    void moveTo(std::size_t index);
    void copyTo(std::size_t index);

private:
    std::u16string targetOf(std::size_t index) const;
    void setSticky(bool sticky);

    Notebook& notebook_;
    Progress& progress_;
    Dialogs& dialogs_;
    RecordCommands& records_;
    ListMenus menus_;
};

} // namespace vellums

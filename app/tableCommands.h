// The commands around databases and tables: switching, new database, and new, renamed and dropped tables.
// Whatever would replace the text that is shown asks about unsaved changes first, and stops when the save
// failed.
#pragma once

#include "app/databaseMenu.h"
#include "app/nameForm.h"
#include "app/recordCommands.h"

namespace vellums {

// Where a table is chosen, named and asked about. Everything outlives the commands.
struct TablePorts {
    MenuItems& mnu_availdb;   // databases and tables to switch to
    Switchable& mnu_switchto; // the menu they stand in
    NameDialog& frmInput;
    Dialogs& dialogs;
};

class TableCommands {
public:
    // What shows the table before is emptied when another one is opened: the list with the window's caption,
    // the fields that are searched, and through `records` the boxes.
    TableCommands(Notebook& notebook, ListPorts list, MenuItems& mnu_AvailFields, RecordCommands& records,
        TablePorts tables);

    // At start-up, and after any change of files or tables that was not made here.
    void rebuildMenu();

    void switchTo(std::size_t index); // the user picked that entry of mnu_availdb
    void newDatabase();
    void newTable();
    void renameTable();
    void dropTable();

private:
    bool open(const std::u16string& connectionString, const std::u16string& table);
    void openAnother();
    void offerFreshTable();
    void showNothing();
    std::u16string fileName() const;
    bool hasTable() const;

    Notebook& notebook_;
    ListPorts list_;
    MenuItems& mnu_AvailFields_;
    RecordCommands& records_;
    TablePorts tables_;
};

} // namespace vellums

// The menus that are filled with databases and tables. Captions hold names as they are: where an "&" marks
// a key, whoever draws them doubles it.
#pragma once

#include "ports/controls.h"
#include "store/notebook.h"

#include <optional>
#include <string>

namespace vellums {

// The snippet tables of all databases in the data folder: caption "file - table", tag the file's path, the
// one that is open checked. Files that are no Access files, and tables that are no snippet tables, are
// left out. The menu is grey when nothing is offered.
void buildDatabaseMenu(const Notebook& notebook, MenuItems& mnu_availdb, Switchable& mnu_switchto);

// The check mark goes to the database and table that are open now.
void markOpenDatabase(const Notebook& notebook, MenuItems& mnu_availdb);

// The table of an entry; nothing when the caption names none.
std::optional<std::u16string> tableOfEntry(const MenuItem& item);

// The other snippet tables of the current database: caption and tag are the name. The menu is grey when
// there is none.
void buildTableMenu(const Notebook& notebook, MenuItems& mnu_avtables, Switchable& mnu_moverec);

} // namespace vellums

// The search fields: which columns of the current table the search box looks in.
#pragma once

#include "ports/controls.h"
#include "store/notebook.h"

namespace vellums {

// Builds the menu for the current table and adds the columns that tables of old versions lack. False:
// an error, shown in the panel; the menu keeps what was set already. Where columns were added, the list
// of headings is tagged "1": its records lack what belongs there.
bool rebuildSearchFields(const Notebook& notebook, MenuItems& mnu_AvailFields, ListBox& lstHeads);

// The user chose an entry; the next query uses it.
void toggleSearchField(MenuItems& mnu_AvailFields, std::size_t index);

} // namespace vellums

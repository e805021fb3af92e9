// The search fields: which columns of the current table the search box looks in.
#pragma once

#include "ports/windowPorts.h"
#include "store/notebook.h"

namespace vellums {

// Builds the menu for the current table and adds the columns that tables of old versions lack. False:
// an error, shown in the panel; the menu keeps what was set already.
bool rebuildSearchFields(const Notebook& notebook, WindowPorts& window);

// The user chose an entry; the next query uses it.
void toggleSearchField(WindowPorts& window, std::size_t index);

} // namespace vellums

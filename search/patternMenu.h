// The menu of pieces of patterns, for those who do not know regular expressions by heart.
#pragma once

#include "ports/controls.h"
#include "store/notebook.h"

namespace vellums {

// Fills the menu in the user's language. The tag of each entry is the piece; "..." in it is a gap.
void fillPatternMenu(const Notebook& notebook, MenuItems& mnu_RegExChar);

} // namespace vellums

// The search inside the current text: the list of places where the find box's expression occurs.
#pragma once

#include "ports/windowPorts.h"
#include "store/notebook.h"

namespace vellums {

// Lists every occurrence of the find box's text, a regular expression without regard to case, shows the
// list, selects the first and reports their number. Where nothing is found the list is empty and not enabled;
// it is not shown then, but one that was shown before stays so. Why an expression could not be searched for,
// or not to the end of the text, is told by the find box's tip; what was found by then is in the list.
void doInlineSearch(const Notebook& notebook, const FindPorts& find);

// Selects in the text what the selected entry of the list stands for, and gives the text the focus.
void lstInLineSrchClick(const FindPorts& find);

// The matched text of the selected entry, or the entries as they are shown, a line each, to the clipboard.
void copyResult(const Notebook& notebook, const ListBox& lstInLineSrch);
void copyAllResults(const Notebook& notebook, const ListBox& lstInLineSrch);

} // namespace vellums

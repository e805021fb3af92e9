// The find commands: they prepare the find box, and step through the places found in the text.
#pragma once

#include "ports/windowPorts.h"
#include "store/notebook.h"

namespace vellums {

// As the menu array counts them.
enum class FindCommand { Inline, Previous, Next };

// Inline, or whatever the command with an empty find box: offers a keyword and gives the find box the
// focus. Previous and Next select the nearest place before and behind the caret and go on around the ends
// of the list; they search first where the list does not belong to the find box's text or is empty.
void findInText(const Notebook& notebook, const FindPorts& find, const TextBox& txtKey, FindCommand command);

} // namespace vellums

// The clipboard's text as commands need it: a clipboard that another program holds is told of.
#pragma once

#include "store/notebook.h"

#include <optional>
#include <string>

namespace vellums {

// The text, empty where there is none. Nothing: another program holds the clipboard, which is told.
std::optional<std::u16string> clipboardText(const Notebook& notebook);

// Puts the text there; where that cannot be done it is told.
void copyText(const Notebook& notebook, const std::u16string& text);

} // namespace vellums

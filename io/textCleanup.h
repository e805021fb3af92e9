// Normalises what goes into the snippet table: bodies, and the titles of imported files. The short
// lists of fixed replacements serve the mail texts of one organisation.
#pragma once

#include <string>
#include <string_view>

namespace vellums::io {

// The body as it is stored: lines end in CR LF, without blanks before or after a line end, with at
// most one empty line in a row and none at the start and the end; three and more blanks in a row
// shrink to one or two; entries of an address list stand on lines of their own; voiced katakana are
// taken out. Blanks at the very start and end, and tabs after a line end, stay. Linear in the length.
std::u16string cleanBody(std::u16string_view text);

// The title of an imported file: its name without folder and extension. Quoted for SQL (every
// apostrophe doubled), at most 100 characters of that and "...". Empty when no dot follows the last
// folder; when the last dot lies in a folder's name, that folder's name up to it.
std::u16string titleFromPath(std::u16string_view path);

} // namespace vellums::io

// Normalises texts for the snippet table. The short list of fixed replacements serves the mail texts of one
// organisation.
#pragma once

#include <string>
#include <string_view>

namespace vellums::text {

// The body as it is stored: lines end in CR LF, without blanks before or after a line end, with at
// most one empty line in a row and none at the start and the end; three and more blanks in a row
// shrink to one or two; entries of an address list stand on lines of their own; voiced katakana are
// taken out. Blanks at the very start and end, and tabs after a line end, stay. Linear in the length.
std::u16string cleanBody(std::u16string_view text);

} // namespace vellums::text

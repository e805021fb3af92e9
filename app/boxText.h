// Text as a box shows it.
#pragma once

#include <string>
#include <string_view>

namespace vellums {

// Every line end as CR LF (a lone CR or LF becomes one), a U+0000 as a blank: it would end the box's text,
// and what lies behind it would be lost with the next save.
std::u16string boxText(std::u16string_view text);

// What a box of one line takes of a text: up to its first CR or LF.
std::u16string_view firstLine(std::u16string_view text);

} // namespace vellums

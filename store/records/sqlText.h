// Values in SQL text.
#pragma once

#include <string>
#include <string_view>

namespace vellums {

// Every apostrophe doubled, ready to stand between apostrophes.
std::u16string sqlQuoted(std::u16string_view text);

// "yyyy-m-d h:m:s": the form in which dates go into statements; every locale reads it the same way.
std::u16string sqlNow();
// The same for an OLE automation date of the years 100 to 9999; empty for any other.
std::u16string sqlDate(double date);

} // namespace vellums

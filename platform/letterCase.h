// Texts in capital and in small letters of any script. Each unit is changed for itself: the length stays.
#pragma once

#include <string>
#include <string_view>

namespace vellums::platform {

std::u16string toCapitals(std::u16string_view text);
std::u16string toSmallLetters(std::u16string_view text);

} // namespace vellums::platform

// The language of the interface: English, or Simplified Chinese.
#pragma once

#include <string>
#include <string_view>

namespace vellums {

struct Language {
    bool chinese = false;        // the interface
    bool chineseDefault = false; // the system's default language
};

// Chinese when the system was installed in Simplified Chinese or the settings file says uiChinese=1; it
// can only be switched on there, never off.
Language decideLanguage(
    std::u16string_view installLanguage, std::u16string_view defaultLanguage, bool uiChinese);

// Reads what it needs from the registry and the settings file.
Language systemLanguage(const std::u16string& settingsFile);

} // namespace vellums

// The settings file: AppDir\ExeName.ini, section "Options". Values are written at the moment a setting
// changes; a missing file yields every default.
#pragma once

#include "store/notebook.h"

#include <string>
#include <string_view>

namespace vellums {

inline constexpr std::u16string_view kOptionsSection = u"Options";

// At most 255 characters; nothing behind a U+0000.
std::u16string getPrefValue(const std::u16string& settingsFile, std::u16string_view section,
    std::u16string_view key, std::u16string_view defaultValue);

// False when the file cannot be written.
bool setPrefValue(const std::u16string& settingsFile, std::u16string_view section, std::u16string_view key,
    std::u16string_view value);

// Stores which database and table are open: dbConn, dbParent and dbTable. A table that stands for none
// ("-") is stored as an empty name. False when the file cannot be written.
bool storeDatabaseChoice(const Notebook& notebook);

} // namespace vellums

// The settings file: AppDir\ExeName.ini, section "Options". Values are written at the moment a setting
// changes; a missing file yields every default. All keys that the program knows stand here.
#pragma once

#include "store/notebook.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vellums {

inline constexpr std::u16string_view kOptionsSection = u"Options";

// A key, and what counts where the file has no value for it, or none that can be used.
struct TextSetting {
    std::u16string_view key;
    std::u16string_view otherwise;
};
struct NumberSetting { // decimal digits and nothing else
    std::u16string_view key;
    std::uint32_t otherwise;
    std::uint32_t most;
};
struct SwitchSetting { // "1" is on, "0" is off
    std::u16string_view key;
    bool otherwise;
};

inline constexpr TextSetting kDbConnSetting = {u"dbConn", u""};
inline constexpr TextSetting kDbParentSetting = {u"dbParent", u""};
inline constexpr TextSetting kDbTableSetting = {u"dbTable", u""};
inline constexpr TextSetting kEngineSetting = {u"engine", u"auto"}; // "auto", "embedded" or "ado"
inline constexpr TextSetting kFontNameSetting = {u"fontName", u""}; // empty: that of the system's language
inline constexpr NumberSetting kFontSizeSetting = {u"fontSize", 3, 23};         // entry of the menu: 8 points
inline constexpr NumberSetting kForeColorSetting = {u"foreColor", 0, 0xFFFFFF}; // 0xBBGGRR: black
inline constexpr NumberSetting kBackColorSetting = {u"backColor", 0xB7CEC6, 0xFFFFFF}; // a pale green
inline constexpr SwitchSetting kSortOnTitleSetting = {u"obTitle", false};
inline constexpr SwitchSetting kChineseSetting = {u"uiChinese", false}; // on any system
inline constexpr SwitchSetting kBackupSetting = {u"backup", true};      // Notebook::safetyCopies

std::u16string readSetting(const std::u16string& settingsFile, const TextSetting& setting);
std::uint32_t readSetting(const std::u16string& settingsFile, const NumberSetting& setting);
bool readSetting(const std::u16string& settingsFile, const SwitchSetting& setting);

// False when the file cannot be written.
bool writeSetting(const std::u16string& settingsFile, const TextSetting& setting, std::u16string_view value);
bool writeSetting(const std::u16string& settingsFile, const NumberSetting& setting, std::uint32_t value);
bool writeSetting(const std::u16string& settingsFile, const SwitchSetting& setting, bool on);

// One value of the file. At most 255 characters; nothing behind a U+0000.
std::u16string getPrefValue(const std::u16string& settingsFile, std::u16string_view section,
    std::u16string_view key, std::u16string_view defaultValue);
// False when the file cannot be written.
bool setPrefValue(const std::u16string& settingsFile, std::u16string_view section, std::u16string_view key,
    std::u16string_view value);

// Stores which database and table are open: dbConn, dbParent and dbTable. A table that stands for none is
// stored as an empty name. False when the file cannot be written.
bool storeDatabaseChoice(const Notebook& notebook);

} // namespace vellums

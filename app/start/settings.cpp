#include "app/start/settings.h"

#include "platform/profile.h"
#include "text/decimal.h"

#include <charconv>

namespace vellums {
namespace {

std::u16string read(const std::u16string& file, std::u16string_view key, std::u16string_view otherwise)
{
    return getPrefValue(file, kOptionsSection, key, otherwise);
}

bool write(const std::u16string& file, std::u16string_view key, std::u16string_view value)
{
    return setPrefValue(file, kOptionsSection, key, value);
}

} // namespace

std::u16string readSetting(const std::u16string& settingsFile, const TextSetting& setting)
{
    return read(settingsFile, setting.key, setting.otherwise);
}

std::uint32_t readSetting(const std::u16string& settingsFile, const NumberSetting& setting)
{
    const std::u16string value = read(settingsFile, setting.key, u"");
    const std::string digits(value.begin(), value.end());
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole && number <= setting.most ? number : setting.otherwise;
}

bool readSetting(const std::u16string& settingsFile, const SwitchSetting& setting)
{
    const std::u16string value = read(settingsFile, setting.key, u"");
    return setting.otherwise ? value != u"0" : value == u"1";
}

bool writeSetting(const std::u16string& settingsFile, const TextSetting& setting, std::u16string_view value)
{
    return write(settingsFile, setting.key, value);
}

bool writeSetting(const std::u16string& settingsFile, const NumberSetting& setting, std::uint32_t value)
{
    return write(settingsFile, setting.key, text::decimal(value));
}

bool writeSetting(const std::u16string& settingsFile, const SwitchSetting& setting, bool on)
{
    return write(settingsFile, setting.key, on ? u"1" : u"0");
}

std::u16string getPrefValue(const std::u16string& settingsFile, std::u16string_view section,
    std::u16string_view key, std::u16string_view defaultValue)
{
    return platform::readProfile(settingsFile, section, key, defaultValue);
}

bool setPrefValue(const std::u16string& settingsFile, std::u16string_view section, std::u16string_view key,
    std::u16string_view value)
{
    return platform::writeProfile(settingsFile, section, key, value);
}

bool storeDatabaseChoice(const Notebook& notebook)
{
    const bool connection = writeSetting(notebook.settingsFile, kDbConnSetting, notebook.dbConn);
    const bool folder = writeSetting(notebook.settingsFile, kDbParentSetting, notebook.dbParent);
    const bool table = writeSetting(
        notebook.settingsFile, kDbTableSetting, notebook.dbTable == kNoTable ? u"" : notebook.dbTable);
    return connection && folder && table;
}

} // namespace vellums

#include "app/settings.h"

#include "platform/profile.h"

namespace vellums {

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
    const auto store = [&](std::u16string_view key, std::u16string_view value) {
        return setPrefValue(notebook.settingsFile, kOptionsSection, key, value);
    };
    const bool connection = store(u"dbConn", notebook.dbConn);
    const bool folder = store(u"dbParent", notebook.dbParent);
    const bool table = store(u"dbTable", notebook.dbTable == u"-" ? u"" : notebook.dbTable);
    return connection && folder && table;
}

} // namespace vellums

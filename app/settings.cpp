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

} // namespace vellums

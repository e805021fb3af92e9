#include "app/start/language.h"

#include "app/start/settings.h"
#include "platform/registry.h"

namespace vellums {
namespace {

constexpr std::u16string_view kSimplifiedChinese = u"0804";
constexpr std::u16string_view kLanguageKey = u"SYSTEM\\CurrentControlSet\\Control\\Nls\\Language";

std::u16string languageValue(std::u16string_view name)
{
    return platform::readRegistry(platform::RegistryRoot::LocalMachine, kLanguageKey, name).text;
}

} // namespace

Language decideLanguage(
    std::u16string_view installLanguage, std::u16string_view defaultLanguage, bool uiChinese)
{
    Language language;
    language.chinese = installLanguage == kSimplifiedChinese || uiChinese;
    language.chineseDefault = defaultLanguage == kSimplifiedChinese;
    return language;
}

Language systemLanguage(const std::u16string& settingsFile)
{
    return decideLanguage(languageValue(u"InstallLanguage"), languageValue(u"Default"),
        readSetting(settingsFile, kChineseSetting));
}

} // namespace vellums

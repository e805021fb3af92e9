#include "app/start/engines.h"

#include "app/start/settings.h"
#include "platform/registry.h"
#include "text/letterCase.h"

namespace vellums {
namespace {

constexpr std::u16string_view kAceProvider = u"Microsoft.ACE.OLEDB.12.0";
constexpr std::u16string_view kAceClassKey =
    u"SOFTWARE\\Classes\\CLSID\\{3BE786A0-0366-4F5C-9434-25CF162E475E}";

} // namespace

std::u16string detectedProviderId(std::u16string_view registeredName)
{
    // The older engine is part of every Windows and need not be looked for; but it serves 32-bit processes
    // alone, which chooseEngine() asks about.
    return registeredName == kAceProvider ? u"104" : u"103";
}

EngineChoice chooseEngine(std::u16string_view wish, const std::u16string& detectedId,
    const std::function<bool(const std::u16string&)>& usable)
{
    if (text::equalNoCase(wish, u"embedded"))
        return {};
    if (text::equalNoCase(wish, u"ado") || usable(detectedId))
        return {false, detectedId};
    return {};
}

void Engines::serve(Notebook& notebook)
{
    const std::u16string wish = readSetting(notebook.settingsFile, kEngineSetting);
    // The view of this program's own bitness, which is the one that creates objects in it.
    const platform::RegistryText registered =
        platform::readRegistry(platform::RegistryRoot::LocalMachine, kAceClassKey, u"");
    const EngineChoice choice = chooseEngine(wish, detectedProviderId(registered.text), installed_.usable);
    notebook.providerId = choice.providerId;
    chosen_ = choice.embedded ? nullptr : installed_.make(choice.providerId);
    notebook.provider = chosen_ ? chosen_.get() : &embedded_;
}

} // namespace vellums

// Who serves the databases: the provider of Access files that is installed, or the embedded engine.
#pragma once

#include "store/embedded/embeddedProvider.h"
#include "store/notebook.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vellums {

// The two rules of the choice stand here for the tests of them.
//
// The provider id that the registry's answer stands for: "104" when the ACE provider is registered under
// its name, else "103".
std::u16string detectedProviderId(std::u16string_view registeredName);

struct EngineChoice {
    bool embedded = true;
    std::u16string providerId = u"104";
};

// wish: the settings key `engine`: "embedded" or "ado"; anything else stands for "auto". usable: whether
// the provider of an id can really be created in this process. The embedded engine counts as provider
// "104", because it opens whatever file a connection string names. A provider that is wished for is
// chosen usable or not; its errors then tell the user.
EngineChoice chooseEngine(std::u16string_view wish, const std::u16string& detectedId,
    const std::function<bool(const std::u16string&)>& usable);

// How installed providers are reached, where the system has any.
struct InstalledProviders {
    std::function<bool(const std::u16string& providerId)> usable;
    std::function<std::unique_ptr<Provider>(const std::u16string& providerId)> make;
};

// The engines of a program. Outlives every notebook that has chosen from it.
class Engines {
public:
    explicit Engines(InstalledProviders installed)
        : installed_(std::move(installed))
    {
    }
    // Sets provider and provider id of a notebook that knows its settings file.
    void serve(Notebook& notebook);

private:
    InstalledProviders installed_;
    EmbeddedProvider embedded_;
    std::unique_ptr<Provider> chosen_;
};

} // namespace vellums

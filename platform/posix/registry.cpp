#include "platform/registry.h"

namespace vellums::platform {

RegistryText readRegistry(RegistryRoot, std::u16string_view, std::u16string_view, RegistryView)
{
    return {};
}

} // namespace vellums::platform

#include "platform/shell.h"

#include "platform/files.h"
#include "platform/posix/systemPath.h"

#include <cstdlib>

namespace vellums::platform {

std::u16string specialFolder(SpecialFolder folder)
{
    const char* home = std::getenv("HOME");
    if (home == nullptr || folder == SpecialFolder::SendTo)
        return {};
    const std::u16string base = pathFromBytes(home);
    const std::u16string named = base + (folder == SpecialFolder::Desktop ? u"/Desktop" : u"/Documents");
    return folderExists(named) ? named : base;
}

} // namespace vellums::platform

#include "platform/shell.h"

#include "platform/win32/systemPath.h"

#include <shlobj.h>
#include <windows.h>

namespace vellums::platform {
namespace {

int folderNumber(SpecialFolder folder)
{
    switch (folder) {
    case SpecialFolder::Desktop:
        return CSIDL_DESKTOPDIRECTORY;
    case SpecialFolder::Documents:
        return CSIDL_PERSONAL;
    case SpecialFolder::SendTo:
        return CSIDL_SENDTO;
    }
    return CSIDL_PERSONAL;
}

} // namespace

std::u16string specialFolder(SpecialFolder folder)
{
    wchar_t path[MAX_PATH] = {};
    if (SHGetFolderPathW(nullptr, folderNumber(folder), nullptr, SHGFP_TYPE_CURRENT, path) != S_OK)
        return {};
    std::u16string found = fromWide(path);
    // "C:\" keeps its separator.
    if (found.size() > 3 && found.back() == u'\\')
        found.pop_back();
    return found;
}

} // namespace vellums::platform

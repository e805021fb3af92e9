#include "platform/files.h"

namespace vellums::platform {
namespace {

char16_t lowerAscii(char16_t c)
{
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

} // namespace

bool matchesDatabasePattern(std::u16string_view name)
{
    return name.size() >= 3 && lowerAscii(name[name.size() - 2]) == u'd' &&
        lowerAscii(name[name.size() - 1]) == u'b' &&
        name.substr(0, name.size() - 2).find(u'.') != std::u16string_view::npos;
}

bool makeFolders(const std::u16string& path)
{
    if (folderExists(path) || makeFolder(path))
        return true;
    const std::size_t cut = lastSeparator(path);
    if (cut == std::u16string::npos || cut == 0 || !makeFolders(path.substr(0, cut)))
        return false;
    return makeFolder(path) || folderExists(path);
}

} // namespace vellums::platform

#include "text/path.h"

namespace vellums::text {

std::size_t lastSeparator(std::u16string_view path)
{
    return path.find_last_of(u"/\\");
}

std::u16string_view withoutSeparator(std::u16string_view folder)
{
    const bool root = folder.size() == 1 || (folder.size() == 3 && folder[1] == u':');
    if (!folder.empty() && !root && lastSeparator(folder) == folder.size() - 1)
        folder.remove_suffix(1);
    return folder;
}

std::u16string_view folderOf(std::u16string_view path)
{
    return withoutSeparator(path.substr(0, lastSeparator(path) + 1));
}

std::u16string_view nameOf(std::u16string_view path)
{
    return path.substr(lastSeparator(path) + 1);
}

} // namespace vellums::text

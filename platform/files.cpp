#include "platform/files.h"

#include <vector>

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

void copyFile(const std::u16string& from, const std::u16string& to)
{
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    const File original(from, Access::Read);
    File copy(to, Access::Create);
    std::vector<std::byte> piece(kPiece);
    for (std::uint64_t offset = 0;;) {
        const std::size_t read = original.readAt(offset, piece);
        if (read == 0)
            break;
        copy.writeAt(offset, std::span(piece).first(read));
        offset += read;
    }
    copy.sync();
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

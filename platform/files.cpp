#include "platform/files.h"

#include "text/decimal.h"
#include "text/letterCase.h"
#include "text/path.h"

#include <utility>
#include <vector>

namespace vellums::platform {
namespace {

// Piece by piece: a database may be larger than the memory that is left.
void copyBytes(const File& original, File& copy)
{
    constexpr std::size_t kPiece = std::size_t{1} << 20;
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

} // namespace

// "*.*db": a dot, and at the end "db", which may follow the dot at once.
bool matchesDatabasePattern(std::u16string_view name)
{
    return name.size() >= 3 && text::equalNoCase(name.substr(name.size() - 2), u"db") &&
        name.substr(0, name.size() - 2).find(u'.') != std::u16string_view::npos;
}

void copyFile(const std::u16string& from, const std::u16string& to)
{
    const File original(from, Access::Read);
    std::optional<File> copy(std::in_place, to, Access::Create);
    try {
        copyBytes(original, *copy);
    } catch (...) {
        copy.reset();
        removeFile(to); // it is ours: nothing had this name before
        throw;
    }
}

std::u16string withSeparator(std::u16string_view folder)
{
    std::u16string path(folder);
    if (!path.empty() && text::lastSeparator(path) != path.size() - 1)
        path += separator();
    return path;
}

std::u16string inFolder(std::u16string_view folder, std::u16string_view name)
{
    return withSeparator(folder).append(name);
}

std::u16string unusedPath(std::u16string_view start, std::u16string_view ending)
{
    std::u16string path = std::u16string(start).append(ending);
    for (int number = 2; fileExists(path) || folderExists(path); ++number)
        path = std::u16string(start) + u" " + text::decimal(number) + std::u16string(ending);
    return path;
}

// Another process may make the same folder meanwhile, so at the end it counts whether it is there.
bool makeFolders(const std::u16string& path)
{
    if (folderExists(path) || makeFolder(path))
        return true;
    const std::size_t cut = text::lastSeparator(path);
    if (cut == std::u16string::npos || cut == 0 || !makeFolders(path.substr(0, cut)))
        return false;
    return makeFolder(path) || folderExists(path);
}

} // namespace vellums::platform

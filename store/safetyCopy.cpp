#include "store/safetyCopy.h"

#include "platform/files.h"

#include <vector>

namespace vellums {
namespace {

void copyBytes(const platform::File& from, platform::File& to)
{
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    std::vector<std::byte> piece(kPiece);
    for (std::uint64_t offset = 0;;) {
        const std::size_t read = from.readAt(offset, piece);
        if (read == 0)
            break;
        to.writeAt(offset, std::span(piece).first(read));
        offset += read;
    }
    to.sync();
}

} // namespace

std::u16string safetyCopyPath(const std::u16string& file)
{
    return file + u".bak";
}

bool makeSafetyCopy(const std::u16string& file)
{
    const std::u16string unfinished = safetyCopyPath(file) + u".new";
    try {
        {
            const platform::File original(file, platform::Access::Read);
            platform::removeFile(unfinished);
            platform::File copy(unfinished, platform::Access::Create);
            copyBytes(original, copy);
        }
        platform::replaceFile(unfinished, safetyCopyPath(file));
        return true;
    } catch (const platform::FileError&) {
        platform::removeFile(unfinished);
        return false;
    }
}

} // namespace vellums

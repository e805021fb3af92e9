#include "store/databases/accessFile.h"

#include "jet/file/header.h"
#include "platform/files.h"

#include <array>
#include <string_view>

namespace vellums {

bool looksLikeAccessFile(const std::u16string& path)
{
    // The name stands behind four bytes that are the same in every version:
    //
    //   offset  size  holds
    //        0     4  00 01 00 00
    //        4    15  the name of the engine
    constexpr std::string_view kNames[] = {"Standard Jet DB", "Standard ACE DB"};
    constexpr std::size_t kNameAt = 4;
    std::array<std::byte, 19> start{};
    try {
        const platform::File file(path, platform::Access::Read);
        if (file.readAt(0, start) < start.size())
            return false;
    } catch (const platform::FileError& e) {
        return e.fault == platform::FileFault::InUse; // it is being written: the open tells more
    }
    const std::string_view text(reinterpret_cast<const char*>(start.data()), start.size());
    return text.substr(kNameAt) == kNames[0] || text.substr(kNameAt) == kNames[1];
}

bool isLockedFile(const std::u16string& path)
{
    jet::Bytes page(jet::kJet4.pageSize);
    try {
        const platform::File file(path, platform::Access::Read);
        page.resize(file.readAt(0, page));
    } catch (const platform::FileError&) { // the open tells
        return false;
    }
    return jet::isLocked(page);
}

} // namespace vellums

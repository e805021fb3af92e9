#include "store/safetyCopy.h"

#include "platform/files.h"

namespace vellums {

std::u16string safetyCopyPath(const std::u16string& file)
{
    return file + u".bak";
}

bool makeSafetyCopy(const std::u16string& file)
{
    const std::u16string unfinished = safetyCopyPath(file) + u".new";
    try {
        platform::removeFile(unfinished);
        platform::copyFile(file, unfinished);
        platform::replaceFile(unfinished, safetyCopyPath(file));
        return true;
    } catch (const platform::FileError&) {
        platform::removeFile(unfinished);
        return false;
    }
}

} // namespace vellums

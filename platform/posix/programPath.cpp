#include "platform/programPath.h"

#include "platform/posix/systemPath.h"

#include <unistd.h>

namespace vellums::platform {

std::u16string programFile()
{
    std::string path(4096, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return pathFromBytes(path);
}

} // namespace vellums::platform

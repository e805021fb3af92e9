#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif

#include "platform/fileUse.h"

#include "platform/posix/descriptor.h"
#include "platform/posix/systemPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>

namespace vellums::platform {

// Asked in the name of an open file description, a process's own locks through other ones count, too.
FileUse useOf(const std::u16string& path, std::uint64_t from, std::uint64_t length)
{
    const OwnedDescriptor file(::open(systemPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.fd < 0)
        return FileUse::None;
    struct flock lock { };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(from);
    lock.l_len = static_cast<off_t>(length);
    if (::fcntl(file.fd, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK)
        return FileUse::Certain;
    return FileUse::Unknown;
}

bool changedAfter(const std::u16string& path, const std::u16string& other)
{
    struct stat one { };
    struct stat two { };
    if (::stat(systemPath(path).c_str(), &one) != 0 || ::stat(systemPath(other).c_str(), &two) != 0)
        return false;
    return std::tie(one.st_mtim.tv_sec, one.st_mtim.tv_nsec) >
        std::tie(two.st_mtim.tv_sec, two.st_mtim.tv_nsec);
}

} // namespace vellums::platform

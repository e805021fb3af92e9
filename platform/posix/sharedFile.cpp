#include "platform/sharedFile.h"

#include "platform/codePage.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/systemPath.h"

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace vellums::platform {
namespace {

int openFlags(SharedFile::Mode mode)
{
    switch (mode) {
    case SharedFile::Mode::Read:
        return O_RDONLY;
    case SharedFile::Mode::Replace:
        return O_RDWR | O_CREAT | O_TRUNC;
    case SharedFile::Mode::Append:
        // No O_APPEND: with it writeAt() would not write where it is told to.
        return O_RDWR | O_CREAT;
    }
    return O_RDONLY;
}

} // namespace

struct SharedFile::Handle : OwnedDescriptor {
    explicit Handle(OwnedDescriptor&& opened)
        : OwnedDescriptor(std::move(opened))
    {
    }
};

SharedFile::SharedFile(std::unique_ptr<Handle> handle)
    : handle_(std::move(handle))
{
}
SharedFile::SharedFile(SharedFile&&) noexcept = default;
SharedFile& SharedFile::operator=(SharedFile&&) noexcept = default;
SharedFile::~SharedFile() = default;

std::optional<SharedFile> SharedFile::open(const std::u16string& path, Mode mode)
{
    if (!toAnsiExact(path))
        return std::nullopt;
    // Without waiting for the other end when the name is that of a pipe.
    OwnedDescriptor opened(::open(systemPath(path).c_str(), openFlags(mode) | O_CLOEXEC | O_NONBLOCK, 0666));
    struct stat info { };
    // Only plain files: a device or a pipe has no size, and reading one may never end.
    if (opened.fd < 0 || ::fstat(opened.fd, &info) != 0 || !S_ISREG(info.st_mode))
        return std::nullopt;
    return SharedFile(std::make_unique<Handle>(std::move(opened)));
}

std::optional<std::uint64_t> SharedFile::size() const
{
    struct stat info { };
    if (::fstat(handle_->fd, &info) != 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(info.st_size);
}

std::size_t SharedFile::readAt(std::uint64_t offset, std::span<std::byte> buffer) const
{
    int error = 0;
    return readRange(handle_->fd, offset, buffer, error);
}

bool SharedFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes)
{
    return writeRange(handle_->fd, offset, bytes) == 0;
}

} // namespace vellums::platform

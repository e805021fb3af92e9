#include "platform/sharedFile.h"

#include "platform/codePage.h"
#include "platform/win32/fileRanges.h"
#include "platform/win32/ownedHandle.h"
#include "platform/win32/systemPath.h"

#include <utility>

#include <windows.h>

namespace vellums::platform {
namespace {

DWORD disposition(SharedFile::Mode mode)
{
    switch (mode) {
    case SharedFile::Mode::Read:
        return OPEN_EXISTING;
    case SharedFile::Mode::Replace:
        return CREATE_ALWAYS;
    case SharedFile::Mode::Append:
        return OPEN_ALWAYS;
    }
    return OPEN_EXISTING;
}

} // namespace

struct SharedFile::Handle : OwnedHandle {
    explicit Handle(OwnedHandle&& handle)
        : OwnedHandle(std::move(handle))
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
    // The wide call reaches long paths as well; a path that the code page cannot hold must not
    // reach a file of a look-alike name.
    if (!toAnsiExact(path))
        return std::nullopt;
    const DWORD access = mode == Mode::Read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
    OwnedHandle handle(CreateFileW(systemPath(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
        nullptr, disposition(mode), FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle)
        return std::nullopt;
    return SharedFile(std::make_unique<Handle>(std::move(handle)));
}

std::optional<std::uint64_t> SharedFile::size() const
{
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(handle_->get(), &size))
        return std::nullopt;
    return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t SharedFile::readAt(std::uint64_t offset, std::span<std::byte> buffer) const
{
    DWORD error = ERROR_SUCCESS;
    return readRange(handle_->get(), offset, buffer, error);
}

bool SharedFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes)
{
    return writeRange(handle_->get(), offset, bytes) == ERROR_SUCCESS;
}

} // namespace vellums::platform

#include "platform/sharedFile.h"

#include "platform/codePage.h"
#include "platform/win32/ownedHandle.h"
#include "platform/win32/systemPath.h"

#include <algorithm>
#include <utility>

#include <windows.h>

namespace vellums::platform {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 28;

OVERLAPPED at(std::uint64_t offset)
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFu);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

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
    std::size_t done = 0;
    while (done < buffer.size()) {
        OVERLAPPED place = at(offset + done);
        DWORD got = 0;
        const DWORD wanted = static_cast<DWORD>(std::min(buffer.size() - done, kMostAtOnce));
        if (!ReadFile(handle_->get(), buffer.data() + done, wanted, &got, &place) || got == 0)
            break;
        done += got;
    }
    return done;
}

bool SharedFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        OVERLAPPED place = at(offset + done);
        DWORD put = 0;
        const DWORD wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMostAtOnce));
        if (!WriteFile(handle_->get(), bytes.data() + done, wanted, &put, &place) || put == 0)
            return false;
        done += put;
    }
    return true;
}

} // namespace vellums::platform

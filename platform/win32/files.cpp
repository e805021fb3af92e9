// The lock of an open file is its share mode, which holds between all programs of one system. Programs on
// others (behind a network share; beside the Windows programs, where these run on another system) know no
// share modes, but all know locked bytes: so a byte far behind the end is locked as well, for those that lock
// the whole file (see posix/files.cpp). There it keeps nobody from reading or writing.
#include "platform/files.h"

#include "platform/win32/fileRanges.h"
#include "platform/win32/ownedHandle.h"
#include "platform/win32/ownedSearch.h"
#include "platform/win32/systemPath.h"
#include "text/oleDate.h"

#include <new>
#include <utility>

#include <windows.h>

namespace vellums::platform {
namespace {

constexpr std::uint64_t kLockedByte = std::uint64_t{1} << 40;

[[noreturn]] void fail(DWORD code)
{
    throw FileError{faultOfWindows(code), static_cast<int>(code)};
}

bool isFolder(const std::wstring& path)
{
    const DWORD marks = GetFileAttributesW(path.c_str());
    return marks != INVALID_FILE_ATTRIBUTES && (marks & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Why access was denied: "denied" alone does not tell a read-only file from a forbidden one.
[[noreturn]] void failDenied(const std::wstring& path, Access access)
{
    const DWORD marks = GetFileAttributesW(path.c_str());
    const bool there = marks != INVALID_FILE_ATTRIBUTES;
    if (access == Access::Create && there)
        throw FileError{FileFault::Exists, ERROR_ACCESS_DENIED};
    if (access != Access::Read && there && (marks & FILE_ATTRIBUTE_READONLY) != 0)
        throw FileError{FileFault::ReadOnly, ERROR_ACCESS_DENIED};
    throw FileError{FileFault::Denied, ERROR_ACCESS_DENIED};
}

OwnedHandle openFile(const std::wstring& path, Access access)
{
    const bool reading = access == Access::Read;
    // Said before the system is asked: not every system keeps to the mark itself.
    const DWORD marks = GetFileAttributesW(path.c_str());
    const bool marked = marks != INVALID_FILE_ATTRIBUTES && (marks & FILE_ATTRIBUTE_READONLY) != 0;
    if (marked && (access == Access::Write || access == Access::WriteOrCreate))
        throw FileError{FileFault::ReadOnly, ERROR_ACCESS_DENIED};
    DWORD disposition = OPEN_EXISTING;
    if (access == Access::Create)
        disposition = CREATE_NEW;
    else if (access == Access::WriteOrCreate)
        disposition = OPEN_ALWAYS;
    // Readers share with readers, a writer with nobody: the access modes of the header, word for word.
    OwnedHandle handle(CreateFileW(path.c_str(), reading ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE,
        reading ? FILE_SHARE_READ : 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (handle) {
        // A file system that locks no bytes leaves the share mode.
        if (lockRange(handle.get(), kLockedByte, 1, reading) == ERROR_LOCK_VIOLATION)
            throw FileError{FileFault::InUse, ERROR_LOCK_VIOLATION};
        return handle;
    }
    const DWORD code = GetLastError();
    if (code == ERROR_ACCESS_DENIED)
        failDenied(path, access);
    fail(code);
}

} // namespace

struct File::Handle : OwnedHandle {
    explicit Handle(OwnedHandle&& handle)
        : OwnedHandle(std::move(handle))
    {
    }
};

File::File(const std::u16string& path, Access access)
    : handle_(std::make_unique<Handle>(openFile(systemPath(path), access)))
{
}

File::File(File&&) noexcept = default;
File& File::operator=(File&&) noexcept = default;
File::~File() = default;

std::uint64_t File::size() const
{
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(handle_->get(), &size))
        fail(GetLastError());
    return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t File::readAt(std::uint64_t offset, std::span<std::byte> buffer) const
{
    DWORD error = ERROR_SUCCESS;
    const std::size_t done = readRange(handle_->get(), offset, buffer, error);
    if (error != ERROR_SUCCESS)
        fail(error);
    return done;
}

void File::writeAt(std::uint64_t offset, std::span<const std::byte> bytes)
{
    if (const DWORD error = writeRange(handle_->get(), offset, bytes); error != ERROR_SUCCESS)
        fail(error);
}

void File::resize(std::uint64_t size)
{
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    if (!SetFilePointerEx(handle_->get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(handle_->get()))
        fail(GetLastError());
}

void File::sync()
{
    if (!FlushFileBuffers(handle_->get()))
        fail(GetLastError());
}

File::View::View(View&& other) noexcept
    : bytes_(std::exchange(other.bytes_, {}))
    , handle_(std::exchange(other.handle_, nullptr))
{
}

File::View& File::View::operator=(View&& other) noexcept
{
    if (this != &other) {
        release();
        bytes_ = std::exchange(other.bytes_, {});
        handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
}

File::View::~View()
{
    release();
}

void File::View::release() noexcept
{
    if (!bytes_.empty())
        UnmapViewOfFile(bytes_.data());
    if (handle_ != nullptr)
        CloseHandle(handle_);
    bytes_ = {};
    handle_ = nullptr;
}

File::View File::view() const
{
    View view;
    const std::uint64_t length = size();
    if (length == 0)
        return view;
    // Two objects for one view, the mapping and where it is seen; both are given back by release().
    view.handle_ = CreateFileMappingW(handle_->get(), nullptr, PAGE_READONLY, 0, 0, nullptr);
    if (view.handle_ == nullptr)
        fail(GetLastError());
    const void* base = MapViewOfFile(view.handle_, FILE_MAP_READ, 0, 0, static_cast<SIZE_T>(length));
    if (base == nullptr)
        fail(GetLastError());
    view.bytes_ = {static_cast<const std::byte*>(base), static_cast<std::size_t>(length)};
    return view;
}

bool fileExists(const std::u16string& path)
{
    const DWORD marks = GetFileAttributesW(systemPath(path).c_str());
    return marks != INVALID_FILE_ATTRIBUTES && (marks & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool folderExists(const std::u16string& path)
{
    return isFolder(systemPath(path));
}

std::optional<std::uint64_t> fileSize(const std::u16string& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(systemPath(path).c_str(), GetFileExInfoStandard, &data) ||
        (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return std::nullopt;
    return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

std::optional<double> fileModified(const std::u16string& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    // By the summer-time rule of that date, not of today.
    if (!GetFileAttributesExW(systemPath(path).c_str(), GetFileExInfoStandard, &data) ||
        !FileTimeToSystemTime(&data.ftLastWriteTime, &utc) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return std::nullopt;
    return text::oleDate({local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond});
}

bool removeFile(const std::u16string& path) noexcept
try {
    if (DeleteFileW(systemPath(path).c_str()))
        return true;
    const DWORD code = GetLastError();
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
} catch (const std::bad_alloc&) {
    return false;
}

namespace {

void moveFlushed(const std::u16string& from, const std::u16string& to, DWORD how)
{
    const std::wstring source = systemPath(from);
    const std::wstring target = systemPath(to);
    {
        // Flushing needs the right to write.
        const OwnedHandle moved(CreateFileW(
            source.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!moved || !FlushFileBuffers(moved.get()))
            fail(GetLastError());
    }
    // A virus scanner or an indexer may hold a fresh file for a moment.
    constexpr int kAttempts = 10;
    constexpr DWORD kPauseMs = 20;
    for (int attempt = 1;; ++attempt) {
        // Write-through: the call comes back when the new name is on the disk.
        if (MoveFileExW(source.c_str(), target.c_str(), how | MOVEFILE_WRITE_THROUGH))
            return;
        const DWORD code = GetLastError();
        const bool maybeHeld = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION;
        if (!maybeHeld || attempt == kAttempts)
            fail(code);
        Sleep(kPauseMs);
    }
}

} // namespace

void replaceFile(const std::u16string& from, const std::u16string& to)
{
    moveFlushed(from, to, MOVEFILE_REPLACE_EXISTING);
}

void moveToFreeName(const std::u16string& from, const std::u16string& to)
{
    moveFlushed(from, to, 0);
}

void syncFolderOf(const std::u16string&) { }

bool clearAttributes(const std::u16string& path)
{
    return SetFileAttributesW(systemPath(path).c_str(), FILE_ATTRIBUTE_NORMAL) != 0;
}

bool makeFolder(const std::u16string& path)
{
    return CreateDirectoryW(systemPath(path).c_str(), nullptr) != FALSE;
}

bool removeFolder(const std::u16string& path)
{
    return RemoveDirectoryW(systemPath(path).c_str()) || !isFolder(systemPath(path));
}

std::vector<std::u16string> databaseNames(const std::u16string& folder)
{
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW data{};
    // Windows compares short names as well, so the long name is looked at again.
    const OwnedSearch search(FindFirstFileW(systemPath(inFolder(folder, u"*.*db")).c_str(), &data));
    if (!search)
        return names;
    do {
        const std::u16string name = fromWide(data.cFileName);
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && matchesDatabasePattern(name))
            names.push_back(name);
    } while (FindNextFileW(search.raw, &data));
    return names;
}

std::u16string absolutePath(const std::u16string& path)
{
    std::wstring full(32768, L'\0');
    const DWORD length =
        GetFullPathNameW(toWide(path).c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    return length == 0 || length >= full.size() ? path : fromWide(full.substr(0, length));
}

char16_t separator()
{
    return u'\\';
}

} // namespace vellums::platform

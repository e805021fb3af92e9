// The lock of an open file is an open file description lock over its whole length: it belongs to the
// open file, so it works between threads too, and closing another handle of the file does not give it
// up as a process-wide lock would. The Windows programs lock a byte of it, far behind the end.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif

#include "platform/files.h"

#include "platform/posix/descriptor.h"
#include "platform/posix/ownedListing.h"
#include "platform/posix/systemPath.h"
#include "text/oleDate.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vellums::platform {
namespace {

[[noreturn]] void fail(int code)
{
    throw FileError{faultOfErrno(code), code};
}

std::string folderOf(const std::string& path)
{
    const std::size_t cut = path.find_last_of('/');
    if (cut == std::string::npos)
        return ".";
    return cut == 0 ? "/" : path.substr(0, cut);
}

bool isFolder(const std::string& path)
{
    struct stat info { };
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

// The administrator may write anything; what carries no write permission for anybody counts as
// read-only all the same. A folder without one makes its files read-only, as no journal fits there.
bool markedReadOnly(const std::string& path)
{
    struct stat info { };
    if (::stat(path.c_str(), &info) == 0 && (info.st_mode & kAnyWrite) == 0)
        return true;
    return ::stat(folderOf(path).c_str(), &info) == 0 && (info.st_mode & kAnyWrite) == 0;
}

int openFlags(Access access)
{
    switch (access) {
    case Access::Read:
        return O_RDONLY;
    case Access::Write:
        return O_RDWR;
    case Access::Create:
        return O_RDWR | O_CREAT | O_EXCL;
    case Access::WriteOrCreate:
        return O_RDWR | O_CREAT;
    }
    return O_RDONLY;
}

OwnedDescriptor openOnce(const std::string& path, Access access)
{
    int fd = -1;
    do
        fd = ::open(path.c_str(), openFlags(access) | O_CLOEXEC, 0666);
    while (fd < 0 && errno == EINTR);
    if (fd >= 0)
        return OwnedDescriptor(fd);
    const int code = errno;
    // Two failures have one number here: the file is missing, or its folder is.
    if (code == ENOENT && !isFolder(folderOf(path)))
        throw FileError{FileFault::FolderNotFound, code};
    if (code == EACCES && access != Access::Read && ::access(path.c_str(), R_OK) == 0)
        throw FileError{FileFault::ReadOnly, code};
    fail(code);
}

void lockWhole(int fd, Access access)
{
    struct flock lock { };
    lock.l_type = access == Access::Read ? F_RDLCK : F_WRLCK;
    // A length of 0 reaches to the end, however far the file grows.
    lock.l_whence = SEEK_SET;
    while (::fcntl(fd, F_OFD_SETLK, &lock) != 0) {
        if (errno == EAGAIN || errno == EACCES)
            throw FileError{FileFault::InUse, errno};
        if (errno != EINTR)
            fail(errno);
    }
}

// Whether the path still means the open file: between opening and locking another process may have
// replaced or removed it.
bool stillNamed(const std::string& path, const struct stat& opened)
{
    struct stat named { };
    return ::stat(path.c_str(), &named) == 0 && named.st_dev == opened.st_dev &&
        named.st_ino == opened.st_ino;
}

} // namespace

struct File::Handle : OwnedDescriptor {
    explicit Handle(OwnedDescriptor&& opened)
        : OwnedDescriptor(std::move(opened))
    {
    }
};

File::File(const std::u16string& path, Access access)
{
    const std::string name = systemPath(path);
    if (access != Access::Read && markedReadOnly(name))
        throw FileError{FileFault::ReadOnly, EROFS};
    for (;;) {
        auto handle = std::make_unique<Handle>(openOnce(name, access));
        struct stat opened { };
        if (::fstat(handle->fd, &opened) != 0)
            fail(errno);
        // A folder can be opened for reading; that would show only when it is read.
        if (S_ISDIR(opened.st_mode))
            fail(EISDIR);
        lockWhole(handle->fd, access);
        // A file of one's own making that somebody else removed is gone for good.
        if (stillNamed(name, opened)) {
            handle_ = std::move(handle);
            return;
        }
    }
}

File::File(File&&) noexcept = default;
File& File::operator=(File&&) noexcept = default;
File::~File() = default;

std::uint64_t File::size() const
{
    struct stat info { };
    if (::fstat(handle_->fd, &info) != 0)
        fail(errno);
    return static_cast<std::uint64_t>(info.st_size);
}

std::size_t File::readAt(std::uint64_t offset, std::span<std::byte> buffer) const
{
    int error = 0;
    const std::size_t done = readRange(handle_->fd, offset, buffer, error);
    if (error != 0)
        fail(error);
    return done;
}

void File::writeAt(std::uint64_t offset, std::span<const std::byte> bytes)
{
    if (const int error = writeRange(handle_->fd, offset, bytes); error != 0)
        fail(error);
}

void File::resize(std::uint64_t size)
{
    while (::ftruncate(handle_->fd, static_cast<off_t>(size)) != 0) {
        if (errno != EINTR)
            fail(errno);
    }
}

void File::sync()
{
    while (::fdatasync(handle_->fd) != 0) {
        if (errno != EINTR)
            fail(errno);
    }
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
        ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
    bytes_ = {};
}

// Shared with the file: what writeAt() puts there shows in the view at once.
File::View File::view() const
{
    View view;
    const std::size_t length = static_cast<std::size_t>(size());
    if (length == 0)
        return view;
    void* base = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, handle_->fd, 0);
    if (base == MAP_FAILED)
        fail(errno);
    view.bytes_ = {static_cast<const std::byte*>(base), length};
    return view;
}

bool fileExists(const std::u16string& path)
{
    struct stat info { };
    return ::stat(systemPath(path).c_str(), &info) == 0 && !S_ISDIR(info.st_mode);
}

bool folderExists(const std::u16string& path)
{
    return isFolder(systemPath(path));
}

std::optional<std::uint64_t> fileSize(const std::u16string& path)
{
    struct stat info { };
    if (::stat(systemPath(path).c_str(), &info) != 0 || S_ISDIR(info.st_mode))
        return std::nullopt;
    return static_cast<std::uint64_t>(info.st_size);
}

std::optional<double> fileModified(const std::u16string& path)
{
    struct stat info { };
    if (::stat(systemPath(path).c_str(), &info) != 0)
        return std::nullopt;
    struct tm local { };
    if (::localtime_r(&info.st_mtime, &local) == nullptr)
        return std::nullopt;
    return text::oleDate({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
        std::min(local.tm_sec, 59)});
}

bool removeFile(const std::u16string& path) noexcept
try {
    return ::unlink(systemPath(path).c_str()) == 0 || errno == ENOENT;
} catch (const std::bad_alloc&) {
    return false;
}

namespace {

// Flushes the file, gives it the other name by `rename` (0: done), and flushes the folders.
template <typename Rename>
void moveFlushed(const std::u16string& from, const std::u16string& to, Rename&& rename)
{
    const std::string source = systemPath(from);
    const std::string target = systemPath(to);
    {
        // The bytes have to be on the disk before the name leads to them.
        const OwnedDescriptor moved(::open(source.c_str(), O_RDONLY | O_CLOEXEC));
        if (moved.fd < 0 || ::fsync(moved.fd) != 0)
            fail(errno);
    }
    if (rename(source.c_str(), target.c_str()) != 0)
        fail(errno);
    syncFolderOf(to);
    if (folderOf(source) != folderOf(target))
        syncFolderOf(from);
}

} // namespace

void replaceFile(const std::u16string& from, const std::u16string& to)
{
    moveFlushed(from, to, [](const char* source, const char* target) { return ::rename(source, target); });
}

void moveToFreeName(const std::u16string& from, const std::u16string& to)
{
    moveFlushed(from, to, [](const char* source, const char* target) {
        const int moved = ::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE);
        if (moved == 0 || (errno != EINVAL && errno != ENOSYS))
            return moved;
        // A file system that does not know this kind of renaming: two names for a moment.
        return ::link(source, target) != 0 ? -1 : ::unlink(source);
    });
}

void syncFolderOf(const std::u16string& path)
{
    const OwnedDescriptor folder(
        ::open(folderOf(systemPath(path)).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot sync a folder; there is nothing better to do then.
    if (folder.fd >= 0 && ::fsync(folder.fd) != 0 && errno != EINVAL && errno != ENOTSUP)
        fail(errno);
}

bool clearAttributes(const std::u16string& path)
{
    const std::string name = systemPath(path);
    struct stat info { };
    if (::stat(name.c_str(), &info) != 0)
        return false;
    // Of the four marks this system has one, read-only, in the form of a missing permission.
    if ((info.st_mode & S_IWUSR) != 0)
        return true;
    return ::chmod(name.c_str(), (info.st_mode & 07777) | S_IWUSR) == 0;
}

bool makeFolder(const std::u16string& path)
{
    return ::mkdir(systemPath(path).c_str(), 0777) == 0;
}

bool removeFolder(const std::u16string& path)
{
    return ::rmdir(systemPath(path).c_str()) == 0 || errno == ENOENT;
}

std::vector<std::u16string> databaseNames(const std::u16string& folder)
{
    std::vector<std::u16string> names;
    const OwnedListing listing(::opendir(folder.empty() ? "." : systemPath(folder).c_str()));
    if (listing == nullptr)
        return names;
    while (const struct dirent* entry = ::readdir(listing.get())) {
        const std::u16string name = pathFromBytes(entry->d_name);
        if (matchesDatabasePattern(name) && fileExists(inFolder(folder, name)))
            names.push_back(name);
    }
    return names;
}

std::u16string absolutePath(const std::u16string& path)
{
    std::error_code failed;
    const std::filesystem::path full = std::filesystem::absolute(systemPath(path), failed);
    return failed ? path : pathFromBytes(full.lexically_normal().string());
}

char16_t separator()
{
    return u'/';
}

} // namespace vellums::platform

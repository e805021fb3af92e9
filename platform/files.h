// Files and folders. Paths are UTF-16 text in the system's own form; on POSIX both "/" and "\" end a
// folder and a path is turned into UTF-8 bytes at the last moment.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::platform {

// Why the system refused a file, in the few kinds that callers tell apart.
enum class FileFault { NotFound, FolderNotFound, Denied, ReadOnly, InUse, Exists, DiskFull, Failed };

// Thrown by File and by the free functions that say so.
struct FileError {
    FileFault fault;
    int systemCode; // errno or GetLastError()
};

// How a file is opened and what others may do with it meanwhile. The lock belongs to the open file
// and covers all of it: between the threads and processes of this program, also across a network share
// that hands locks on, and on Windows (share modes) between all programs.
//   Read:   others may read. Fails with InUse while someone holds it for writing.
//   Write:  nobody else may have it open. Fails with InUse while anyone has.
//   Create: as Write; the file must not exist yet (Exists).
//   WriteOrCreate: as Write; made when it is missing.
enum class Access { Read, Write, Create, WriteOrCreate };

// An open file. Closed, and its lock given up, by the destructor.
class File {
public:
    // Opens at once or fails; never waits. Throws FileError.
    File(const std::u16string& path, Access access);
    File(File&&) noexcept;
    File& operator=(File&&) noexcept;
    ~File();

    std::uint64_t size() const;
    // Reads up to the length of the buffer; gives the number of bytes read, less only at the end.
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> buffer) const;
    // Writes all of the bytes; beyond the end the file grows. Throws FileError (DiskFull, Failed).
    void writeAt(std::uint64_t offset, std::span<const std::byte> bytes);
    void resize(std::uint64_t size);
    // Returns when everything written is on the disk.
    void sync();

    // A view of the whole file as it is now, for reading; empty for an empty file. Bytes written
    // later with writeAt inside its length show in it. Must not outlive the File. Throws FileError.
    class View {
    public:
        View() = default;
        View(View&&) noexcept;
        View& operator=(View&&) noexcept;
        ~View();
        std::span<const std::byte> bytes() const { return bytes_; }

    private:
        friend class File;
        std::span<const std::byte> bytes_;
        void* handle_ = nullptr; // the mapping object, where the system has one
        void release() noexcept;
    };
    View view() const;

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

bool fileExists(const std::u16string& path);   // a file, not a folder
bool folderExists(const std::u16string& path); // a folder
std::optional<std::uint64_t> fileSize(const std::u16string& path);
// Local time of the last change, as an OLE automation date.
std::optional<double> fileModified(const std::u16string& path);
// False when it could not be removed, for want of memory too; a missing file counts as removed.
bool removeFile(const std::u16string& path) noexcept;
// Copies the bytes into a new file, flushed to the disk. Throws FileError (Exists, too); no unfinished
// copy is left.
void copyFile(const std::u16string& from, const std::u16string& to);
// Moves over an existing file, atomically, flushed to the disk. Throws FileError.
void replaceFile(const std::u16string& from, const std::u16string& to);
// Moves a file to a name that nothing has, flushed to the disk. Throws FileError (Exists, too).
void moveToFreeName(const std::u16string& from, const std::u16string& to);
// A path that nothing has: start and ending put together, or with a number between them.
std::u16string unusedPath(std::u16string_view start, std::u16string_view ending);
// Makes the entry of a new or removed file in its folder last; nothing to do on Windows.
void syncFolderOf(const std::u16string& path);
// Clears read-only, hidden, system and archive marks. False when it failed.
bool clearAttributes(const std::u16string& path);

bool makeFolder(const std::u16string& path); // one level; false also when it was there already
// Makes the folder and those above it that are missing. True when it is there in the end.
bool makeFolders(const std::u16string& path);

// Removes an empty folder. False when it is still there.
bool removeFolder(const std::u16string& path);

// Names (without folder) of the files in a folder whose long name matches "*.*db", letter case
// aside, in the order the system lists them. Empty when the folder cannot be listed.
std::vector<std::u16string> databaseNames(const std::u16string& folder);
// Whether a name matches "*.*db", letter case aside.
bool matchesDatabasePattern(std::u16string_view name);

// The full path that a path means from the current folder, without "." and ".." in it.
std::u16string absolutePath(const std::u16string& path);

// What stands between the parts of a path: "\" on Windows, "/" elsewhere.
char16_t separator();
// The folder with a separator at its end, and a name in it; an empty folder adds none.
std::u16string withSeparator(std::u16string_view folder);
std::u16string inFolder(std::u16string_view folder, std::u16string_view name);

} // namespace vellums::platform

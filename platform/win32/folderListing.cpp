#include "platform/folderListing.h"

#include "platform/codePage.h"
#include "platform/win32/ownedHandle.h"
#include "platform/win32/systemPath.h"

#include <windows.h>

namespace vellums::platform {

namespace {

bool identify(const std::u16string& folder, BY_HANDLE_FILE_INFORMATION& info)
{
    const OwnedHandle handle(
        CreateFileW(systemPath(folder).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return handle && GetFileInformationByHandle(handle.get(), &info);
}

} // namespace

struct FolderListing::Search {
    WIN32_FIND_DATAW data{};
    HANDLE raw = INVALID_HANDLE_VALUE;
    bool waiting = false; // the entry in data has not been handed out

    Search() = default;
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;
    ~Search()
    {
        if (raw != INVALID_HANDLE_VALUE)
            FindClose(raw);
    }
};

FolderListing::FolderListing(const std::u16string& folder)
    : search_(std::make_unique<Search>())
{
    // The wide call reaches long paths as well.
    if (toAnsiExact(folder))
        search_->raw = FindFirstFileW(systemPath(folder + u"*.*").c_str(), &search_->data);
    search_->waiting = search_->raw != INVALID_HANDLE_VALUE;
}

FolderListing::FolderListing(FolderListing&&) noexcept = default;
FolderListing& FolderListing::operator=(FolderListing&&) noexcept = default;
FolderListing::~FolderListing() = default;

bool FolderListing::next(FolderEntry& entry)
{
    if (search_->raw == INVALID_HANDLE_VALUE)
        return false;
    if (!search_->waiting && !FindNextFileW(search_->raw, &search_->data))
        return false;
    search_->waiting = false;
    const DWORD marks = search_->data.dwFileAttributes;
    entry.isFolder = (marks & FILE_ATTRIBUTE_DIRECTORY) != 0;
    entry.isLink = (marks & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
        (search_->data.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT ||
            search_->data.dwReserved0 == IO_REPARSE_TAG_SYMLINK);
    entry.name = throughAnsi(fromWide(search_->data.cFileName));
    return true;
}

bool sameFolder(const std::u16string& a, const std::u16string& b)
{
    BY_HANDLE_FILE_INFORMATION first{};
    BY_HANDLE_FILE_INFORMATION second{};
    return identify(a, first) && identify(b, second) &&
        first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
        first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

} // namespace vellums::platform

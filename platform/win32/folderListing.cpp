#include "platform/folderListing.h"

#include "platform/codePage.h"
#include "platform/win32/ownedHandle.h"
#include "platform/win32/ownedSearch.h"
#include "platform/win32/systemPath.h"

#include <windows.h>

namespace vellums::platform {
namespace {

// Asks for no access at all, so that a folder which may not be read can be identified; a folder opens with
// backup semantics only.
bool identify(const std::u16string& folder, BY_HANDLE_FILE_INFORMATION& info)
{
    const OwnedHandle handle(
        CreateFileW(systemPath(folder).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return handle && GetFileInformationByHandle(handle.get(), &info);
}

} // namespace

struct FolderListing::Search : OwnedSearch {
    WIN32_FIND_DATAW data{};
    bool waiting = false; // the entry in data has not been handed out
    std::optional<FileFault> fault;
};

FolderListing::FolderListing(const std::u16string& folder)
    : search_(std::make_unique<Search>())
{
    // The wide call reaches long paths as well.
    if (toAnsiExact(folder))
        search_->raw = FindFirstFileW(systemPath(folder + u"*.*").c_str(), &search_->data);
    else
        SetLastError(ERROR_PATH_NOT_FOUND);
    search_->waiting = static_cast<bool>(*search_);
    // The root of an empty disk has no entry at all.
    if (!search_->waiting && GetLastError() != ERROR_FILE_NOT_FOUND)
        search_->fault = faultOfWindows(GetLastError());
}

FolderListing::FolderListing(FolderListing&&) noexcept = default;
FolderListing& FolderListing::operator=(FolderListing&&) noexcept = default;
FolderListing::~FolderListing() = default;

bool FolderListing::next(FolderEntry& entry)
{
    if (!*search_)
        return false;
    if (!search_->waiting && !FindNextFileW(search_->raw, &search_->data)) {
        if (GetLastError() != ERROR_NO_MORE_FILES)
            search_->fault = faultOfWindows(GetLastError());
        return false;
    }
    search_->waiting = false;
    const DWORD marks = search_->data.dwFileAttributes;
    entry.isFolder = (marks & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // Other reparse points, such as those of files that lie in the cloud, stand for nothing elsewhere.
    entry.isLink = (marks & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
        (search_->data.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT ||
            search_->data.dwReserved0 == IO_REPARSE_TAG_SYMLINK);
    const std::u16string name = fromWide(search_->data.cFileName);
    entry.name = throughAnsi(name);
    entry.nameLost = entry.name != name;
    return true;
}

std::optional<FileFault> FolderListing::fault() const
{
    return search_->fault;
}

std::optional<FolderId> folderId(const std::u16string& folder)
{
    BY_HANDLE_FILE_INFORMATION info{};
    if (!identify(folder, info) || (info.nFileIndexHigh | info.nFileIndexLow) == 0) // some shares have none
        return std::nullopt;
    return FolderId{
        info.dwVolumeSerialNumber, (std::uint64_t{info.nFileIndexHigh} << 32) | info.nFileIndexLow};
}

} // namespace vellums::platform

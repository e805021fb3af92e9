#include "platform/folderListing.h"

#include "platform/codePage.h"
#include "platform/posix/ownedListing.h"
#include "platform/posix/systemPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace vellums::platform {

struct FolderListing::Search {
    OwnedListing listing;
    std::optional<FileFault> fault;
};

FolderListing::FolderListing(const std::u16string& folder)
    : search_(std::make_unique<Search>())
{
    // A folder whose name the code page cannot hold counts as missing, on every system alike.
    if (toAnsiExact(folder))
        search_->listing.reset(::opendir(systemPath(folder).c_str()));
    else
        errno = ENOENT;
    if (search_->listing == nullptr)
        search_->fault = faultOfErrno(errno);
}

FolderListing::FolderListing(FolderListing&&) noexcept = default;
FolderListing& FolderListing::operator=(FolderListing&&) noexcept = default;
FolderListing::~FolderListing() = default;

bool FolderListing::next(FolderEntry& entry)
{
    if (search_->listing == nullptr)
        return false;
    // The end and a failure are told apart by errno alone, which nothing else may have set.
    errno = 0;
    const struct dirent* found = ::readdir(search_->listing.get());
    if (found == nullptr) {
        if (errno != 0)
            search_->fault = faultOfErrno(errno);
        return false;
    }
    const std::u16string name = pathFromBytes(found->d_name);
    entry.name = throughAnsi(name);
    entry.nameLost = entry.name != name;
    struct stat info { };
    // First the entry itself, then, for a link, what it leads to: a link to a folder counts as a folder.
    const int folder = ::dirfd(search_->listing.get());
    const bool known = ::fstatat(folder, found->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0;
    entry.isLink = known && S_ISLNK(info.st_mode);
    if (entry.isLink && ::fstatat(folder, found->d_name, &info, 0) != 0)
        info.st_mode = 0; // it leads nowhere
    entry.isFolder = known && S_ISDIR(info.st_mode);
    return true;
}

std::optional<FileFault> FolderListing::fault() const
{
    return search_->fault;
}

std::optional<FolderId> folderId(const std::u16string& folder)
{
    struct stat info { };
    if (::stat(systemPath(folder).c_str(), &info) != 0)
        return std::nullopt;
    return FolderId{static_cast<std::uint64_t>(info.st_dev), static_cast<std::uint64_t>(info.st_ino)};
}

} // namespace vellums::platform

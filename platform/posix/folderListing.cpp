#include "platform/folderListing.h"

#include "platform/codePage.h"
#include "platform/posix/systemPath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace vellums::platform {

struct FolderListing::Search {
    DIR* raw;
    explicit Search(DIR* opened)
        : raw(opened)
    {
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;
    ~Search()
    {
        if (raw != nullptr)
            ::closedir(raw);
    }
};

FolderListing::FolderListing(const std::u16string& folder)
    : search_(std::make_unique<Search>(toAnsiExact(folder) ? ::opendir(systemPath(folder).c_str()) : nullptr))
{
}

FolderListing::FolderListing(FolderListing&&) noexcept = default;
FolderListing& FolderListing::operator=(FolderListing&&) noexcept = default;
FolderListing::~FolderListing() = default;

bool FolderListing::next(FolderEntry& entry)
{
    const struct dirent* found = search_->raw != nullptr ? ::readdir(search_->raw) : nullptr;
    if (found == nullptr)
        return false;
    entry.name = throughAnsi(pathFromBytes(found->d_name));
    struct stat info { };
    const int folder = ::dirfd(search_->raw);
    const bool known = ::fstatat(folder, found->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0;
    entry.isLink = known && S_ISLNK(info.st_mode);
    if (entry.isLink && ::fstatat(folder, found->d_name, &info, 0) != 0)
        info.st_mode = 0; // it leads nowhere
    entry.isFolder = known && S_ISDIR(info.st_mode);
    return true;
}

bool sameFolder(const std::u16string& a, const std::u16string& b)
{
    struct stat first { };
    struct stat second { };
    return ::stat(systemPath(a).c_str(), &first) == 0 && ::stat(systemPath(b).c_str(), &second) == 0 &&
        first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

} // namespace vellums::platform

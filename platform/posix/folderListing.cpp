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
    entry.isFolder = ::fstatat(::dirfd(search_->raw), found->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISDIR(info.st_mode);
    return true;
}

} // namespace vellums::platform

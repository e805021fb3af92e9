// The entries of one folder, as the system lists them.
#pragma once

#include <memory>
#include <string>

namespace vellums::platform {

struct FolderEntry {
    std::u16string name;   // as the ANSI code page holds it: "?" for a character it does not know
    bool isFolder = false; // a link to a folder is an entry of its own and not a folder
};

// Goes through a folder once. A folder that cannot be listed is like an empty one.
class FolderListing {
public:
    // The path with a separator at its end.
    explicit FolderListing(const std::u16string& folder);
    FolderListing(FolderListing&&) noexcept;
    FolderListing& operator=(FolderListing&&) noexcept;
    ~FolderListing();

    // False when there are no more entries. "." and ".." are among them where the system lists them.
    bool next(FolderEntry& entry);

private:
    struct Search;
    std::unique_ptr<Search> search_;
};

} // namespace vellums::platform

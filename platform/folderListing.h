// The entries of one folder, as the system lists them.
#pragma once

#include <memory>
#include <string>

namespace vellums::platform {

struct FolderEntry {
    std::u16string name;   // as the ANSI code page holds it: "?" for a character it does not know
    bool isFolder = false; // also when it is a link to one
    bool isLink = false;   // it stands for something elsewhere
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

// Whether two paths lead to one and the same folder, through links if need be.
bool sameFolder(const std::u16string& a, const std::u16string& b);

} // namespace vellums::platform

// The entries of one folder, as the system lists them.
#pragma once

#include "platform/files.h"

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace vellums::platform {

struct FolderEntry {
    std::u16string name;   // as the ANSI code page holds it: "?" for a character it does not know
    bool nameLost = false; // the code page lacks a character of it: nothing can be opened by this name
    bool isFolder = false; // also when it is a link to one
    bool isLink = false;   // it stands for something elsewhere
};

// Goes through a folder once.
class FolderListing {
public:
    // The path with a separator at its end.
    explicit FolderListing(const std::u16string& folder);
    FolderListing(FolderListing&&) noexcept;
    FolderListing& operator=(FolderListing&&) noexcept;
    ~FolderListing();

    // False when there are no more entries, or no more can be had. "." and ".." are among them where the
    // system lists them.
    bool next(FolderEntry& entry);
    // Why the folder could not be listed, or not to its end; empty while all is well.
    std::optional<FileFault> fault() const;

private:
    struct Search;
    std::unique_ptr<Search> search_;
};

// What tells one folder from another, through whatever links it is reached.
struct FolderId {
    std::uint64_t volume = 0;
    std::uint64_t number = 0;
    auto operator<=>(const FolderId&) const = default;
};
// Empty when the system cannot tell.
std::optional<FolderId> folderId(const std::u16string& folder);

} // namespace vellums::platform

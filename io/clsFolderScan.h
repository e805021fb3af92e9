// Walks a folder tree and collects what lies in it.
#pragma once

#include "platform/folderListing.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vellums {

// Folders are walked depth first, entries come in the order of the file system, and the event loop
// gets its turn after every entry. Each folder is walked once, through however many links it is
// reached; it is found each time. A folder that cannot be listed contributes nothing but its path in
// Unlisted. Names pass through the ANSI code page.
class clsFolderScan {
public:
    // relativePath: of a folder its own path without the root, of a file its folder's with a
    // separator at the end (empty in the root). fullPath: of a folder its own, of a file its folder's
    // with a separator. The counts include the entry.
    struct Entry {
        std::u16string_view name;
        std::u16string_view relativePath;
        std::u16string_view fullPath;
        bool isFolder;
        std::int32_t fileCount;
        std::int32_t folderCount;
    };

    std::function<void(const Entry&)> EntryFound; // called for each entry while Events is true

    // Found by the last scan. Folders: the paths below the root or, with FullPath, the full paths
    // with a separator at the end. Files: always the full paths.
    const std::vector<std::u16string>& Folders() const { return folders_; }
    const std::vector<std::u16string>& Files() const { return files_; }
    // A folder whose contents are missing, all of them or some.
    struct Missed {
        std::u16string path;
        std::optional<platform::FileFault> fault; // none: the code page lacks a character of its name
    };
    const std::vector<Missed>& Unlisted() const { return unlisted_; }
    std::int32_t FolderCount() const { return folderCount_; }
    std::int32_t FileCount() const { return fileCount_; }

    bool Events = false;
    bool SubFolders = true; // whether to go down into subfolders; they are found either way
    bool FullPath = false;

    // Stops the walk after the entry that is being treated.
    void Abort() { aborted_ = true; }
    // What the last scan found is dropped. The root itself is not among what is found.
    void ScanFolder(std::u16string_view folderPath);

private:
    std::u16string root_; // with a separator at the end
    std::vector<std::u16string> folders_;
    std::vector<std::u16string> files_;
    std::vector<Missed> unlisted_;
    std::set<platform::FolderId> walked_;
    std::int32_t folderCount_ = 0;
    std::int32_t fileCount_ = 0;
    bool aborted_ = false;

    void walk(const std::u16string& folder);
    bool isNew(const std::u16string& folder);
    void foundFolder(const std::u16string& parent, const platform::FolderEntry& entry);
    void foundFile(const std::u16string& parent, const std::u16string& name);
    void report(const Entry& entry) const;
    std::u16string relative(std::u16string_view path) const;
};

} // namespace vellums

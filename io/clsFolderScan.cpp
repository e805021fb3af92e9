// Depth first, one open listing for each level. A link may lead back to a folder above, so every folder is
// entered once only, told by its identity and not by its path (walked_); that also ends a walk through links
// that form a ring. After each entry waiting events get their turn, and whoever they reach may call Abort(),
// so aborted_ is looked at before the next entry of every level.
#include "io/clsFolderScan.h"

#include "platform/events.h"
#include "platform/files.h"
#include "text/path.h"
#include "text/pieces.h"

#include <cassert>

namespace vellums {

void clsFolderScan::ScanFolder(std::u16string_view folderPath)
{
    root_ =
        folderPath.empty() ? std::u16string(1, platform::separator()) : platform::withSeparator(folderPath);
    folders_.clear();
    files_.clear();
    unlisted_.clear();
    walked_.clear();
    aborted_ = false;
    folderCount_ = 0;
    fileCount_ = 0;
    isNew(root_);
    walk(root_);
}

// What cannot be told apart from others cannot be listed either, and walking it says why.
bool clsFolderScan::isNew(const std::u16string& folder)
{
    const std::optional<platform::FolderId> id = platform::folderId(folder);
    return !id || walked_.insert(*id).second;
}

void clsFolderScan::walk(const std::u16string& folder)
{
    assert(text::lastSeparator(folder) == folder.size() - 1);
    platform::FolderListing listing(folder);
    for (platform::FolderEntry entry; !aborted_ && listing.next(entry);) {
        if (entry.isFolder && (entry.name == u"." || entry.name == u".."))
            continue;
        if (entry.isFolder)
            foundFolder(folder, entry);
        else
            foundFile(folder, entry.name);
        platform::yieldToEvents();
    }
    if (listing.fault())
        unlisted_.push_back({folder.substr(0, folder.size() - 1), listing.fault()});
}

// A folder is counted and reported after everything in it.
void clsFolderScan::foundFolder(const std::u16string& parent, const platform::FolderEntry& entry)
{
    const std::u16string path = parent + entry.name;
    const std::u16string inside = path + platform::separator();
    const std::u16string relativePath = relative(path);
    folders_.push_back(FullPath ? inside : relativePath);
    // It was found, but cannot be opened by the name that the code page made of its own.
    if (SubFolders && entry.nameLost)
        unlisted_.push_back({path, std::nullopt});
    else if (SubFolders && isNew(inside))
        walk(inside);
    ++folderCount_;
    report({entry.name, relativePath, path, true, fileCount_, folderCount_});
}

void clsFolderScan::foundFile(const std::u16string& parent, const std::u16string& name)
{
    ++fileCount_;
    files_.push_back(parent + name);
    report({name, relative(parent), parent, false, fileCount_, folderCount_});
}

void clsFolderScan::report(const Entry& entry) const
{
    if (Events && EntryFound)
        EntryFound(entry);
}

// Every occurrence of the root is taken out, also one further inside.
std::u16string clsFolderScan::relative(std::u16string_view path) const
{
    return text::replaceAll(path, root_, u"");
}

} // namespace vellums

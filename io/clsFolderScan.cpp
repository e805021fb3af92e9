#include "io/clsFolderScan.h"

#include "platform/events.h"
#include "platform/files.h"
#include "platform/folderListing.h"
#include "platform/text.h"

namespace vellums::io {

void clsFolderScan::ScanFolder(std::u16string_view folderPath)
{
    root_ = folderPath;
    if (root_.empty() || platform::lastSeparator(root_) != root_.size() - 1)
        root_ += platform::separator();
    folders_.clear();
    files_.clear();
    aborted_ = false;
    folderCount_ = 0;
    fileCount_ = 0;
    walk(root_);
}

void clsFolderScan::walk(const std::u16string& folder)
{
    platform::FolderListing listing(folder);
    for (platform::FolderEntry entry; !aborted_ && listing.next(entry);) {
        if (entry.isFolder && (entry.name == u"." || entry.name == u".."))
            continue;
        if (entry.isFolder)
            foundFolder(folder, entry.name, entry.isLink);
        else
            foundFile(folder, entry.name);
        platform::yieldToEvents();
    }
}

// A folder is counted and reported after everything in it.
void clsFolderScan::foundFolder(const std::u16string& parent, const std::u16string& name, bool isLink)
{
    const std::u16string path = parent + name;
    const std::u16string inside = path + platform::separator();
    const std::u16string relativePath = relative(path);
    folders_.push_back(FullPath ? inside : relativePath);
    if (SubFolders && !(isLink && leadsBack(inside)))
        walk(inside);
    ++folderCount_;
    report({name, relativePath, path, true, fileCount_, folderCount_});
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
    return platform::replaceAll(path, root_, u"");
}

bool clsFolderScan::leadsBack(const std::u16string& folder) const
{
    for (std::size_t end = folder.size() - 1; end > root_.size();) {
        end = platform::lastSeparator(std::u16string_view(folder).substr(0, end)) + 1;
        if (platform::sameFolder(folder, folder.substr(0, end)))
            return true;
        --end;
    }
    return false;
}

} // namespace vellums::io

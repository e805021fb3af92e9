#include "tests/support/temporaryFolder.h"

#include "platform/files.h"
#include "platform/folderListing.h"
#include "platform/process.h"
#include "text/pieces.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace vellums::tests {

namespace fs = std::filesystem;

namespace {

std::u16string textOf(const fs::path& path)
{
    return text::replaceAll(path.u16string(), u"/", std::u16string(1, platform::separator()));
}

// With the functions that reach long paths.
void removeTree(const std::u16string& folder)
{
    const std::u16string inside = folder + platform::separator();
    std::vector<platform::FolderEntry> entries;
    platform::FolderListing listing(inside);
    for (platform::FolderEntry entry; listing.next(entry);)
        entries.push_back(entry);
    for (const platform::FolderEntry& entry : entries) {
        const std::u16string path = inside + entry.name;
        if (entry.name == u"." || entry.name == u"..")
            continue;
        if (entry.isFolder && !entry.isLink)
            removeTree(path);
        else if (!platform::removeFile(path) && platform::clearAttributes(path))
            platform::removeFile(path);
    }
    platform::clearAttributes(folder);
    platform::removeFolder(folder);
}

// The listing knows names only as far as the code page goes; the library knows the others.
void removeAll(const std::u16string& folder)
{
    removeTree(folder);
    std::error_code ignored;
    fs::remove_all(fs::path(folder), ignored);
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    static std::atomic<int> count{0};
    const std::string name =
        "vellums-test-" + std::to_string(platform::processId()) + "-" + std::to_string(count++);
    const fs::path folder = fs::temp_directory_path() / name;
    path_ = textOf(folder);
    removeAll(path_);
    fs::create_directories(folder);
}

TemporaryFolder::~TemporaryFolder()
{
    removeAll(path_);
}

std::u16string TemporaryFolder::file(std::u16string_view name) const
{
    return textOf(fs::path(path_) / fs::path(name));
}

std::u16string TemporaryFolder::write(std::u16string_view name, std::string_view bytes) const
{
    const fs::path target(file(name));
    platform::makeFolders(textOf(target.parent_path()));
    std::ofstream(target, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return textOf(target);
}

std::u16string TemporaryFolder::makeFolder(std::u16string_view name) const
{
    platform::makeFolders(file(name));
    return file(name);
}

void TemporaryFolder::setReadOnly(std::u16string_view name, bool readOnly) const
{
    const auto all = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(fs::path(file(name)), readOnly ? all : fs::perms::owner_write,
        readOnly ? fs::perm_options::remove : fs::perm_options::add);
}

std::string bytesOf(const std::u16string& path)
{
    std::ifstream stream(fs::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace vellums::tests

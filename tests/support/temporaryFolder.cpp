#include "tests/support/temporaryFolder.h"

#include "platform/files.h"
#include "platform/process.h"
#include "platform/text.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace vellums::tests {

namespace fs = std::filesystem;

namespace {

std::u16string textOf(const fs::path& path)
{
    return platform::replaceAll(path.u16string(), u"/", std::u16string(1, platform::separator()));
}

// Windows needs a prefix to reach long paths.
fs::path reachable(const std::u16string& path)
{
    const bool drive = path.size() > 1 && path[1] == u':';
    return drive ? fs::path(u"\\\\?\\" + path) : fs::path(path);
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    static std::atomic<int> count{0};
    const std::string name =
        "vellums-test-" + std::to_string(platform::processId()) + "-" + std::to_string(count++);
    const fs::path folder = fs::temp_directory_path() / name;
    path_ = textOf(folder);
    fs::remove_all(reachable(path_));
    fs::create_directories(folder);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::recursive_directory_iterator entry(reachable(path_), ignored);
    for (; !ignored && entry != fs::recursive_directory_iterator(); entry.increment(ignored))
        fs::permissions(entry->path(), fs::perms::owner_write, fs::perm_options::add, ignored);
    fs::remove_all(reachable(path_), ignored);
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

#include "fuzz/target.h"

#include "platform/files.h"
#include "platform/process.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>

namespace vellums::fuzz {
namespace {

namespace fs = std::filesystem;

// Removed with all it holds when the process ends.
class WorkFolder {
public:
    WorkFolder()
        : path_(fs::temp_directory_path() / ("vellums-fuzz-" + std::to_string(platform::processId())))
    {
        fs::create_directories(path_);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder()
    {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

} // namespace

void require(bool condition, const char* sentence)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s\n", sentence);
    std::abort();
}

std::u16string workFile(std::u16string_view name)
{
    static const WorkFolder folder;
    return (folder.path() / name).u16string();
}

void writeWorkFile(const std::u16string& path, const void* data, std::size_t size)
{
    platform::File file(path, platform::Access::WriteOrCreate);
    file.resize(size);
    file.writeAt(0, std::span(static_cast<const std::byte*>(data), size));
}

std::string readWorkFile(const std::u16string& path)
{
    const platform::File file(path, platform::Access::Read);
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    bytes.resize(file.readAt(0, std::as_writable_bytes(std::span<char>(bytes))));
    return bytes;
}

} // namespace vellums::fuzz

// A folder of its own for one test.
#pragma once

#include <string>
#include <string_view>

namespace vellums::tests {

// Made empty by the constructor, removed with all it holds by the destructor.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::u16string& path() const { return path_; } // no separator at the end
    // The path of an entry; "/" in the name becomes the system's separator.
    std::u16string file(std::u16string_view name) const;
    // Writes a file (and the folders above it) and gives its path.
    std::u16string write(std::u16string_view name, std::string_view bytes) const;
    std::u16string makeFolder(std::u16string_view name) const;
    void setReadOnly(std::u16string_view name, bool readOnly) const;

private:
    std::u16string path_;
};

// All bytes of a file; empty when there is none.
std::string bytesOf(const std::u16string& path);

} // namespace vellums::tests

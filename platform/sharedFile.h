// A file that is read or written in passing: others may have it open meanwhile, and nothing is
// locked. Its path passes through the ANSI code page: what the code page cannot hold is not found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace vellums::platform {

class SharedFile {
public:
    enum class Mode {
        Read,    // it must exist
        Replace, // empty, made when it is missing
        Append,  // as it is, made when it is missing
    };

    // Empty when it could not be opened.
    static std::optional<SharedFile> open(const std::u16string& path, Mode mode);
    SharedFile(SharedFile&&) noexcept;
    SharedFile& operator=(SharedFile&&) noexcept;
    ~SharedFile();

    // Empty when the system cannot tell.
    std::optional<std::uint64_t> size() const;
    // The number of bytes read; less than asked for at the end and on errors.
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> buffer) const;
    bool writeAt(std::uint64_t offset, std::span<const std::byte> bytes);

private:
    struct Handle;
    explicit SharedFile(std::unique_ptr<Handle> handle);
    std::unique_ptr<Handle> handle_;
};

} // namespace vellums::platform

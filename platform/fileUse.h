// Whether another program works with a file that is not opened through platform::File.
#pragma once

#include <cstdint>
#include <string>

namespace vellums::platform {

enum class FileUse {
    None,    // nobody has it open; also where there is no such file
    Certain, // somebody has it open, or some of the bytes locked
    Unknown, // the bytes are not locked, and this system does not tell who has a file open
};

// Looks at the file for a moment; `from` and `length` are the bytes that somebody who uses it locks (they may
// lie behind its end).
FileUse useOf(const std::u16string& path, std::uint64_t from, std::uint64_t length);

// Whether the file was changed later than the other one. False where one of them is missing.
bool changedAfter(const std::u16string& path, const std::u16string& other);

} // namespace vellums::platform

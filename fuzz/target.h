// What each fuzz target is made of. A target takes any bytes; it ends the process when the program
// under it does anything but succeed or refuse.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The shape that libFuzzer expects.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vellums::fuzz {

// Well-formed inputs to begin with; made by the program itself.
std::vector<std::string> seeds();

// Ends the process with a sentence unless the condition holds.
void require(bool condition, const char* sentence);

// A folder of this process for files.
std::u16string workFile(std::u16string_view name);
void writeWorkFile(const std::u16string& path, const void* data, std::size_t size);
std::string readWorkFile(const std::u16string& path);

} // namespace vellums::fuzz

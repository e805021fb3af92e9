// Profile files (.ini): sections in brackets, keys with values.
//
// Sections and keys are compared without letter case; of equal ones the first counts. Blanks and tabs
// around keys and values do not belong to them; one pair of " or ' around a whole value keeps the
// blanks inside. Lines that begin with ";" are remarks. The file is in the ANSI code page, or in
// UTF-16 little-endian when it begins with that mark, and is read anew on every call.
#pragma once

#include <string>
#include <string_view>

namespace vellums::platform {

// The value, at most 255 characters of it and nothing behind a U+0000; the default when the file, the
// section or the key is missing. The path must be a full one.
std::u16string readProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key,
    std::u16string_view defaultValue);

// Stores a value so that it reads back unchanged. A key keeps its place and spelling, a new one goes
// to the end of its section. False when the file could not be written.
bool writeProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key,
    std::u16string_view value);

// Takes the key out; the program itself only overwrites. True also when it was not there.
bool deleteProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key);

// The value as it stands in the file: in an extra pair of quotes when reading would take something
// off it, and on one line.
std::u16string profileText(std::u16string_view value);

} // namespace vellums::platform

// What the first bytes of a file tell.
#pragma once

#include <string>

namespace vellums {

// The file begins as an Access file does, of whatever version. False also when it cannot be read.
bool looksLikeAccessFile(const std::u16string& path);

// A password locks the database. False also when it cannot be read.
bool isLockedFile(const std::u16string& path);

} // namespace vellums

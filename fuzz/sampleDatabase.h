// A small database with every kind of row, for targets to begin with.
#pragma once

#include <string>

namespace vellums::fuzz {

// Makes it at a path that is not there yet; the extension decides the format.
void makeSampleDatabase(const std::u16string& path);

} // namespace vellums::fuzz

// What the program was started with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellums {

struct Start {
    std::vector<std::u16string> paths; // files and folders to import
    bool add = false;                  // "/add": a new record from the clipboard
    std::u16string addText;            // what followed "/add", one pair of quotes taken off
};

// Takes the raw command line behind the program's name. "/add" and "/import" are recognised in any
// letter case at the start; anything else is a list of paths.
Start parseCommandLine(std::u16string_view commandLine);

} // namespace vellums

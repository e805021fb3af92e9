// Import of files and folders.
#pragma once

#include "cli/arguments.h"

namespace vellums::cli {

void runImport(const Arguments& arguments);

} // namespace vellums::cli

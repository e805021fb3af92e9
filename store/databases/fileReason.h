// Why the system refused a file, as a sentence for the user.
#pragma once

#include "platform/files.h"
#include "store/notebook.h"

#include <string>

namespace vellums {

std::u16string fileReason(const Notebook& notebook, platform::FileFault fault);

} // namespace vellums

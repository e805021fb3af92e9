// The import log: one line for each thing that was not imported.
#pragma once

#include <string>

namespace vellums {

// Appends "date and time, tab, message, CR LF". Nothing happens where the file cannot be written.
void appendLog(const std::u16string& logFile, const std::u16string& message);

} // namespace vellums

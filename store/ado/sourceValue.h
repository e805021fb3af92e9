// File paths in the connection strings that providers take apart.
#pragma once

#include <string>

namespace vellums {

// The path as the value of "Data Source=": as it is, or in double quotes where its characters would end
// the value.
std::u16string sourceValue(const std::u16string& path);

// The connection string with its file in quotes where it needs them.
std::u16string withQuotedSource(const std::u16string& connectionString);

} // namespace vellums

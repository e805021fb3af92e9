// Tables of cases that lie outside of the repository, beside the fixtures.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vellums::tests {

// The lines of a tab-separated table below its heading, cut into fields; nullopt: there is no such
// file. The folder is that of VELLUMS_FIXTURES (or ../shared/fixtures beside the source), then
// ../reference.
std::optional<std::vector<std::vector<std::u16string>>> referenceTable(const std::string& name);

// \t, \r, \n and \\ undone.
std::u16string unescaped(const std::u16string& text);

} // namespace vellums::tests

// The database files of other programs that tests read. They lie in the folder that the environment
// variable VELLUMS_FIXTURES names; they are never changed, tests that write work on copies.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellums::tests {

// The path of a file of the folder, nullopt when it is not there.
std::optional<std::u16string> fixturePath(std::string_view name);

// All bytes of it; empty when it is not there.
std::string fixtureBytes(std::string_view name);

} // namespace vellums::tests

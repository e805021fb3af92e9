// Gives a database file a password, as another program would: it locks the header and nothing else.
#pragma once

#include <string>
#include <string_view>

namespace vellums::tests {

void lockFile(const std::u16string& path, std::u16string_view password); // of Jet 4 or ACE; at most 20 units

} // namespace vellums::tests

// A slow matcher that does literally what the third edition of ECMAScript says, for short patterns and
// texts. Shares nothing with the engine but the parser.
#pragma once

#include "regexp/parse/tree.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace vellums::regexp {

// First unit and end of each match; nothing when it gave up after too many steps.
std::optional<std::vector<std::pair<std::size_t, std::size_t>>> referenceMatches(
    const Tree& tree, std::u16string_view text, bool global);

} // namespace vellums::regexp

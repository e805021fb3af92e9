// What a match may begin with.
#pragma once

#include "regexp/parse/tree.h"

namespace vellums::regexp {

// No match that takes units begins with another one. All units where that is not known.
UnitSet beginningsOf(const Tree& tree);

} // namespace vellums::regexp

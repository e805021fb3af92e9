// The client that the tests of the notebook run through. One suite serves all of them.
#pragma once

#include "store/connection.h"

namespace vellums::tests {

// The embedded engine, unless the test program's main has chosen another.
const Provider& client();

// For a main: from now on that one, which is not owned.
void runThrough(const Provider& provider);

} // namespace vellums::tests

// The clock. Dates are those of text/oleDate.h.
#pragma once

#include "text/oleDate.h"

#include <cstdint>

namespace vellums::platform {

// Now, in whole seconds.
text::LocalTime localNow();
// Now as an OLE automation date, in whole seconds.
double oleNow();

// Milliseconds that only ever grow; for measuring spans.
std::uint64_t steadyMs();

} // namespace vellums::platform

// Time: the local clock, and OLE automation dates (days since 1899-12-30 as a double; the fraction is
// the time of day, also for dates before that day, where it counts away from zero).
#pragma once

#include "text/oleDate.h"

#include <cstdint>
#include <optional>

namespace vellums::platform {

// Now, in whole seconds.
text::LocalTime localNow();
// Now as an OLE automation date, in whole seconds.
double oleNow();

// Milliseconds that only ever grow; for measuring spans.
std::uint64_t steadyMs();

} // namespace vellums::platform

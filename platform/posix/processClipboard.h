// The clipboard of a process on a system without one.
#pragma once

namespace vellums::platform {

// As if another program held it. For tests.
void holdClipboard(bool held);

} // namespace vellums::platform

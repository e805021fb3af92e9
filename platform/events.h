// The event loop, for long work that wants to stay stoppable.
#pragma once

#include <functional>

namespace vellums::platform {

// Lets waiting events be treated once. Does nothing in a program without an event loop.
void yieldToEvents();

// What yielding does in this process: a window program hands in a routine that treats its waiting
// messages. An empty function takes it away again.
void setEventYield(std::function<void()> yield);

} // namespace vellums::platform

#include "platform/events.h"

#include <utility>

namespace vellums::platform {
namespace {

// Of the process: work deep below knows no window that it could ask.
std::function<void()>& currentYield()
{
    static std::function<void()> yield;
    return yield;
}

} // namespace

void yieldToEvents()
{
    if (currentYield())
        currentYield()();
}

void setEventYield(std::function<void()> yield)
{
    currentYield() = std::move(yield);
}

} // namespace vellums::platform

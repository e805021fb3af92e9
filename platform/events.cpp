#include "platform/events.h"

#include <utility>

namespace vellums::platform {
namespace {

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

#include "platform/clock.h"

#include "text/oleDate.h"

#include <chrono>

namespace vellums::platform {
double oleNow()
{
    return text::oleDate(localNow());
}

std::uint64_t steadyMs()
{
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(duration_cast<milliseconds>(since).count());
}

} // namespace vellums::platform

#include "platform/clock.h"

#include <windows.h>

namespace vellums::platform {

LocalTime localNow()
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

} // namespace vellums::platform

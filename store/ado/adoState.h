// Whether an ADO Connection or Recordset is open.
#pragma once

#include "platform/win32/comObject.h"

namespace vellums {

// Throws platform::ComError.
inline bool isOpenAdo(const platform::ComObject& object)
{
    constexpr std::int32_t kOpen = 1; // a bit; others tell what it is doing
    return (object.get(u"State").toNumber() & kOpen) != 0;
}

// Closes it where it is open. Silent: nobody could do more about a failure, and the release follows.
inline void closeAdo(const platform::ComObject& object) noexcept
{
    try {
        if (isOpenAdo(object))
            object.call(u"Close");
    } catch (...) {
    }
}

} // namespace vellums

// Owner of a search for files.
#pragma once

#include <windows.h>

namespace vellums::platform {

// Ends it exactly once. Not set: nothing was found.
struct OwnedSearch {
    HANDLE raw = INVALID_HANDLE_VALUE;
    OwnedSearch() = default;
    explicit OwnedSearch(HANDLE found)
        : raw(found)
    {
    }
    OwnedSearch(const OwnedSearch&) = delete;
    OwnedSearch& operator=(const OwnedSearch&) = delete;
    ~OwnedSearch()
    {
        if (raw != INVALID_HANDLE_VALUE)
            FindClose(raw);
    }
    explicit operator bool() const { return raw != INVALID_HANDLE_VALUE; }
};

} // namespace vellums::platform

// Owner of a kernel handle.
#pragma once

#include <utility>

#include <windows.h>

namespace vellums::platform {

// Moves, never copies, closes exactly once. Both "no handle" values of Windows count as empty.
class OwnedHandle {
public:
    OwnedHandle() = default;
    explicit OwnedHandle(HANDLE raw)
        : raw_(raw == INVALID_HANDLE_VALUE ? nullptr : raw)
    {
    }
    OwnedHandle(OwnedHandle&& other) noexcept
        : raw_(std::exchange(other.raw_, nullptr))
    {
    }
    OwnedHandle& operator=(OwnedHandle&& other) noexcept
    {
        if (this != &other) {
            close();
            raw_ = std::exchange(other.raw_, nullptr);
        }
        return *this;
    }
    ~OwnedHandle() { close(); }

    HANDLE get() const { return raw_; }
    explicit operator bool() const { return raw_ != nullptr; }

private:
    HANDLE raw_ = nullptr;
    void close() noexcept
    {
        if (raw_ != nullptr)
            CloseHandle(raw_);
    }
};

} // namespace vellums::platform

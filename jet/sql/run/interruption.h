// Gives a statement up half way when whoever waits for it has lost interest.
#pragma once

#include "jet/sql/values/sqlError.h"

#include <atomic>
#include <functional>
#include <thread>

namespace vellums::jet::sql {

class Interruption {
public:
    // `wanted` is asked now and then, in the thread that makes this object only.
    explicit Interruption(const std::function<bool()>& wanted)
        : wanted_(wanted)
    {
    }

    // For every row, in any thread. Throws Error (3059) once the end is wanted.
    void check()
    {
        if (std::this_thread::get_id() == owner_ && ++rows_ % kRowsBetween == 0 && wanted_())
            raised_ = true;
        if (raised_)
            throwCanceled();
    }

private:
    static constexpr unsigned kRowsBetween = 64;

    const std::function<bool()>& wanted_;
    const std::thread::id owner_ = std::this_thread::get_id();
    unsigned rows_ = 0;
    std::atomic<bool> raised_ = false;
};

} // namespace vellums::jet::sql

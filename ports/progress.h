// Long work as the user sees it: how far it is, and a way to ask it to stop.
#pragma once

#include <cstddef>
#include <string_view>

namespace vellums {

// The window shows it in the right panel and on the taskbar from half a second on, vellums-cli on a
// terminal. One work at a time.
class Progress {
public:
    virtual ~Progress() = default;
    // `what` names the work, in the language of the interface.
    virtual void begin(std::u16string_view what) = 0;
    // After each step, however small: so many of `total` are done (total 0: nobody knows yet). Waiting
    // events get their turn now and then. False: the user has asked to stop.
    virtual bool step(std::size_t done, std::size_t total) = 0;
    virtual void end() noexcept = 0;
};

// The time in which a work runs.
class LongWork {
public:
    LongWork(Progress& progress, std::u16string_view what)
        : progress_(progress)
    {
        try {
            progress_.begin(what);
        } catch (...) { // no memory to say what it is; whatever has begun ends
            progress_.end();
            throw;
        }
    }
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;
    ~LongWork() { progress_.end(); }

    [[nodiscard]] bool step(std::size_t done, std::size_t total) { return progress_.step(done, total); }

private:
    Progress& progress_;
};

} // namespace vellums

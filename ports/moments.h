// Moments at which what stands higher wants to do something. Callbacks run in the order in which they
// were added.
#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace vellums {

class Moment {
public:
    void add(std::function<void()> callback) { callbacks_.push_back(std::move(callback)); }
    void happen() const
    {
        for (const auto& callback : callbacks_)
            callback();
    }

private:
    std::vector<std::function<void()>> callbacks_;
};

struct Moments {
    Moment tableOpened; // before the first query on a table: search fields are rebuilt
    Moment listFilled;  // after start, switching and Reload
};

} // namespace vellums

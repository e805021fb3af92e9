// Many statements in a row, made lasting together every half second or so.
#pragma once

#include "store/connection.h"

#include <cstdint>
#include <functional>

namespace vellums {

// While a batch is open the database is held for writing, so nothing that waits for a person may happen
// in between.
class Batches {
public:
    // stored: called each time when everything up to now is lasting.
    explicit Batches(Connection& connection, std::function<void()> stored = {});
    Batches(const Batches&) = delete;
    Batches& operator=(const Batches&) = delete;
    // What was done before a failure stays: an open batch is made lasting here too, silently.
    ~Batches();

    // Before each step of the work: opens a batch, or goes on with the open one. Throws ProviderError.
    void step();
    // At the end: everything is lasting. Throws ProviderError.
    void finish();
    // Takes back what is not lasting yet, where the provider can: with the connection, which is of no use
    // any more.
    void giveUp() { open_ = false; }

    // How long a batch stays open; 0: each step is a batch. Tests change it.
    static std::uint64_t lastsMs;

private:
    Connection& connection_;
    std::function<void()> stored_;
    bool open_ = false;
    std::uint64_t openedMs_ = 0;
};

} // namespace vellums

#include "store/records/batches.h"

#include "platform/clock.h"

namespace vellums {

std::uint64_t Batches::lastsMs = 500;

Batches::Batches(Connection& connection, std::function<void()> stored)
    : connection_(connection)
    , stored_(std::move(stored))
{
}

Batches::~Batches()
{
    try {
        finish();
    } catch (...) { // the failure that led here has been reported, or will be
    }
}

void Batches::step()
{
    if (open_ && platform::steadyMs() - openedMs_ >= lastsMs)
        finish();
    if (open_)
        return;
    connection_.beginBatch();
    open_ = true;
    openedMs_ = platform::steadyMs();
}

void Batches::finish()
{
    if (!open_)
        return;
    // The flag goes down first: where the end of the batch fails, the destructor must not end it once more.
    open_ = false;
    connection_.endBatch();
    if (stored_)
        stored_();
}

} // namespace vellums

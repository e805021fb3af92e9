// A bulk act as the window's user sees it: its progress, Stop, and the question when no safety copy could
// be made.
#pragma once

#include "ports/dialogs.h"
#include "ports/progress.h"
#include "store/records/bulkAct.h"

#include <string_view>

namespace vellums {

// The time in which the act runs. Everything outlives it.
class BulkWork {
public:
    // `what` names the work, in the language of the interface.
    BulkWork(const Notebook& notebook, Progress& progress, Dialogs& dialogs, std::u16string_view what);

    // For one act, while this object lives.
    BulkUser user();
    [[nodiscard]] bool step(std::size_t done, std::size_t total) { return work_.step(done, total); }

private:
    const Notebook& notebook_;
    Dialogs& dialogs_;
    LongWork work_;
};

} // namespace vellums

// The one way in which many records are added, deleted or rewritten.
//
// First a safety copy of the database, where the act asks for one; where it cannot be made the user
// decides. Then step by step: each step treats one record (or one file) and leaves it whole. The steps
// of half a second or so become lasting together. After each the user may stop; Stop and errors end the
// act, and what was lasting before stays.
#pragma once

#include "store/notebook.h"
#include "store/records/batches.h"

#include <cstddef>
#include <functional>
#include <string>

namespace vellums {

// How an act reaches its user. All functions may be empty.
struct BulkUser {
    // No safety copy could be made, for this reason: whether to go on without. Empty: there is nobody to
    // ask, and the act does not begin.
    std::function<bool(const std::u16string& reason)> goOnWithoutCopy;
    // After each step; false: stop.
    std::function<bool(std::size_t done, std::size_t total)> goesOn;
    // What was done up to now is lasting.
    std::function<void(std::size_t done)> lasting;
    bool safetyCopy = true; // false: the user wants none
};

enum class SafetyCopy {
    None,   // acts that only add
    OfMany, // records that the user selected: from more than ten on
    Always, // maintenance
};

struct BulkResult {
    std::size_t done = 0;       // the first so many steps are done and lasting
    bool stopped = false;       // the user stopped it before its end, or did not let it begin
    std::u16string withoutCopy; // why there is no safety copy, where the act did not begin for that
    std::u16string failure;     // the provider's sentence and number, where it failed
    bool failed() const { return !failure.empty() || (!withoutCopy.empty() && !stopped); }
    // Everything was done.
    bool whole() const { return !stopped && !failed(); }
    // Why it failed; empty when it did not.
    std::u16string reason(const Notebook& notebook) const;
};

// That there is no safety copy, and why, in the language of the interface.
std::u16string withoutCopyText(const Notebook& notebook, const std::u16string& reason);

// What a step works with.
class BulkStep {
public:
    BulkStep(Connection& opened, Batches& batches, std::size_t number)
        : connection(opened)
        , index(number)
        , batches_(batches)
    {
    }

    Connection& connection;
    std::size_t index; // counted from 0

    // Does something during which the database must not be held, a question above all. Only while nothing
    // of this step is stored.
    template <typename Work>
    auto meanwhile(Work&& work)
    {
        batches_.finish();
        auto result = work();
        batches_.step();
        return result;
    }

private:
    Batches& batches_;
};

// Thrown by a step that could neither finish nor take back what it had begun: where the provider can, it
// is given up together with the steps that were not lasting yet.
struct HalfDone : ProviderError {
    explicit HalfDone(const ProviderError& cause)
        : ProviderError(cause)
    {
    }
};

// Takes `total` steps, on one connection of its own to the current database. A step throws ProviderError
// when the act cannot go on, and has then left nothing of itself. Nothing is thrown and nothing shown:
// whoever the user called tells the result.
BulkResult bulkAct(const Notebook& notebook, SafetyCopy copy, std::size_t total, const BulkUser& user,
    const std::function<void(BulkStep&)>& step);

// The safety copy alone, for an act in several parts: an empty result lets them begin.
BulkResult copyBefore(const Notebook& notebook, SafetyCopy copy, std::size_t total, const BulkUser& user);

} // namespace vellums

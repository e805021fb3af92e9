// The database is opened once before it is copied: that completes or takes back what a crash has left,
// and a copy of a file with a half-written statement would help nobody. It is copied while nobody has it
// open, and opened again for the work.
#include "store/records/bulkAct.h"

#include "store/databases/safetyCopy.h"

#include <cassert>
#include <new>
#include <optional>

namespace vellums {
namespace {

// Where the user selected a few records there is no copy: that of a large database would take longer than the
// act itself.
bool needsCopy(const Notebook& notebook, SafetyCopy copy, std::size_t total, const BulkUser& user)
{
    constexpr std::size_t kFew = 10;
    const bool many = copy == SafetyCopy::Always || (copy == SafetyCopy::OfMany && total > kFew);
    return many && user.safetyCopy && notebook.safetyCopies;
}

// Counts what is done and what of it is lasting.
struct Count {
    std::size_t done = 0;
    std::size_t lasting = 0;
};

// False: stopped before the end.
bool takeSteps(Connection& connection, Batches& batches, std::size_t total, const BulkUser& user,
    const std::function<void(BulkStep&)>& step, Count& count)
{
    while (count.done < total) {
        batches.step();
        BulkStep context(connection, batches, count.done);
        step(context);
        ++count.done;
        // Asked after the last step too, as this is how the progress is shown; a Stop then has nothing left
        // to stop.
        if (user.goesOn && !user.goesOn(count.done, total) && count.done < total)
            return false;
    }
    return true;
}

// The same, and the end of the last batch. What was not lasting when a step was left half done, or when
// there was no memory to finish it, is given up: half a record would help nobody.
bool takeLastingSteps(Connection& connection, Batches& batches, std::size_t total, const BulkUser& user,
    const std::function<void(BulkStep&)>& step, Count& count)
{
    try {
        const bool whole = takeSteps(connection, batches, total, user, step, count);
        batches.finish();
        return whole;
    } catch (const HalfDone&) {
        batches.giveUp();
        throw;
    } catch (const std::bad_alloc&) {
        batches.giveUp();
        throw;
    }
}

} // namespace

std::u16string withoutCopyText(const Notebook& notebook, const std::u16string& reason)
{
    return notebook.say(u"No safety copy of the database could be made: ", u"无法备份数据库: ") + reason;
}

std::u16string BulkResult::reason(const Notebook& notebook) const
{
    return !failure.empty() || !failed() ? failure : withoutCopyText(notebook, withoutCopy);
}

BulkResult copyBefore(const Notebook& notebook, SafetyCopy copy, std::size_t total, const BulkUser& user)
{
    BulkResult result;
    if (!needsCopy(notebook, copy, total, user))
        return result;
    try {
        notebook.connect();
    } catch (const ProviderError& e) {
        result.failure = reasonOf(e);
        return result;
    }
    const std::optional<std::u16string> refused = makeSafetyCopy(notebook);
    if (!refused || (user.goOnWithoutCopy && user.goOnWithoutCopy(*refused)))
        return result;
    result.withoutCopy = *refused;
    result.stopped = static_cast<bool>(user.goOnWithoutCopy);
    return result;
}

BulkResult bulkAct(const Notebook& notebook, SafetyCopy copy, std::size_t total, const BulkUser& user,
    const std::function<void(BulkStep&)>& step)
{
    BulkResult result;
    if (total != 0)
        result = copyBefore(notebook, copy, total, user);
    if (!result.whole())
        return result;
    Count count;
    try {
        const std::unique_ptr<Connection> connection = notebook.connect();
        Batches batches(*connection, [&] {
            assert(count.lasting <= count.done && count.done <= total);
            count.lasting = count.done;
            if (user.lasting)
                user.lasting(count.done);
        });
        result.stopped = !takeLastingSteps(*connection, batches, total, user, step, count);
    } catch (const ProviderError& e) {
        result.failure = reasonOf(e);
    } catch (const std::bad_alloc&) {
        if (count.lasting == 0)
            throw; // nothing has happened
        result.failure = notebook.say(u"There is not enough memory.", u"内存不足。");
    }
    // What was done and not made lasting has gone with the connection, or was made lasting by the end of the
    // batches; either way the last word is that of the callback.
    result.done = count.lasting;
    return result;
}

} // namespace vellums

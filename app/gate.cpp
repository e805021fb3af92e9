// The gate is open while none of three flags is up: busy_ (a command runs), held_ (a menu of the bar is
// open), shut_ (the window is going, for good). run() drops what comes while it is closed; runOrWait() keeps
// it in waiting_, one of each kind, served in the order of the kinds and not of their coming, so a close
// comes last.
//
// Whoever opens the gate does not serve what waits itself, but has the surroundings call serve() soon: the
// caller's stack, a menu's or a message box's, is to be gone by then. Everything runs on one thread; the
// flags guard against being called again from within, not against another thread.
#include "app/gate.h"

#include "platform/files.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <cassert>
#include <exception>
#include <new>

namespace vellums {
namespace {

std::u16string described(const std::exception& failure)
{
    if (const auto* refused = dynamic_cast<const ProviderError*>(&failure))
        return reasonOf(*refused);
    return text::fromUtf8(failure.what());
}

} // namespace

Gate::Gate(const Notebook& notebook, Outcome& outcome, Surroundings surroundings)
    : notebook_(notebook)
    , outcome_(outcome)
    , surroundings_(std::move(surroundings))
    , noMemory_(u"There is not enough memory for this command; the texts in the boxes are as they were.")
    , noMemoryChinese_(u"内存不足, 命令未能完成; 文本框中的内容未受影响。")
{
}

bool Gate::run(const Command& command)
{
    if (isBusy())
        return false;
    busy_ = true;
    carryOut(command);
    busy_ = false;
    if (!waiting_.empty() && !shut_)
        surroundings_.wake();
    return true;
}

void Gate::carryOut(const Command& command) noexcept
{
    assert(busy_);
    const std::u16string& noMemory = notebook_.chinese ? noMemoryChinese_ : noMemory_;
    try {
        try {
            command(Turn());
        } catch (const std::bad_alloc&) {
            outcome_.failed(noMemory);
        } catch (const std::exception& failure) {
            outcome_.failed(described(failure));
        } catch (const platform::FileError& failure) { // carries no sentence, and is no std::exception
            outcome_.failed(notebook_.say(u"A file could not be read or written", u"文件读写失败") + u" (" +
                text::decimal(failure.systemCode) + u")");
        }
        const std::u16string line = std::exchange(outcome_, {}).line(notebook_.chinese);
        if (!line.empty())
            surroundings_.show(line);
    } catch (...) { // no memory even to say so in the ordinary way
        outcome_ = {};
        showAnyway(noMemory);
    }
}

void Gate::showAnyway(const std::u16string& line) noexcept
{
    try {
        surroundings_.show(line);
    } catch (...) { // the panel keeps its text
    }
}

void Gate::runOrWait(Waiting kind, Command command)
{
    if (shut_)
        return;
    waiting_[kind] = std::move(command);
    serve();
}

void Gate::serve()
{
    while (!isBusy() && !waiting_.empty()) {
        const Command command = std::move(waiting_.begin()->second);
        waiting_.erase(waiting_.begin());
        run(command);
    }
}

void Gate::release()
{
    held_ = false;
    if (!waiting_.empty() && !isBusy())
        surroundings_.wake();
}

} // namespace vellums

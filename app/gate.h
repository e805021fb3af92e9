// One command at a time.
//
// A window is re-entered: a question, a pop-up menu and a yielding loop let messages through while a
// command runs, timers and posted ones among them. So every command, wherever it comes from, goes through
// the gate. While one runs, its questions included, no other begins: what comes is dropped, or waits where
// it must not be lost. When a command is over, the gate says what came of it, once.
//
// That nothing gets past the gate is kept by types: commands lie behind Gated, which opens to a Turn
// alone, and only the gate gives turns.
#pragma once

#include "store/notebook.h"

#include <cassert>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace vellums {

// Its holder runs inside the gate.
class Turn {
public:
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    friend class Gate;
    Turn() = default;
};

// What waits while another command runs, in the order in which it gets its turn. Of each kind one waits,
// the last.
enum class Waiting {
    Heading,  // the record of another list entry
    Search,   // a search that is due
    HandOver, // what another process has handed over
    Close,    // last: nothing comes behind it
};

class Gate {
public:
    using Command = std::function<void(const Turn&)>;

    // Where the gate is heard.
    struct Surroundings {
        std::function<void(const std::u16string& line)> show; // a command's outcome
        std::function<void()> wake; // something waits and nothing runs: serve() is to be called soon
    };

    // `outcome` is what the notebook's routines tell: notebook.status. Both outlive the gate.
    Gate(const Notebook& notebook, Outcome& outcome, Surroundings surroundings);
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    // Runs the command and shows its outcome. False: another runs, and nothing has happened. Whatever the
    // command throws (no memory included) ends here as its failure.
    bool run(const Command& command);
    // The same, but where another command runs this one waits for its turn, in the place of one of its kind;
    // what waits already and comes first is given its turn first.
    void runOrWait(Waiting kind, Command command);
    // Gives what waits its turn. Does nothing while a command runs.
    void serve();

    bool isBusy() const { return busy_ || held_ || shut_; }
    // While a menu of the bar is open: the entry that will be chosen was seen with what is shown now.
    void hold() { held_ = true; }
    void release();
    // Nothing begins any more: the window is going.
    void shut() { shut_ = true; }

private:
    void carryOut(const Command& command) noexcept;
    void showAnyway(const std::u16string& line) noexcept;

    const Notebook& notebook_;
    Outcome& outcome_;
    Surroundings surroundings_;
    bool busy_ = false;
    bool held_ = false;
    bool shut_ = false;
    std::map<Waiting, Command> waiting_;
    // Made beforehand: there may be no memory to make them when they are needed.
    const std::u16string noMemory_;
    const std::u16string noMemoryChinese_;
};

// Commands that only who has a turn can reach.
template <typename Commands>
class Gated {
public:
    template <typename... Arguments>
    void make(Arguments&&... arguments)
    {
        commands_ = std::make_unique<Commands>(std::forward<Arguments>(arguments)...);
    }
    bool isMade() const { return commands_ != nullptr; }

    Commands& operator()(const Turn&)
    {
        assert(isMade());
        return *commands_;
    }
    // To look at, at any time.
    const Commands& seen() const
    {
        assert(isMade());
        return *commands_;
    }

private:
    std::unique_ptr<Commands> commands_;
};

} // namespace vellums

// A step begins behind a unit (or at the start of the pattern) and follows Splits in order of preference
// without taking anything, until it meets a unit that the state of the place has, or the end of the pattern.
// The first of these is the answer: the automaton has said that from there a match is reached, so no later
// step can fail, and every way that was preferred to it has been seen to lead nowhere.
//
// The answer depends on where the step begins, on the state, and on the left neighbour if some assertion
// asks. It is worked out once (findWay) and then looked up: in a table with a row for each state of the
// automaton, or, where a pattern has too many places to begin at, in a small table by hash that forgets. Both
// go when the automaton gives up its states (useGeneration).
//
// Within a step a loop must not be passed without taking a unit. Way::fresh carries what Leave has to know:
// at the start of a step every loop around has just taken the unit before it; Enter makes its own loop, and
// with it all inside, fresh. Seen marks are kept for each instruction and value of fresh, so a step visits
// each pair once at most, and ends.
#include "regexp/match/walk.h"

#include <algorithm>
#include <cassert>

namespace vellums::regexp {

Walk::Walk(const Program& program)
    : program_(program)
    , column_(program.instructions.size(), 0)
{
    std::uint32_t marks = 0;
    for (const Instruction& instruction : program.instructions) {
        firstSeen_.push_back(marks);
        marks += instruction.depth + 1;
    }
    seenAt_.assign(marks, 0);
    // Ways begin at the start and behind units, nowhere else.
    std::vector<Place> origins = {program.start};
    for (const Place position : program.positions)
        origins.push_back(program.instructions[position].next);
    std::sort(origins.begin(), origins.end());
    origins.erase(std::unique(origins.begin(), origins.end()), origins.end());
    const std::uint32_t neighbours = program.asksBefore ? 4 : 1;
    if (origins.size() * neighbours > kWidest) {
        steps_.resize(kRemembered);
        return;
    }
    width_ = origins.size() * neighbours;
    for (std::uint32_t i = 0; i < origins.size(); ++i)
        column_[origins[i]] = i * neighbours;
}

std::size_t Walk::endOf(Guide& guide, std::size_t start)
{
    const State* const states = guide.allStates();
    if (states != nullptr && width_ != 0 && !program_.asksBefore)
        return endByTable(guide, start, states);
    const std::u16string_view text = guide.text();
    const auto leftOf = [&](std::size_t place) {
        if (!program_.asksBefore)
            return Beside::Nothing;
        return place == 0 ? Beside::Nothing : program_.beside(text[place - 1]);
    };
    Place at = program_.start;
    for (std::size_t place = start;; ++place) {
        const State state = guide.state(place);
        const Beside left = leftOf(place);
        const Place result = step(guide.automaton(), at, left, state);
        if (result == kAccepted)
            return place;
        // In a loop over alike places every step is the same.
        if (result == at) {
            const std::size_t end = guide.endOfRun(place);
            if (!program_.asksBefore)
                place = end - 1;
            while (place + 1 < end && leftOf(place + 1) == left)
                ++place;
        }
        at = result;
    }
}

// The same for the common case, in fewer steps.
std::size_t Walk::endByTable(Guide& guide, std::size_t start, const State* states)
{
    Automaton& automaton = guide.automaton();
    useGeneration(automaton);
    if (table_.size() < automaton.tableSize() + width_)
        table_.resize(automaton.tableSize() + width_, kUnknown);
    Place at = program_.start;
    for (std::size_t place = start;; ++place) {
        const State state = states[place + 1];
        Place& result = table_[state + column_[at]];
        if (result == kUnknown)
            result = findWay(automaton, at, Beside::Nothing, state);
        if (result == kAccepted)
            return place;
        if (result == at)
            while (states[place + 2] == state && place + 1 < guide.text().size())
                ++place;
        at = result;
    }
}

void Walk::useGeneration(const Automaton& automaton)
{
    if (generation_ == automaton.generation())
        return;
    generation_ = automaton.generation();
    table_.clear();
    std::fill(steps_.begin(), steps_.end(), Step());
}

Place Walk::step(Automaton& automaton, Place at, Beside left, State state)
{
    useGeneration(automaton);
    if (width_ == 0) {
        Step& step = steps_[(state * 31 + at * 7 + static_cast<std::uint32_t>(left)) % kRemembered];
        if (step.at != at || step.state != state || step.left != left)
            step = {at, state, left, findWay(automaton, at, left, state)};
        return step.result;
    }
    const std::size_t entry = state + column_[at] + static_cast<std::size_t>(left);
    if (entry >= table_.size())
        table_.resize(automaton.tableSize() + width_, kUnknown);
    Place& result = table_[entry];
    if (result == kUnknown)
        result = findWay(automaton, at, left, state);
    return result;
}

Place Walk::findWay(Automaton& automaton, Place at, Beside left, State state)
{
    if (!program_.lookAheads.empty())
        automaton.reach(state, left);
    if (++round_ == 0) {
        std::fill(seenAt_.begin(), seenAt_.end(), 0);
        round_ = 1;
    }
    const Beside right = automaton.rightOf(state);
    ways_.clear();
    push(at, 0);
    while (true) {
        assert(!ways_.empty());
        const Way way = ways_.back();
        ways_.pop_back();
        assert(way.fresh <= program_.instructions[way.place].depth);
        std::uint32_t& seen = seenAt_[firstSeen_[way.place] + way.fresh];
        if (seen == round_)
            continue;
        seen = round_;
        const Instruction& instruction = program_.instructions[way.place];
        if (instruction.op == Op::Accept)
            return kAccepted;
        if (instruction.op != Op::Unit)
            follow(way, automaton, left, right);
        else if (automaton.has(state, program_.positionOf[way.place]))
            return instruction.next;
    }
}

void Walk::follow(const Way& way, const Automaton& automaton, Beside left, Beside right)
{
    const Instruction& instruction = program_.instructions[way.place];
    const std::uint32_t fresh = way.fresh;
    switch (instruction.op) {
    case Op::Split:
        push(instruction.other, fresh);
        return push(instruction.next, fresh);
    case Op::Enter:
        return push(instruction.next, fresh == 0 ? instruction.value : std::min(fresh, instruction.value));
    case Op::Leave:
        if (fresh == 0 || fresh > instruction.value)
            push(instruction.next, fresh);
        return;
    case Op::Assert:
        if (holds(instruction.assertion, program_.multiline, left, right))
            push(instruction.next, fresh);
        return;
    case Op::Look:
        if (automaton.lookHolds(instruction.value))
            push(instruction.next, fresh);
        return;
    default:
        push(instruction.next, fresh);
    }
}

} // namespace vellums::regexp

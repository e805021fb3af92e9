#include "search/regExpWalk.h"

#include <algorithm>
#include <cassert>

namespace vellums::regexp {

Walk::Walk(const Program& program)
    : program_(program)
    , steps_(kRemembered)
{
    std::uint32_t marks = 0;
    for (const Instruction& instruction : program.instructions) {
        firstSeen_.push_back(marks);
        marks += instruction.depth + 1;
    }
    seenAt_.assign(marks, 0);
}

std::size_t Walk::endOf(Guide& guide, std::size_t start)
{
    const std::u16string_view text = guide.text();
    const auto leftOf = [&](std::size_t place) {
        if (!program_.asksBefore)
            return Beside::Other;
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

Place Walk::step(Automaton& automaton, Place at, Beside left, State state)
{
    if (generation_ != automaton.generation()) {
        generation_ = automaton.generation();
        std::fill(steps_.begin(), steps_.end(), Step());
    }
    Step& step = steps_[(state * 31 + at * 7 + static_cast<std::uint32_t>(left)) % kRemembered];
    if (step.at != at || step.state != state || step.left != left)
        step = {at, state, left, findWay(automaton, at, left, state)};
    return step.result;
}

Place Walk::findWay(Automaton& automaton, Place at, Beside left, State state)
{
    if (!program_.lookAheads.empty())
        automaton.reach(state, program_.asksBefore ? left : Beside::Other);
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

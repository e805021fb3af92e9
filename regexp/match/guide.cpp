// The automaton needs the text from its end, the matches are wanted from its beginning, and the states of all
// places of a long text would be four bytes for each unit. So the text is read twice: take() reads block
// after block from the last to the first, and keeps of each no more than the state at its right end and
// whether a match begins in it; begin() and state() read a block again when it is asked for, and pass over
// blocks in which no match begins. As places are asked for from left to right, no block is read a third time.
//
// Between two blocks the automaton may give up all its states. What crosses from one block to another is
// therefore kept as words (KeptState), never as a number. A border between two blocks belongs to both: its
// state is the last of the left block and is at hand without reading the right one.
//
// Back-tracking goes back and forth and needs all places at once, which takeWhole() gives as long as the
// automaton stays small enough to keep every state.
#include "regexp/match/guide.h"

#include <algorithm>
#include <cassert>

namespace vellums::regexp {

Guide::Guide(const Program& program, std::size_t width)
    : automaton_(program, width)
    , blockLength_(automaton_.placesPerBlock())
{
}

bool Guide::take(std::u16string_view text, Effort& effort)
{
    text_ = text;
    effort_ = &effort;
    blocks_.clear();
    if (automaton_.large())
        automaton_.clear();
    if (states_.size() < std::min(text.size(), blockLength_) + 2)
        states_.resize(std::min(text.size(), blockLength_) + 2);
    if (text.size() <= blockLength_) {
        from_ = 0;
        to_ = text.size();
        begins_ = automaton_.read(text, 0, to_, automaton_.atEnd(), states_.data(), *effort_);
        return begins_;
    }
    const std::size_t count = (text.size() + blockLength_ - 1) / blockLength_;
    blocks_.resize(count);
    blocks_.back().right = automaton_.keep(automaton_.atEnd());
    bool begins = false;
    for (std::size_t number = count; number-- > 0;) {
        readBlock(number);
        blocks_[number].begins = begins_;
        begins = begins || begins_;
        if (number > 0)
            blocks_[number - 1].right = automaton_.keep(states_[1]);
    }
    return begins;
}

std::optional<bool> Guide::takeWhole(std::u16string_view text, Effort& effort)
{
    effort_ = &effort;
    if (automaton_.large())
        automaton_.clear();
    text_ = text;
    blocks_.clear();
    states_.resize(std::max(states_.size(), text.size() + 2));
    State right = automaton_.atEnd();
    bool begins = false;
    std::size_t to = text.size();
    do {
        const std::size_t from = to > blockLength_ ? to - blockLength_ : 0;
        begins = automaton_.read(text, from, to, right, states_.data() + from, *effort_) || begins;
        right = states_[from + 1];
        to = from;
        if (automaton_.large() && to > 0)
            return std::nullopt;
    } while (to > 0);
    from_ = 0;
    to_ = text.size();
    begins_ = begins;
    return begins;
}

void Guide::readBlock(std::size_t number)
{
    if (automaton_.large())
        automaton_.clear();
    from_ = number * blockLength_;
    to_ = std::min(from_ + blockLength_, text_.size());
    begins_ = automaton_.read(
        text_, from_, to_, automaton_.bringBack(blocks_[number].right), states_.data(), *effort_);
}

void Guide::toBlockOf(std::size_t place)
{
    assert(!blocks_.empty() && place <= text_.size());
    readBlock(std::min(place / blockLength_, blocks_.size() - 1));
}

std::optional<std::size_t> Guide::begin(std::size_t place)
{
    assert(place >= from_);
    while (place <= text_.size()) {
        if (place > to_) {
            const std::size_t number = std::min(place / blockLength_, blocks_.size() - 1);
            if (!blocks_[number].begins) {
                place = std::min((number + 1) * blockLength_, text_.size()) + 1;
                continue;
            }
            readBlock(number);
        }
        if (begins_) {
            const State* const first = states_.data() + (place - from_);
            const State* const last = states_.data() + (to_ - from_) + 1;
            const State* const found = std::find_if(first, last, beginsBehind);
            if (found != last)
                return place + static_cast<std::size_t>(found - first);
        }
        place = to_ + 1;
    }
    return std::nullopt;
}

std::size_t Guide::endOfRun(std::size_t place) const
{
    const State* const first = states_.data() + (place - from_ + 1);
    const State* const last = states_.data() + (to_ - from_) + 1;
    const State value = *first;
    const State* now = first + 1;
    while (now < last && *now == value)
        ++now;
    return place + static_cast<std::size_t>(now - first);
}

} // namespace vellums::regexp

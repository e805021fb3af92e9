#include "regexp/match/guide.h"

#include <algorithm>

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
    readBlock(std::min(place / blockLength_, blocks_.size() - 1));
}

std::optional<std::size_t> Guide::begin(std::size_t place)
{
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

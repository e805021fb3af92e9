// The present way is at_ and place_; entries_ holds what to do when it fails, the latest on top. Kept true:
// the entries above a choice undo everything that was changed since the choice was left open, so that after
// going back to it all slots are as they were then. There are three kinds of entries:
//
//   what                        value                on going back
//   kRestore | slot             its old value        the slot gets it again, and going back goes on
//   an instruction              a place in the text  the way goes on there
//   a Look instruction whose    the place it asks    the look-ahead has no way left: a positive one fails, a
//   entry stands in looks_                           negative one holds, and the way goes on behind it
//
// A Look instruction may also be an ordinary choice, where a Split leads to one; looks_ tells the two apart.
// Slots are those of the groups, two each, then one for each depth of loops with the place where its present
// pass began.
//
// Loops end because Leave refuses a pass that took nothing. The number of ways is bounded by nothing but the
// effort: a reference can make the right one the last of exponentially many. The automaton cuts most of them
// off, for it takes a reference for any text its group could hold, and what fails even so fails for certain.
#include "regexp/match/backtrack.h"

#include <algorithm>
#include <cassert>

namespace vellums::regexp {
namespace {

constexpr std::size_t kMostEntries = 16U << 20; // 128 MiB

} // namespace

Backtrack::Backtrack(const Program& program)
    : program_(program)
    , unitAhead_(program.instructions.size(), kUnset)
    , slots_(program.slots + program.deepest + 1, kUnset)
{
    // What these instructions are followed by was made before them.
    for (Place i = 0; i < program.instructions.size(); ++i) {
        const Instruction& instruction = program.instructions[i];
        if (instruction.op == Op::Unit)
            unitAhead_[i] = program.positionOf[i];
        else if (instruction.op == Op::Save || instruction.op == Op::Forget || instruction.op == Op::Enter)
            unitAhead_[i] = unitAhead_[instruction.next];
    }
}

std::optional<std::size_t> Backtrack::endOf(
    std::u16string_view text, std::size_t start, Guide* guide, Effort& effort)
{
    text_ = text;
    guide_ = guide;
    effort_ = &effort;
    begin(program_.start, start);
    std::size_t steps = 0;
    bool found = true;
    while (!done_ && found) {
        ++steps;
        if (steps % 256 == 0)
            effort.spendTrying(256);
        if (!step())
            found = goBack();
    }
    effort.spendTrying(steps % 256);
    if (!found)
        return std::nullopt;
    return place_;
}

void Backtrack::begin(Place place, std::size_t start)
{
    std::fill(slots_.begin(), slots_.end(), kUnset);
    entries_.clear();
    looks_.clear();
    at_ = place;
    place_ = static_cast<std::uint32_t>(start);
    done_ = false;
}

void Backtrack::push(std::uint32_t what, std::uint32_t value)
{
    if (entries_.size() >= kMostEntries)
        throw RegExpError(RegExpFault::OutOfMemory, {});
    entries_.push_back({what, value});
}

void Backtrack::change(std::uint32_t slot, std::uint32_t value)
{
    if (slots_[slot] == value)
        return;
    push(kRestore | slot, slots_[slot]);
    assert(slot < slots_.size() && (slot & kRestore) == 0);
    slots_[slot] = value;
}

bool Backtrack::mayTake(std::uint32_t position)
{
    if (guide_ != nullptr)
        return guide_->automaton().has(guide_->state(place_), position);
    const Instruction& unit = program_.instructions[program_.positions[position]];
    return place_ < text_.size() && program_.setHolds[unit.value][program_.alphabet.of(text_[place_])];
}

// False: the way from here fails at its first unit.
bool Backtrack::promises(Place place)
{
    return unitAhead_[place] == kUnset || mayTake(unitAhead_[place]);
}

bool Backtrack::step()
{
    const Instruction& instruction = program_.instructions[at_];
    switch (instruction.op) {
    case Op::Split:
        split(instruction);
        return true;
    case Op::Look:
        look(instruction);
        return true;
    case Op::Accept:
        return accept(instruction);
    case Op::Unit:
        if (!mayTake(program_.positionOf[at_]))
            return false;
        ++place_;
        break;
    case Op::Assert:
        if (!holdsHere(instruction.assertion))
            return false;
        break;
    case Op::BackReference:
        if (!reference(instruction.value))
            return false;
        break;
    case Op::Save:
        change(instruction.value, place_);
        // A group that begins anew holds nothing until it ends.
        if (instruction.value % 2 == 0)
            change(instruction.value + 1, kUnset);
        break;
    case Op::Forget:
        for (std::uint32_t slot = instruction.value; slot < instruction.other; ++slot)
            change(slot, kUnset);
        break;
    case Op::Enter:
        change(program_.slots + instruction.value, place_);
        break;
    case Op::Leave:
        if (slots_[program_.slots + instruction.value] == place_)
            return false;
        break;
    }
    at_ = instruction.next;
    return true;
}

void Backtrack::split(const Instruction& instruction)
{
    if (!promises(instruction.next)) {
        at_ = instruction.other;
        return;
    }
    if (promises(instruction.other))
        push(instruction.other, place_);
    at_ = instruction.next;
}

void Backtrack::look(const Instruction& instruction)
{
    looks_.push_back(static_cast<std::uint32_t>(entries_.size()));
    push(at_, place_);
    at_ = program_.lookAheads[instruction.value].entry;
}

bool Backtrack::holdsHere(Assertion assertion) const
{
    const Beside left = place_ == 0 ? Beside::Nothing : program_.beside(text_[place_ - 1]);
    const Beside right = place_ == text_.size() ? Beside::Nothing : program_.beside(text_[place_]);
    return holds(assertion, program_.multiline, left, right);
}

// A look-ahead that holds keeps its groups and gives up its other ways; one that was to fail, and did
// not, undoes everything.
bool Backtrack::accept(const Instruction& instruction)
{
    if (instruction.graph == 0) {
        done_ = true;
        return true;
    }
    assert(!looks_.empty() && looks_.back() < entries_.size());
    const std::size_t first = looks_.back();
    looks_.pop_back();
    const Entry begun = entries_[first];
    const Instruction& look = program_.instructions[begun.what];
    effort_->spendTrying((entries_.size() - first) / 16);
    if (program_.lookAheads[look.value].negative) {
        while (entries_.size() > first + 1) {
            const Entry entry = entries_.back();
            entries_.pop_back();
            if ((entry.what & kRestore) != 0)
                slots_[entry.what & ~kRestore] = entry.value;
        }
        entries_.pop_back();
        return false;
    }
    const auto begin = entries_.begin() + static_cast<std::ptrdiff_t>(first);
    entries_.erase(std::remove_if(begin, entries_.end(),
                       [](const Entry& entry) { return (entry.what & kRestore) == 0; }),
        entries_.end());
    at_ = look.next;
    place_ = begun.value;
    return true;
}

bool Backtrack::goBack()
{
    while (!entries_.empty()) {
        const Entry entry = entries_.back();
        entries_.pop_back();
        if ((entry.what & kRestore) != 0) {
            slots_[entry.what & ~kRestore] = entry.value;
            continue;
        }
        place_ = entry.value;
        const Instruction& instruction = program_.instructions[entry.what];
        if (instruction.op != Op::Look || looks_.empty() || looks_.back() != entries_.size()) {
            at_ = entry.what;
            return true;
        }
        // The look-ahead has no way left.
        looks_.pop_back();
        if (program_.lookAheads[instruction.value].negative) {
            at_ = instruction.next;
            return true;
        }
    }
    return false;
}

// A group that is unset or still open holds the empty text.
bool Backtrack::reference(std::uint32_t group)
{
    const std::uint32_t from = slots_[2 * group];
    const std::uint32_t to = slots_[2 * group + 1];
    if (from == kUnset || to == kUnset)
        return true;
    const std::uint32_t length = to - from;
    if (length > text_.size() - place_)
        return false;
    effort_->spendTrying(length / 16);
    for (std::uint32_t i = 0; i < length; ++i) {
        const char16_t a = text_[from + i];
        const char16_t b = text_[place_ + i];
        if (a != b && (!program_.ignoreCase || folded(a) != folded(b)))
            return false;
    }
    place_ += length;
    return true;
}

} // namespace vellums::regexp

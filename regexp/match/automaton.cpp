// The automaton is made of the pattern read backwards, a state at a time, as the texts ask for states. What
// holds at a place of the text when its state is known:
//
//   - Bit p of the state: the unit at this place can be taken by position p, and from behind it the end of
//     the pattern (or of the look-ahead that p belongs to) is reached in this very text.
//   - The last word: what stands at the place, as far as assertions ask (bits 0 and 1, a Beside), and whether
//     a match can begin at the place BEHIND this one (bit 2). That is told one place late because it depends
//     on the left neighbour of the place, which is read only now.
//
// A step from the place i + 1 to the place i first spreads from every Accept, and from the positions that can
// be taken at i + 1, backwards over the instructions that take nothing (reach); the positions that lead to an
// instruction reached, and whose set has the unit at i, are the state at i (next). A match may end anywhere,
// so the Accepts are spread from at every place.
//
// The table has a row for each state and a column for each class of units, and one more for "the text begins
// here". A state is the index of its row, plus one where bit 2 is set, so a step is one addition and one
// look:
//
//   table_    | unused row | row of the first state            | row of the second ...
//               0            stride_                             2 * stride_
//   entry       table_[state + symbol]; 0: this step has not been taken yet
//
// A step that has been taken costs a few nanoseconds; a new one costs up to the size of the program, which is
// charged to the effort. There can be as many states as there are subsets of the positions: nothing is gained
// by making them beforehand, and whoever reads long texts has to look at large() and clear().
#include "regexp/match/automaton.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace vellums::regexp {
namespace {

constexpr std::size_t kFirstHash = 64;
constexpr std::uint64_t kBegins = 4; // in the last word of a state, over what stands to the right

std::size_t hashOf(const std::uint64_t* words, std::size_t count)
{
    std::uint64_t hash = 0x9E3779B97F4A7C15;
    for (std::size_t i = 0; i < count; ++i) {
        hash = (hash ^ words[i]) * 0xFF51AFD7ED558CCD;
        hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
}

} // namespace

Automaton::Automaton(const Program& program, std::size_t width)
    : program_(program)
    , startSymbol_(program.alphabet.size())
    , strideBits_(std::bit_width(std::max<std::size_t>(program.alphabet.size() + 1, width) + 1))
    , stride_(std::size_t{1} << strideBits_)
    , wordCount_(program.positions.size() / 64 + 2)
    , acceptOf_(program.lookAheads.size() + 1)
    , reachedAt_(program.instructions.size(), 0)
{
    for (Place i = 0; i < program.instructions.size(); ++i)
        if (program.instructions[i].op == Op::Accept)
            acceptOf_[program.instructions[i].graph] = i;
    clear();
    nothingStays_ = endsWithNothing();
    clear();
}

void Automaton::clear()
{
    // No state has the number 0, so that a 0 in the table means a step not taken yet.
    table_.assign(stride_, 0);
    pool_.assign(wordCount_, 0);
    hash_.assign(kFirstHash, 0);
    count_ = 1;
    reachedFor_ = 0;
    nothing_ = 0;
    end_ = 0;
    ++generation_;
}

// Whether a place where no position can be taken makes all places left of it such places, and none of them
// begins a match. It is tried with every pair of neighbours, except that nothing stands to the right: that is
// the end of the text, from which matches are reached.
bool Automaton::endsWithNothing()
{
    for (const Beside right : {Beside::Word, Beside::LineEnd, Beside::Other}) {
        std::vector<std::uint64_t> words(wordCount_, 0);
        words.back() = static_cast<std::uint64_t>(right);
        const State state = stateOf(words);
        for (const Beside left : {Beside::Nothing, Beside::Word, Beside::LineEnd, Beside::Other}) {
            reach(state, left);
            const bool takes = std::any_of(reached_.begin(), reached_.end(), [this](Place place) {
                return program_.firstUnitBefore[place] != program_.firstUnitBefore[place + 1];
            });
            if (takes || reaches(program_.start))
                return false;
        }
    }
    return true;
}

// Each place makes one state at most. Whoever clears a large table before a block therefore never has much
// more than twice kLarge.
std::size_t Automaton::placesPerBlock() const
{
    constexpr std::size_t kMost = 65536;
    return std::clamp<std::size_t>(kLarge / (stride_ * sizeof(State)), 64, kMost);
}

State Automaton::atEnd()
{
    if (end_ == 0) {
        std::vector<std::uint64_t> words(wordCount_, 0);
        words.back() = static_cast<std::uint64_t>(Beside::Nothing);
        end_ = stateOf(words);
    }
    return end_;
}

Beside Automaton::rightOf(State state) const
{
    return static_cast<Beside>(pool_[wordsOf(state) + wordCount_ - 1] & 3);
}

KeptState Automaton::keep(State state) const
{
    const auto begin = pool_.begin() + static_cast<std::ptrdiff_t>(wordsOf(state));
    return {{begin, begin + static_cast<std::ptrdiff_t>(wordCount_)}};
}

State Automaton::bringBack(const KeptState& kept)
{
    return stateOf(kept.words);
}

// The one state with these words. Equal words always give the same number until the next clear(): steps are
// compared, and loops over alike places are noticed, by the number alone. The hash table is at most half
// full, so a search for a free slot ends.
State Automaton::stateOf(const std::vector<std::uint64_t>& words)
{
    assert(words.size() == wordCount_);
    if (count_ * 2 > hash_.size())
        growHash();
    std::size_t slot = hashOf(words.data(), wordCount_) & (hash_.size() - 1);
    for (; hash_[slot] != 0; slot = (slot + 1) & (hash_.size() - 1)) {
        const auto begin = pool_.begin() + static_cast<std::ptrdiff_t>(wordsOf(hash_[slot]));
        if (std::equal(words.begin(), words.end(), begin))
            return hash_[slot];
    }
    const std::size_t row = count_++ * stride_;
    if (row + stride_ > 0x7FFFFFFF)
        throw RegExpError(RegExpFault::OutOfMemory, {});
    table_.resize(row + stride_, 0);
    pool_.insert(pool_.end(), words.begin(), words.end());
    hash_[slot] = static_cast<State>(row) + ((words.back() & kBegins) != 0 ? 1 : 0);
    return hash_[slot];
}

void Automaton::growHash()
{
    std::vector<State> old(hash_.size() * 2, 0);
    old.swap(hash_);
    for (const State state : old) {
        if (state == 0)
            continue;
        std::size_t slot = hashOf(pool_.data() + wordsOf(state), wordCount_) & (hash_.size() - 1);
        while (hash_[slot] != 0)
            slot = (slot + 1) & (hash_.size() - 1);
        hash_[slot] = state;
    }
}

bool Automaton::lookHolds(std::uint32_t lookAhead) const
{
    const LookAhead& look = program_.lookAheads[lookAhead];
    return look.unknown || reaches(look.entry) != look.negative;
}

// Inner look-aheads first: whether they hold is known when the instructions that ask are met. Positions are
// numbered in the same order, so one pass over the words of the state meets them graph by graph.
void Automaton::reach(State state, Beside left)
{
    if (reachedFor_ == state && reachedLeft_ == left)
        return;
    reachedFor_ = state;
    reachedLeft_ = left;
    if (++round_ == 0) {
        std::fill(reachedAt_.begin(), reachedAt_.end(), 0);
        round_ = 1;
    }
    reached_.clear();
    const Beside right = rightOf(state);
    const std::uint64_t* words = pool_.data() + wordsOf(state);
    std::size_t word = 0;
    std::uint64_t bits = words[0];
    for (std::uint32_t graph = static_cast<std::uint32_t>(acceptOf_.size()); graph-- > 0;) {
        spread(acceptOf_[graph], left, right);
        for (; word + 1 < wordCount_; bits = ++word + 1 < wordCount_ ? words[word] : 0) {
            while (bits != 0) {
                const std::size_t position = word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
                const Place place = program_.positions[position];
                if (program_.instructions[place].graph != graph)
                    break;
                bits &= bits - 1;
                spread(place, left, right);
            }
            if (bits != 0)
                break;
        }
    }
}

void Automaton::spread(Place place, Beside left, Beside right)
{
    if (reachedAt_[place] == round_)
        return;
    reachedAt_[place] = round_;
    pending_.assign(1, place);
    while (!pending_.empty()) {
        const Place next = pending_.back();
        pending_.pop_back();
        reached_.push_back(next);
        for (std::uint32_t i = program_.firstBefore[next]; i < program_.firstBefore[next + 1]; ++i) {
            const Place before = program_.before[i];
            if (reachedAt_[before] == round_)
                continue;
            const Instruction& instruction = program_.instructions[before];
            if (instruction.op == Op::Assert &&
                !holds(instruction.assertion, program_.multiline, left, right))
                continue;
            if (instruction.op == Op::Look && !lookHolds(instruction.value))
                continue;
            reachedAt_[before] = round_;
            pending_.push_back(before);
        }
    }
}

State Automaton::next(State state, std::uint32_t symbol, Effort& effort)
{
    assert(state != 0 && symbol <= startSymbol_);
    const Beside left = symbol == startSymbol_ ? Beside::Nothing : program_.besideOfClass[symbol];
    reach(state, left);
    effort.spend((reached_.size() * 4 + wordCount_ + stride_) / 4 + 16);
    std::vector<std::uint64_t> words(wordCount_, 0);
    if (symbol != startSymbol_) {
        for (const Place place : reached_) {
            for (std::uint32_t i = program_.firstUnitBefore[place]; i < program_.firstUnitBefore[place + 1];
                 ++i) {
                const std::uint32_t position = program_.unitsBefore[i];
                const Instruction& unit = program_.instructions[program_.positions[position]];
                if (program_.setHolds[unit.value][symbol])
                    words[position / 64] |= std::uint64_t{1} << (position % 64);
            }
        }
    }
    words.back() = static_cast<std::uint64_t>(left) | (reaches(program_.start) ? kBegins : 0);
    // Once nothing can be taken, what stands to the right no longer matters: there is one such state,
    // whatever the neighbour, and read() ends with it.
    const bool nothing = nothingStays_ && symbol != startSymbol_ && !reaches(program_.start) &&
        std::all_of(words.begin(), words.end() - 1, [](std::uint64_t word) { return word == 0; });
    if (nothing)
        words.back() = static_cast<std::uint64_t>(Beside::Other);
    const State result = stateOf(words);
    if (nothing)
        nothing_ = result;
    table_[state + symbol] = result;
    return result;
}

bool Automaton::read(
    std::u16string_view text, std::size_t from, std::size_t to, State right, State* states, Effort& effort)
{
    assert(right != 0 && from <= to && to <= text.size());
    const ClassNo* const classes = program_.alphabet.table();
    const State* table = table_.data();
    State state = right;
    State met = 0;
    states[to - from + 1] = right;
    for (std::size_t i = to; i-- > from;) {
        const std::uint32_t symbol = classes[text[i]];
        State following = table[state + symbol];
        if (following == 0) {
            following = next(state, symbol, effort);
            table = table_.data();
        }
        state = following;
        met |= state;
        states[i - from + 1] = state;
        if (state == nothing_) {
            std::fill(states, states + (i - from + 1), state);
            return (met & 1) != 0;
        }
    }
    const std::uint32_t symbol = from == 0 ? startSymbol_ : classes[text[from - 1]];
    const State before = table[state + symbol];
    states[0] = before != 0 ? before : next(state, symbol, effort);
    return ((met | states[0]) & 1) != 0;
}

} // namespace vellums::regexp

// Reads a text from its end to its beginning and tells, for every place, which units of the pattern can
// be taken there so that a match is still reached, and whether a match can begin there.
//
// A state is a set of such units (positions of the program), together with what stands to the right of
// the place. States are made when they are first met; the step from one to the next is then a look into
// a table. Look-aheads are parts of the same set, so they cost no run of their own.
#pragma once

#include "regexp/match/effort.h"
#include "regexp/parse/program.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vellums::regexp {

// Where the state's row of the table begins. Rows of states behind whose unit a match can begin lie at
// odd numbers, the others at even ones, so both facts come with one addition.
using State = std::uint32_t;

inline bool beginsBehind(State state)
{
    return (state & 1) != 0;
}

// A state apart from the table, which may be given up.
struct KeptState {
    std::vector<std::uint64_t> words;
};

class Automaton {
public:
    // Rows are at least `width` wide, so that others can keep tables of that width by state.
    Automaton(const Program& program, std::size_t width);

    State atEnd(); // behind the last unit of a text

    // Reads text[from, to) from right to left, `right` being the state at `to`. Writes the state at each
    // place i to states[i - from + 1], `right` included, and to states[0] that before `from`, which
    // only tells whether a match can begin there. So places have their states at i + 1 and begin
    // matches by beginsBehind(states[i]). True: a match can begin somewhere.
    bool read(std::u16string_view text, std::size_t from, std::size_t to, State right, State* states,
        Effort& effort);

    // Whether the position (a Unit instruction) can be taken.
    bool has(State state, std::uint32_t position) const
    {
        const std::size_t word = wordsOf(state) + position / 64;
        return (pool_[word] >> (position % 64) & 1) != 0;
    }
    Beside rightOf(State state) const;

    // Works out from which instructions the end is reached at a place with this state and left
    // neighbour; reaches() then tells.
    void reach(State state, Beside left);
    bool reaches(Place place) const { return reachedAt_[place] == round_; }
    bool lookHolds(std::uint32_t lookAhead) const;

    bool large() const { return table_.size() * sizeof(State) + pool_.size() * 8 > kLarge; }
    KeptState keep(State state) const;
    State bringBack(const KeptState& kept);
    void clear(); // gives up all states
    std::size_t tableSize() const { return table_.size(); }
    std::size_t generation() const { return generation_; } // another one after each clear()
    std::size_t placesPerBlock() const;                    // so many states fill a table at most

private:
    static constexpr std::size_t kLarge = 64U << 20;

    std::size_t numberOf(State state) const { return state >> strideBits_; }
    std::size_t wordsOf(State state) const { return numberOf(state) * wordCount_; }
    State next(State state, std::uint32_t symbol, Effort& effort);
    State stateOf(const std::vector<std::uint64_t>& words);
    void spread(Place place, Beside left, Beside right);
    bool endsWithNothing();
    void growHash();

    const Program& program_;
    std::uint32_t startSymbol_;
    std::size_t strideBits_;
    std::size_t stride_;    // a power of two
    std::size_t wordCount_; // of a state: the positions, then a word with what stands to the right
    std::vector<State> table_;
    std::vector<std::uint64_t> pool_;
    std::vector<State> hash_;
    std::size_t count_ = 0;
    std::size_t generation_ = 0;

    // Where nothing can be taken any more nothing ever can, as in patterns that end with "$": there is
    // one such state, and what stands left of it need not be read.
    bool nothingStays_ = false;
    State nothing_ = 0; // 0: not met yet
    State end_ = 0;     // the same

    std::vector<Place> acceptOf_; // by graph
    std::vector<std::uint32_t> reachedAt_;
    std::uint32_t round_ = 0;
    State reachedFor_ = 0;
    Beside reachedLeft_ = Beside::Nothing;
    std::vector<Place> pending_;
    std::vector<Place> reached_;
};

} // namespace vellums::regexp

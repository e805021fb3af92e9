// Follows the preferred match forwards. The automaton has told for every place which units lead to a
// match, so the first way in order of preference that is not hopeless is the right one: nothing is ever
// taken back. For patterns without back references.
#pragma once

#include "regexp/match/guide.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vellums::regexp {

class Walk {
public:
    explicit Walk(const Program& program);

    // How wide the rows of the automaton must be.
    std::size_t width() const { return width_; }
    // Where the match that begins at `start` ends; one begins there.
    std::size_t endOf(Guide& guide, std::size_t start);

private:
    static constexpr Place kAccepted = 0xFFFFFFFF;
    static constexpr Place kUnknown = 0xFFFFFFFE;
    static constexpr std::size_t kWidest = 256;
    static constexpr std::size_t kRemembered = 1024;

    // What was once found: from `at`, with this left neighbour and state, the way leads to `result`.
    // Where few places begin steps every step has an entry of its own, beside the automaton's table.
    struct Step {
        Place at = kAccepted;
        State state = 0;
        Beside left = Beside::Nothing;
        Place result = 0;
    };
    // A place on the way within one place of the text. Of the loops around it, those from number
    // `fresh` on have taken nothing in their present pass; 0: all have.
    struct Way {
        Place place;
        std::uint32_t fresh;
    };

    std::size_t endByTable(Guide& guide, std::size_t start, const State* states);
    void useGeneration(const Automaton& automaton);
    Place step(Automaton& automaton, Place at, Beside left, State state);
    Place findWay(Automaton& automaton, Place at, Beside left, State state);
    void follow(const Way& way, const Automaton& automaton, Beside left, Beside right);
    void push(Place place, std::uint32_t fresh) { ways_.push_back({place, fresh}); }

    const Program& program_;
    std::size_t width_ = 0;             // 0: too many places begin steps
    std::vector<std::uint32_t> column_; // by instruction: where its steps stand in a row
    std::vector<Place> table_;          // by state and column and left neighbour; kUnknown at first
    std::vector<Step> steps_;           // where too many places begin steps
    std::size_t generation_ = 0;
    std::vector<Way> ways_;
    std::vector<std::uint32_t> firstSeen_; // by instruction: where its marks in seenAt_ begin
    std::vector<std::uint32_t> seenAt_;    // by instruction and value of fresh
    std::uint32_t round_ = 0;
};

} // namespace vellums::regexp

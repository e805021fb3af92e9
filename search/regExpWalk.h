// Follows the preferred match forwards. The automaton has told for every place which units lead to a
// match, so the first way in order of preference that is not hopeless is the right one: nothing is ever
// taken back. For patterns without back references.
#pragma once

#include "search/regExpGuide.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vellums::regexp {

class Walk {
public:
    explicit Walk(const Program& program);

    // Where the match that begins at `start` ends; one begins there.
    std::size_t endOf(Guide& guide, std::size_t start);

private:
    static constexpr Place kAccepted = 0xFFFFFFFF;
    static constexpr std::size_t kRemembered = 1024;

    // What was once found: from `at`, with this left neighbour and state, the way leads to `result`.
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

    Place step(Automaton& automaton, Place at, Beside left, State state);
    Place findWay(Automaton& automaton, Place at, Beside left, State state);
    void follow(const Way& way, const Automaton& automaton, Beside left, Beside right);
    void push(Place place, std::uint32_t fresh) { ways_.push_back({place, fresh}); }

    const Program& program_;
    std::vector<Step> steps_;
    std::size_t generation_ = 0;
    std::vector<Way> ways_;
    std::vector<std::uint32_t> firstSeen_; // by instruction: where its marks in seenAt_ begin
    std::vector<std::uint32_t> seenAt_;    // by instruction and value of fresh
    std::uint32_t round_ = 0;
};

} // namespace vellums::regexp

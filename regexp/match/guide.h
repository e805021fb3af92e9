// The automaton's states for the places of one text, in blocks, so that a long text needs memory for one
// block and little more. Blocks are asked for from left to right.
#pragma once

#include "regexp/match/automaton.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace vellums::regexp {

class Guide {
public:
    Guide(const Program& program, std::size_t width); // see Automaton

    // Takes another text; text and allowance must outlive its use. False: there is no match in it.
    bool take(std::u16string_view text, Effort& effort);
    // The same without blocks: all places stay at hand. Nothing where that would need too many states.
    std::optional<bool> takeWhole(std::u16string_view text, Effort& effort);

    // The first place from `place` on where a match can begin. Never asks for a place left of an
    // earlier one.
    std::optional<std::size_t> begin(std::size_t place);
    State state(std::size_t place)
    {
        if (place > to_)
            toBlockOf(place);
        return states_[place - from_ + 1];
    }
    // The states of all places, that of place i at i + 1, when the text is one block; null otherwise.
    const State* allStates() const { return from_ == 0 && to_ == text_.size() ? states_.data() : nullptr; }
    // The first place behind `place` whose state differs from that of `place`, or that the block ends with.
    std::size_t endOfRun(std::size_t place) const;

    Automaton& automaton() { return automaton_; }
    std::u16string_view text() const { return text_; }

private:
    struct Block {
        KeptState right;
        bool begins;
    };

    void toBlockOf(std::size_t place);
    void readBlock(std::size_t number);

    Automaton automaton_;
    Effort* effort_ = nullptr;
    std::u16string_view text_;
    std::size_t blockLength_ = 0;
    std::vector<Block> blocks_; // of a text longer than one block
    std::size_t from_ = 0;
    std::size_t to_ = 0;
    bool begins_ = false;
    std::vector<State> states_;
};

} // namespace vellums::regexp

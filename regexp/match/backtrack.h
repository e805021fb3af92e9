// Tries one way after the other, as patterns with back references require. Where the automaton knows
// that a unit leads nowhere the way is given up at once; how much may be tried is bounded by the effort.
#pragma once

#include "regexp/match/guide.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vellums::regexp {

class Backtrack {
public:
    explicit Backtrack(const Program& program);

    // Where the match that begins at `start` ends; nothing when none does. `guide` has taken the whole
    // text, or is null. Throws RegExpError 7 when the effort is spent.
    std::optional<std::size_t> endOf(
        std::u16string_view text, std::size_t start, Guide* guide, Effort& effort);

private:
    static constexpr std::uint32_t kUnset = 0xFFFFFFFF;
    static constexpr std::uint32_t kRestore = 0x80000000; // with the number of a slot or a loop

    // What to do when the present way fails: go on at an instruction, give a slot its old value, or,
    // at a Look instruction, end that look-ahead.
    struct Entry {
        std::uint32_t what;
        std::uint32_t value;
    };

    void begin(Place place, std::size_t start);
    bool step();   // false: this way fails
    bool goBack(); // false: no way is left
    void split(const Instruction& instruction);
    void look(const Instruction& instruction);
    bool holdsHere(Assertion assertion) const;
    bool accept(const Instruction& instruction);
    void push(std::uint32_t what, std::uint32_t value);
    void change(std::uint32_t slot, std::uint32_t value);
    bool reference(std::uint32_t group);
    bool mayTake(std::uint32_t position);
    bool promises(Place place);

    const Program& program_;
    std::vector<std::uint32_t> unitAhead_; // by instruction: the position that must be taken next, or kUnset
    std::u16string_view text_;
    Guide* guide_ = nullptr;
    Effort* effort_ = nullptr;
    Place at_ = 0;
    std::uint32_t place_ = 0;
    bool done_ = false;
    std::vector<std::uint32_t> slots_; // of the groups, then the beginnings of the loops' passes
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> looks_; // the entries of look-aheads under way
};

} // namespace vellums::regexp

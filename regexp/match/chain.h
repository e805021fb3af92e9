// Finds the matches of patterns that leave no choice (see regexp/parse/steps.h) by going through the steps
// from one start after the other. Starts that can be seen to fail as the last one did are passed over; where
// units are still looked at too often the search is left to the automaton, so that the time stays in
// proportion to the text.
#pragma once

#include "regexp/match/bits.h"
#include "regexp/match/scan.h"
#include "regexp/parse/steps.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vellums::regexp {

class Chain {
public:
    // Nothing when the pattern is not of this kind.
    static std::optional<Chain> of(const Tree& tree);

    // Takes another text, `length` units of `whole` from `first` on. All of it must outlive its use and stay
    // as it is.
    void take(std::u16string_view whole, std::size_t first, std::size_t length);

    struct Found {
        std::size_t first; // kNowhere: there is none
        std::size_t end;   // kNowhere: another search has to go on at `first`, no match begins before it
    };
    // The next match that begins at `from` or behind it. No match is empty.
    Found next(std::size_t from);

private:
    using Mask = std::uint16_t;

    Chain(const Steps& steps, const Tree& tree);
    void findSkips();
    void findEndings(const std::vector<UnitSet>& sets);
    void mark(const UnitSet& set, unsigned mask);
    bool has(std::size_t place, unsigned mask) const { return (masks_[text_[place]] & mask) != 0; }
    std::size_t nextStart(std::size_t from); // kNowhere, here and below: there is none, or it fails
    std::size_t toFirstRun(std::size_t from);
    std::size_t afterFailure(std::size_t start) const;
    std::size_t match(std::size_t start); // its end
    std::size_t pass(const Step& step, std::size_t place);
    std::size_t runEnd(std::size_t set, std::size_t place, std::size_t last) const;
    std::size_t passRun(const Step& step, std::size_t place);
    std::size_t passReference(std::uint32_t group, std::size_t place);
    bool holdsAt(Assertion assertion, std::size_t place) const;
    std::size_t numberOf(const Step& step) const { return static_cast<std::size_t>(&step - steps_.data()); }

    std::vector<Step> steps_;
    std::vector<UnitBits> sets_;
    std::vector<Mask> masks_; // by unit: a bit for each set of the steps, and some more
    const char16_t* fold_;    // null: case counts
    bool multiline_;
    bool startsAtStart_; // matches begin with the text
    bool endsAtEnd_;     // they end with it, with one of the endings

    // What the first run of any length allows to skip.
    std::size_t firstRun_ = kNowhere; // its step; units before it are of a fixed number
    std::size_t unitsBefore_ = 0;
    std::size_t firstReference_ = 0; // failures before this step depend on where the run ends alone

    // The present text and try.
    std::u16string_view text_;
    std::u16string_view ahead_; // the text and what follows it
    std::size_t spent_ = 0;
    std::size_t failedAt_ = 0; // a step
    std::size_t runEnd_ = 0;   // of the first run; kNowhere: not met, or it could have gone on
    std::vector<std::size_t> slots_;
};

} // namespace vellums::regexp

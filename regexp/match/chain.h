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

    // Takes another text, which must outlive its use and stay as it is.
    void take(std::u16string_view text);
    // What lies between these places counts as the whole text from now on.
    void narrow(std::size_t begin, std::size_t end);

    struct Found {
        std::size_t first; // kNowhere: there is none
        std::size_t end;   // kNowhere: another search has to go on at `first`, no match begins before it
    };
    // The next match that begins at `from` or behind it. No match is empty.
    Found next(std::size_t from);

private:
    using Mask = std::uint16_t;

    // The bits of a mark for one row of units.
    struct Row {
        std::size_t number; // the row's; kNowhere: none
        std::uint64_t bits;
    };
    // A mark stands at the places that have a unit of each set at its offset, less than a row away.
    struct Probe {
        std::size_t set;
        unsigned offset;
    };
    struct Mark {
        std::vector<Probe> probes;
        bool behindWord = true; // false: no unit of a word stands before the place
    };
    // Where a first run ends as it should, sought from `from` on, and where it begins at the earliest.
    struct FirstRun {
        std::size_t from;
        std::size_t begin;
        std::size_t last; // its last unit
    };

    Chain(Steps steps, const Tree& tree);
    void findSkips();
    void findMarks(const std::vector<UnitSet>& sets);
    Mark startMark(const std::vector<UnitSet>& sets) const;
    void findEndings(const std::vector<UnitSet>& sets);
    static bool addProbes(std::vector<Probe>& probes, const Step& step);
    std::size_t addMark(Mark mark);
    std::size_t match(std::size_t start); // its end; kNowhere, here and below: it fails
    std::size_t pass(const Step& step, std::size_t place);
    std::size_t passRun(const Step& step, std::size_t place);
    std::size_t passReference(std::uint32_t group, std::size_t place);
    bool holdsAt(Assertion assertion, std::size_t place) const;
    bool has(std::size_t place, unsigned mask) const { return (masks_[text_[place]] & mask) != 0; }
    std::size_t numberOf(const Step& step) const { return static_cast<std::size_t>(&step - steps_.data()); }
    std::uint64_t bitsOf(std::size_t mark, std::size_t row);
    std::uint64_t newBits(std::size_t mark, std::size_t row);
    std::size_t nextOf(std::size_t mark, std::size_t from);
    std::size_t runEnd(std::size_t set, std::size_t from, std::size_t last);
    std::size_t runBegin(std::size_t set, std::size_t last, std::size_t from);
    std::size_t nextStart(std::size_t from);
    std::size_t nextAtLine(std::size_t from);
    bool toFirstRun(std::size_t& from);
    std::size_t afterFailure(std::size_t start) const;

    std::vector<Step> steps_;
    std::vector<UnitBits> sets_;
    std::size_t beginnings_;  // a set
    std::size_t lineEnds_;    // the same
    std::size_t wordUnits_;   // the same
    std::vector<Mark> marks_; // numbered behind the sets, each of which is a mark as well
    std::size_t starts_ = 0;  // a mark of the places where a match may begin
    std::vector<Mask> masks_; // by unit: a bit for each set of the steps, word units, line ends, endings
    bool endsAtEnd_ = false;  // matches end with the text, with one of the endings
    const char16_t* fold_;    // null: case counts
    bool multiline_;
    bool startsAtLine_ = false; // matches begin where "^" holds

    // What the first run of any length allows to skip.
    std::size_t firstRun_ = kNowhere; // its step; units before it are of a fixed number
    std::size_t unitsBefore_ = 0;
    std::size_t firstReference_ = 0; // failures before this step depend on where the run ends alone
    std::size_t runEnds_ = kNowhere; // a mark of units that it may end with; kNowhere: any

    // The present text and try.
    std::u16string_view text_;
    std::vector<Row> rows_; // two by mark, for rows of even and odd number; of the text as it was taken
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t spent_ = 0;
    FirstRun known_{0, 0, 0};
    std::size_t failedAt_ = 0; // a step
    std::size_t runEnd_ = 0;   // of the first run; kNowhere: not met, or it could have gone on
    std::vector<std::size_t> slots_;
};

} // namespace vellums::regexp

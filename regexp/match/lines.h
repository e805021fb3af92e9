// How the matches in a long text are found without reading every line: the whole text is scanned for
// what a match must contain or begin with, and only the lines around it are looked at.
#pragma once

#include "regexp/match/chain.h"
#include "regexp/match/effort.h"
#include "regexp/match/matcher.h"
#include "regexp/match/scan.h"
#include "regexp/parse/literals.h"
#include "regexp/parse/tree.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

namespace vellums::regexp {

class LineSearch {
public:
    explicit LineSearch(const Tree& tree);

    // The matches are plain texts alone, and scan() finds them.
    bool literal() const { return plan_ == Plan::Literal; }
    // False: the text certainly holds no match.
    bool promising(std::u16string_view text) const;
    const LiteralScan& scan() const { return *literals_; }

    // line, first unit and length of a match that is not empty, in the text; false ends the search.
    using Visit = std::function<bool(std::size_t lineStart, std::size_t first, std::size_t length)>;
    using MatcherFor = std::function<Matcher&(std::size_t textLength)>;
    void run(std::u16string_view text, const MatcherFor& matcherFor, Effort& effort, const Visit& visit);

    // visit(first, end) for each match in `length` units of the text from `first` on, which are searched and
    // whose places are counted as those of a text of its own, until it gives false. False: it did.
    template <typename OnMatch>
    bool forEach(std::u16string_view text, std::size_t first, std::size_t length,
        const MatcherFor& matcherFor, Effort& effort, OnMatch visit)
    {
        std::size_t from = 0;
        if (chain_) {
            chain_->take(text, first, length);
            Chain::Found found = chain_->next(from);
            for (; found.end != kNowhere; found = chain_->next(from)) {
                if (!visit(found.first, found.end))
                    return false;
                from = found.end;
            }
            if (found.first == kNowhere)
                return true;
            from = found.first;
        }
        return matcherFor(length).forEach(text.substr(first, length), from, effort, visit);
    }

private:
    enum class Plan {
        Literal,   // matches are texts to be scanned for
        ClassRun,  // matches are runs of units of one set
        Needed,    // lines without one of some texts have no match
        Beginning, // lines without one of some units have no match
        EveryLine,
    };

    void choose(const Tree& tree);
    bool chooseRun(const Tree& tree);
    void literalsInLines(std::u16string_view text, const Visit& visit) const;
    std::size_t nextRun(std::u16string_view text, std::size_t place) const; // kNowhere: none
    void runsInLines(std::u16string_view text, const Visit& visit) const;
    std::size_t nextPromising(std::u16string_view text, std::size_t from) const;

    Plan plan_ = Plan::EveryLine;
    std::size_t minLength_;
    std::optional<Chain> chain_;
    std::optional<LiteralScan> literals_;
    std::optional<UnitScan> units_;
    std::size_t fewest_ = 1; // of a run
    std::size_t most_ = 1;
};

} // namespace vellums::regexp

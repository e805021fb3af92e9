// One of five plans is chosen from the pattern, once:
//
//   Literal     the matches are texts, and scanning for them is all there is to do
//   Needed      a line without one of some texts is passed over
//   ClassRun    the pattern is one run of a set, found by jumping `fewest` units at a time
//   Beginning   a line without a unit that matches begin with is passed over
//   EveryLine   nothing rules a line out
//
// A plan has to find its texts or units quickly and to rule out most lines, or else it costs more than it
// saves; common() estimates that. The text is scanned across lines, and only where something is met does the
// line around it become known: lineAround() looks back no further than to where the last one looked from, so
// all looking back together is one pass over the text. That line is then matched as a text of its own.
//
// What each is worth, by 67 patterns as people type them (words, dates, addresses, tags, quotations, ends of
// lines) on five million units of notes, with it and without it in turns: without scanning for texts 51 of
// them take 3.2 times as long; without ClassRun the 4 that are runs take 1.4 times as long, without Beginning
// patterns like \d+\s+\w+ the same. Chain serves all plans: where the pattern leaves no choice, as 44 do, the
// automaton takes 1.36 times as long and as many instructions (1.7 times where every line is read, 3 times
// for .+ and ^\s+, 1.3 times for \b[a-z]{12,}\b).
//
// Within Chain, comparing sixteen units at once makes names, [A-Z][a-z]+ [A-Z][a-z]+, 1.3 times as fast, .+
// and \b\w+\b 1.2 times, and gains little elsewhere; looking at the last unit of the first run first makes
// \b[a-z]{12,}\b twice as fast. Both together: 0.95 of the time over the benchmark's patterns.
#include "regexp/match/lines.h"

#include "regexp/parse/beginnings.h"

#include <algorithm>
#include <cassert>

namespace vellums::regexp {
namespace {

// Nearly every line has a unit of the set.
bool common(const UnitSet& set)
{
    constexpr int kCommon = 60; // of a thousand units
    int sum = 0;
    for (char16_t unit = u' '; unit < 0x7F; ++unit)
        sum += set.contains(unit) ? commonness(unit) : 0;
    return sum > kCommon;
}

// The same of texts: single units among them.
bool common(const std::vector<std::u16string>& texts)
{
    UnitSet units;
    for (const std::u16string& text : texts)
        if (text.size() == 1)
            units = units.with(UnitSet({{text[0], text[0]}}));
    return common(units);
}

bool hasLineEnd(const std::u16string& text)
{
    return text.find_first_of(u"\r\n") != text.npos;
}

// The start of the line around `place`, given that `line` begins one and no other begins up to `known`.
std::size_t lineAround(std::u16string_view text, std::size_t place, std::size_t line, std::size_t known)
{
    for (std::size_t i = place; i >= known + 2; --i)
        if (text[i - 1] == u'\n' && text[i - 2] == u'\r')
            return i;
    return line;
}

} // namespace

LineSearch::LineSearch(const Tree& tree)
    : minLength_(static_cast<std::size_t>(tree.nodes[tree.root].minLength))
{
    choose(tree);
    if (plan_ != Plan::Literal)
        chain_ = Chain::of(tree);
}

void LineSearch::choose(const Tree& tree)
{
    constexpr std::size_t kTooMany = 40000;
    const Literals needed = neededLiterals(tree);
    if (!needed.texts.empty() && std::none_of(needed.texts.begin(), needed.texts.end(), hasLineEnd)) {
        literals_.emplace(needed.texts, tree.ignoreCase);
        if (literals_->usable() && (needed.whole || !common(needed.texts))) {
            plan_ = needed.whole ? Plan::Literal : Plan::Needed;
            return;
        }
        literals_.reset();
    }
    if (minLength_ == 0 || chooseRun(tree))
        return;
    const UnitSet first = beginningsOf(tree);
    if (first.size() > kTooMany || common(first))
        return;
    units_.emplace(first);
    plan_ = Plan::Beginning;
}

// A run must not take line ends: it is sought in the whole text at once.
bool LineSearch::chooseRun(const Tree& tree)
{
    const Node* node = &tree.nodes[tree.root];
    if (node->kind == NodeKind::Repeat && !node->lazy && node->fewest > 0 &&
        tree.nodes[node->children[0]].kind == NodeKind::Unit) {
        fewest_ = node->fewest;
        most_ = node->most == kNoLimit ? kNowhere : node->most;
        node = &tree.nodes[node->children[0]];
    }
    if (node->kind != NodeKind::Unit)
        return false;
    const UnitSet& set = tree.sets[node->set];
    if (set.contains(u'\r') || set.contains(u'\n'))
        return false;
    units_.emplace(set);
    plan_ = Plan::ClassRun;
    return true;
}

bool LineSearch::promising(std::u16string_view text) const
{
    switch (plan_) {
    case Plan::Literal:
    case Plan::Needed:
        return literals_->next(text, 0).place != kNowhere;
    case Plan::ClassRun:
    case Plan::Beginning:
        return units_->next(text, 0) != kNowhere;
    default:
        return true;
    }
}

std::size_t LineSearch::nextPromising(std::u16string_view text, std::size_t from) const
{
    if (plan_ == Plan::Needed)
        return literals_->next(text, from).place;
    if (plan_ == Plan::Beginning)
        return units_->next(text, from);
    return from <= text.size() ? from : kNowhere;
}

void LineSearch::run(
    std::u16string_view text, const MatcherFor& matcherFor, Effort& effort, const Visit& visit)
{
    if (plan_ == Plan::Literal)
        return literalsInLines(text, visit);
    if (plan_ == Plan::ClassRun)
        return runsInLines(text, visit);
    std::size_t from = 0; // where a line begins
    for (std::size_t place = nextPromising(text, from); place != kNowhere;
         place = nextPromising(text, from)) {
        const std::size_t start = lineAround(text, place, from, from);
        // The place may be the LF of the line's own end.
        const std::size_t end = findLineEnd(text, place > start ? place - 1 : place);
        auto pass = [&](std::size_t first, std::size_t last) {
            return first == last || visit(start, start + first, last - first);
        };
        if (end - start >= minLength_ && !forEach(text, start, end - start, matcherFor, effort, pass))
            return;
        if (end == text.size())
            return;
        from = end + 2;
    }
}

void LineSearch::literalsInLines(std::u16string_view text, const Visit& visit) const
{
    std::size_t line = 0;
    std::size_t known = 0;
    LiteralScan::Hit hit = literals_->next(text, 0);
    while (hit.place != kNowhere) {
        line = lineAround(text, hit.place, line, known);
        known = hit.place;
        if (!visit(line, hit.place, hit.length))
            return;
        hit = literals_->next(text, hit.place + hit.length);
    }
}

// The next run of at least fewest_ units: one that begins at `place` or behind has the unit that stands
// fewest_ - 1 further on, or begins behind that.
std::size_t LineSearch::nextRun(std::u16string_view text, std::size_t place) const
{
    if (fewest_ == 1)
        return units_->next(text, place);
    assert(place <= text.size());
    while (fewest_ <= text.size() - place) {
        const std::size_t probe = place + fewest_ - 1;
        std::size_t first = probe + 1;
        while (first > place && units_->has(text[first - 1]))
            --first;
        if (first == place)
            return place;
        place = first;
    }
    return kNowhere;
}

void LineSearch::runsInLines(std::u16string_view text, const Visit& visit) const
{
    std::size_t line = 0;
    std::size_t known = 0;
    std::size_t place = nextRun(text, 0);
    while (place != kNowhere) {
        const std::size_t most = std::min(most_, text.size() - place);
        std::size_t length = fewest_;
        while (length < most && units_->has(text[place + length]))
            ++length;
        line = lineAround(text, place, line, known);
        known = place;
        if (!visit(line, place, length))
            return;
        place = nextRun(text, place + length);
    }
}

} // namespace vellums::regexp

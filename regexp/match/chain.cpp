// A try goes through the steps once (match), every run taking all it can; that is right because stepsOf() has
// made sure that no run ever gains from giving a unit back. The rest is about not trying in vain:
//
//   - A start must have a unit that matches begin with, or be the start of the text where "^" asks for it.
//   - The units before the first run of open length are of a fixed number. Starts from which that run would
//     begin inside the same stretch of units end it at the same place, hence fail alike as long as no
//     reference asks where it began; afterFailure() passes over them together.
//   - Where that run needs several units, toFirstRun() looks for them from the last one backwards: a missing
//     one rules out all starts that need it, and those before it are not looked at.
//   - Where a match ends with the text, a look at the last unit may settle it (kEnding).
//
// Where a run ends is told by comparing sixteen units at once (UnitBits); these may lie behind the text,
// which is a line most of the time, as long as they lie in the whole one.
//
// A pattern could still make every start look at the same units again. spent_ counts the units that runs and
// references looked at; when it exceeds a few for each unit of the text up to the present start, next() hands
// the rest to the automaton, so the time stays in proportion to the text.
#include "regexp/match/chain.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace vellums::regexp {
namespace {

// The bits of a mask: one for each set of the steps, and four more.
//
//   0 ... 11      12          13       14          15
//   sets          beginning   ending   word unit   line end
constexpr std::size_t kMostSets = 12;
constexpr unsigned kBeginning = 1U << 12;
constexpr unsigned kEnding = 1U << 13;
constexpr unsigned kWord = 1U << 14;
constexpr unsigned kLineEnd = 1U << 15;

// So many units may be looked at for each unit of the text, and so many beforehand.
constexpr std::size_t kForEachUnit = 4;
constexpr std::size_t kAtLeast = 256;

bool asks(const Step& step, Assertion assertion)
{
    return step.kind == Step::Kind::Assert && step.assertion == assertion;
}

} // namespace

std::optional<Chain> Chain::of(const Tree& tree)
{
    const std::optional<Steps> steps = stepsOf(tree);
    if (!steps || steps->sets.size() > kMostSets)
        return {};
    return Chain(*steps, tree);
}

Chain::Chain(const Steps& steps, const Tree& tree)
    : steps_(steps.list)
    , sets_(steps.sets.begin(), steps.sets.end())
    , masks_(kUnits, 0)
    , fold_(tree.ignoreCase ? foldTable() : nullptr)
    , multiline_(tree.multiline)
    , startsAtStart_(!multiline_ && asks(steps_.front(), Assertion::Start))
    , endsAtEnd_(!multiline_ && asks(steps_.back(), Assertion::End))
    , slots_(2 * (tree.groupCount + 1), 0)
{
    for (std::size_t i = 0; i < steps.sets.size(); ++i)
        mark(steps.sets[i], 1U << i);
    mark(steps.beginnings, kBeginning);
    mark(wordUnits(), kWord);
    mark(lineEnds(), kLineEnd);
    findEndings(steps.sets);
    findSkips();
}

void Chain::mark(const UnitSet& set, unsigned mask)
{
    for (const UnitRange& range : set.ranges())
        for (std::uint32_t unit = range.first; unit <= range.last; ++unit)
            masks_[unit] = static_cast<Mask>(masks_[unit] | mask);
}

// Every optional run at the end may be absent, so the last unit of a match is of one of these sets, up to the
// first that has to be there.
void Chain::findEndings(const std::vector<UnitSet>& sets)
{
    for (auto step = steps_.rbegin(); endsAtEnd_ && step != steps_.rend(); ++step) {
        if (step->kind == Step::Kind::Reference)
            endsAtEnd_ = false;
        if (step->kind != Step::Kind::Run)
            continue;
        mark(sets[step->set], kEnding);
        if (step->fewest > 0)
            break;
    }
}

// A failure says something about later starts only where there is a run of open length, and no reference
// before it.
void Chain::findSkips()
{
    const auto isReference = [](const Step& step) { return step.kind == Step::Kind::Reference; };
    firstReference_ =
        static_cast<std::size_t>(std::find_if(steps_.begin(), steps_.end(), isReference) - steps_.begin());
    std::size_t units = 0;
    for (std::size_t i = 0; i < firstReference_; ++i) {
        const Step& step = steps_[i];
        if (step.kind != Step::Kind::Run)
            continue;
        if (step.fewest != step.most) {
            firstRun_ = i;
            unitsBefore_ = units;
            return;
        }
        units += step.most;
    }
}

void Chain::take(std::u16string_view whole, std::size_t first, std::size_t length)
{
    ahead_ = whole.substr(first);
    text_ = ahead_.substr(0, length);
    spent_ = 0;
}

Chain::Found Chain::next(std::size_t from)
{
    assert(from <= text_.size());
    if (endsAtEnd_ && (text_.empty() || !has(text_.size() - 1, kEnding)))
        return {kNowhere, kNowhere};
    for (std::size_t start = nextStart(from); start != kNowhere; start = nextStart(afterFailure(start))) {
        if (spent_ > kAtLeast + kForEachUnit * start)
            return {start, kNowhere};
        if (const std::size_t end = match(start); end != kNowhere)
            return {start, end};
    }
    return {kNowhere, kNowhere};
}

std::size_t Chain::nextStart(std::size_t from)
{
    if (startsAtStart_)
        return from == 0 ? 0 : kNowhere;
    if (firstRun_ != kNowhere && steps_[firstRun_].fewest > 1)
        from = toFirstRun(from);
    while (from < text_.size() && !has(from, kBeginning))
        ++from;
    return from < text_.size() ? from : kNowhere;
}

// Passes over starts from which the first run would not have its fewest units.
std::size_t Chain::toFirstRun(std::size_t from)
{
    const Step& run = steps_[firstRun_];
    std::size_t first = from + unitsBefore_; // of the run
    while (run.fewest <= text_.size() && first <= text_.size() - run.fewest) {
        const std::size_t end = first + run.fewest;
        std::size_t met = end;
        while (met > first && has(met - 1, 1U << run.set))
            --met;
        spent_ += end - met;
        if (met == first)
            return first - unitsBefore_;
        first = met;
    }
    return text_.size();
}

// Starts from which the first run would begin further on in the same row of units end like the last one. The
// first that can differ lets the run begin behind runEnd_.
std::size_t Chain::afterFailure(std::size_t start) const
{
    if (runEnd_ == kNowhere)
        return start + 1;
    return failedAt_ < firstReference_ ? runEnd_ + 1 - unitsBefore_ : start + 1;
}

std::size_t Chain::match(std::size_t start)
{
    std::size_t place = start;
    runEnd_ = kNowhere;
    for (const Step& step : steps_) {
        const std::size_t end = pass(step, place);
        if (end == kNowhere) {
            failedAt_ = numberOf(step);
            return kNowhere;
        }
        place = end;
    }
    return place;
}

// Where the step ends that begins at `place`.
std::size_t Chain::pass(const Step& step, std::size_t place)
{
    switch (step.kind) {
    case Step::Kind::Run:
        if (step.most > 1)
            return passRun(step, place);
        if (place < text_.size() && has(place, 1U << step.set))
            return place + 1;
        return step.fewest == 0 ? place : kNowhere;
    case Step::Kind::Assert:
        return holdsAt(step.assertion, place) ? place : kNowhere;
    case Step::Kind::Open:
        slots_[2 * step.group] = place;
        return place;
    case Step::Kind::Close:
        slots_[2 * step.group + 1] = place;
        return place;
    default:
        return passReference(step.group, place);
    }
}

// The first place from `place` on, up to `last`, that has another unit.
std::size_t Chain::runEnd(std::size_t set, std::size_t place, std::size_t last) const
{
    if (place == last || !has(place, 1U << set))
        return place;
    ++place;
    for (; sets_[set].usable() && place < last && kRow <= ahead_.size() - place; place += kRow) {
        const auto met = static_cast<std::size_t>(std::countr_one(sets_[set].of(ahead_.data() + place)));
        if (met < kRow)
            return std::min(place + met, last);
    }
    while (place < last && has(place, 1U << set))
        ++place;
    return std::min(place, last);
}

std::size_t Chain::passRun(const Step& step, std::size_t place)
{
    const std::size_t last = place + std::min(step.most, text_.size() - place);
    const std::size_t end = runEnd(step.set, place, last);
    spent_ += end - place;
    // A run that stopped because it had its most units would go further from a later start: nothing is
    // learnt.
    if (numberOf(step) == firstRun_ && (end < last || last == text_.size()))
        runEnd_ = end;
    return end - place < step.fewest ? kNowhere : end;
}

std::size_t Chain::passReference(std::uint32_t group, std::size_t place)
{
    const std::size_t from = slots_[2 * group];
    assert(from <= slots_[2 * group + 1]);
    const std::size_t length = slots_[2 * group + 1] - from;
    if (length > text_.size() - place)
        return kNowhere;
    for (std::size_t i = 0; i < length; ++i) {
        const char16_t a = text_[from + i];
        const char16_t b = text_[place + i];
        if (a != b && (fold_ == nullptr || fold_[a] != fold_[b])) {
            spent_ += i;
            return kNowhere;
        }
    }
    spent_ += length;
    return place + length;
}

bool Chain::holdsAt(Assertion assertion, std::size_t place) const
{
    const bool first = place == 0;
    const bool last = place == text_.size();
    switch (assertion) {
    case Assertion::Start:
        return first || (multiline_ && has(place - 1, kLineEnd));
    case Assertion::End:
        return last || (multiline_ && has(place, kLineEnd));
    default:
        const bool edge = (!first && has(place - 1, kWord)) != (!last && has(place, kWord));
        return edge == (assertion == Assertion::WordEdge);
    }
}

} // namespace vellums::regexp

// A try goes through the steps once (match), every run taking all it can; that is right because stepsOf() has
// made sure that no run ever gains from giving a unit back. The rest is about not trying in vain:
//
//   - A mark is a row of bits, one for each place: these sets have units at these distances from it. It comes
//     from the rows of the sets, shifted and joined, 64 places at a time. starts_ marks where the steps of
//     fixed length at the beginning can succeed.
//   - The units before the first run of open length are of a fixed number. Starts from which that run would
//     begin inside the same stretch of units end it at the same place, hence fail alike as long as no
//     reference asks where it began; afterFailure() passes over them together.
//   - runEnds_ marks the last unit of that run together with what must follow it. toFirstRun() looks for it
//     first, goes back to where the stretch before it begins, and has thereby passed over every stretch that
//     is followed by something else.
//   - Where a match ends with the text, a look at the last unit may settle it (kEnding).
//
// A pattern could still make every start look at the same units again. spent_ counts the units that runs and
// references looked at; when it exceeds a few for each unit of the text up to the present start, next() hands
// the rest to the automaton, so the time stays in proportion to the text.
//
// Rows count from the start of the text that was taken, not from begin_: narrowing to the next line keeps
// what is known. A mark may see units beyond the line, but match() does not, and the unit before a line is
// the LF of a line end, as little part of a word as nothing at all.
#include "regexp/match/chain.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace vellums::regexp {
namespace {

// The bits of a mask: one for each set of the steps, and three more.
//
//   0 ... 12      13       14          15
//   sets          ending   word unit   line end
constexpr std::size_t kMostSets = 13;
constexpr unsigned kEnding = 1U << 13;
constexpr unsigned kWord = 1U << 14;
constexpr unsigned kLineEnd = 1U << 15;

constexpr std::size_t kMostProbes = 8;
constexpr std::size_t kMostFollowing = 4;

// So many units may be looked at for each unit of the text, and so many beforehand.
constexpr std::size_t kForEachUnit = 4;
constexpr std::size_t kAtLeast = 256;

} // namespace

std::optional<Chain> Chain::of(const Tree& tree)
{
    std::optional<Steps> steps = stepsOf(tree);
    if (!steps || steps->sets.size() > kMostSets)
        return {};
    return Chain(std::move(*steps), tree);
}

Chain::Chain(Steps steps, const Tree& tree)
    : steps_(std::move(steps.list))
    , masks_(kUnits, 0)
    , fold_(tree.ignoreCase ? foldTable() : nullptr)
    , multiline_(tree.multiline)
    , slots_(2 * (tree.groupCount + 1), 0)
{
    const auto mark = [this](const UnitSet& set, unsigned mask) {
        for (const UnitRange& range : set.ranges())
            for (std::uint32_t unit = range.first; unit <= range.last; ++unit)
                masks_[unit] = static_cast<Mask>(masks_[unit] | mask);
    };
    for (std::size_t i = 0; i < steps.sets.size(); ++i)
        mark(steps.sets[i], 1U << i);
    mark(wordUnits(), kWord);
    mark(lineEnds(), kLineEnd);
    findSkips();
    const auto withNumber = [&sets = steps.sets](const UnitSet& set) {
        const auto found = std::find(sets.begin(), sets.end(), set);
        const auto number = static_cast<std::size_t>(found - sets.begin());
        if (found == sets.end())
            sets.push_back(set);
        return number;
    };
    beginnings_ = withNumber(steps.beginnings);
    lineEnds_ = withNumber(lineEnds());
    wordUnits_ = withNumber(wordUnits());
    for (const UnitSet& set : steps.sets)
        sets_.emplace_back(set);
    findMarks(steps.sets);
    findEndings(steps.sets);
    rows_.assign(2 * (sets_.size() + marks_.size()), {kNowhere, 0});
}

// A failure says something about later starts only where there is a run of open length, and no reference
// before it.
void Chain::findSkips()
{
    std::size_t units = 0;
    for (std::size_t i = 0; i < steps_.size() && firstRun_ == kNowhere; ++i) {
        const Step& step = steps_[i];
        if (step.kind != Step::Kind::Run)
            continue;
        if (step.fewest == step.most)
            units += step.most;
        else
            firstRun_ = i;
    }
    startsAtLine_ = steps_[0].kind == Step::Kind::Assert && steps_[0].assertion == Assertion::Start;
    const auto isReference = [](const Step& step) { return step.kind == Step::Kind::Reference; };
    firstReference_ =
        static_cast<std::size_t>(std::find_if(steps_.begin(), steps_.end(), isReference) - steps_.begin());
    if (firstRun_ == kNowhere || firstReference_ < firstRun_) {
        firstRun_ = kNowhere;
        return;
    }
    unitsBefore_ = units;
}

std::size_t Chain::addMark(Mark mark)
{
    if (mark.probes.size() == 1 && mark.behindWord)
        return mark.probes[0].set;
    marks_.push_back(std::move(mark));
    return sets_.size() + marks_.size() - 1;
}

// What stands at a fixed distance from the start of a match.
Chain::Mark Chain::startMark(const std::vector<UnitSet>& sets) const
{
    Mark mark;
    for (const Step& step : steps_) {
        if (step.kind == Step::Kind::Reference)
            break;
        if (step.kind != Step::Kind::Run)
            continue;
        if (!addProbes(mark.probes, step) || step.fewest != step.most)
            break;
    }
    if (mark.probes.empty())
        mark.probes = {{beginnings_, 0}};
    mark.behindWord = steps_[0].kind != Step::Kind::Assert || steps_[0].assertion != Assertion::WordEdge ||
        sets[mark.probes[0].set].meets(wordUnits().complement());
    return mark;
}

// False: these are enough. More than two sets cost more than they save.
bool Chain::addProbes(std::vector<Probe>& probes, const Step& step)
{
    const auto isOf = [](std::size_t set) { return [set](const Probe& probe) { return probe.set == set; }; };
    const bool two = !probes.empty() && !std::all_of(probes.begin(), probes.end(), isOf(probes[0].set));
    if (two && std::none_of(probes.begin(), probes.end(), isOf(step.set)))
        return false;
    for (std::size_t i = 0; i < step.fewest; ++i) {
        if (probes.size() == kMostProbes)
            return false;
        probes.push_back({step.set, static_cast<unsigned>(probes.size())});
    }
    return true;
}

void Chain::findMarks(const std::vector<UnitSet>& sets)
{
    starts_ = addMark(startMark(sets));
    if (firstRun_ == kNowhere || steps_[firstRun_].fewest == 0)
        return;
    // The last unit of the first run and what follows it at fixed distances.
    Mark mark{{{steps_[firstRun_].set, 0}}};
    for (std::size_t i = firstRun_ + 1; i < steps_.size() && mark.probes.size() < kMostFollowing; ++i) {
        const Step& step = steps_[i];
        if (step.kind == Step::Kind::Open || step.kind == Step::Kind::Close)
            continue;
        if (step.kind != Step::Kind::Run || step.fewest == 0)
            break;
        mark.probes.push_back({step.set, static_cast<unsigned>(mark.probes.size())});
        if (step.most > 1)
            break;
    }
    if (mark.probes.size() > 1)
        runEnds_ = addMark(std::move(mark));
}

void Chain::findEndings(const std::vector<UnitSet>& sets)
{
    endsAtEnd_ =
        !multiline_ && steps_.back().kind == Step::Kind::Assert && steps_.back().assertion == Assertion::End;
    UnitSet endings;
    for (auto step = steps_.rbegin(); endsAtEnd_ && step != steps_.rend(); ++step) {
        if (step->kind == Step::Kind::Reference)
            endsAtEnd_ = false;
        if (step->kind != Step::Kind::Run)
            continue;
        endings = endings.with(sets[step->set]);
        if (step->fewest > 0)
            break;
    }
    // Every optional run at the end may be absent, so the last unit of a match is of one of these sets, up to
    // the first that has to be there.
    for (const UnitRange& range : endings.ranges())
        for (std::uint32_t unit = range.first; unit <= range.last; ++unit)
            masks_[unit] = static_cast<Mask>(masks_[unit] | kEnding);
}

void Chain::take(std::u16string_view text)
{
    text_ = text;
    for (Row& row : rows_)
        row.number = kNowhere;
    narrow(0, text.size());
}

void Chain::narrow(std::size_t begin, std::size_t end)
{
    assert(begin <= end && end <= text_.size());
    begin_ = begin;
    end_ = end;
    spent_ = 0;
    known_ = {begin, begin, begin};
}

Chain::Found Chain::next(std::size_t from)
{
    assert(begin_ <= from && from <= end_);
    if (endsAtEnd_ && (begin_ == end_ || !has(end_ - 1, kEnding)))
        return {kNowhere, kNowhere};
    for (std::size_t start = nextStart(from); start != kNowhere; start = nextStart(afterFailure(start))) {
        if (spent_ > kAtLeast + kForEachUnit * (start - begin_))
            return {start, kNowhere};
        if (const std::size_t end = match(start); end != kNowhere)
            return {start, end};
    }
    return {kNowhere, kNowhere};
}

// A mark with several probes needs two neighbouring rows of its sets at a time and then goes on to the next,
// so the latest row of even and of odd number is all that is worth keeping.
std::uint64_t Chain::bitsOf(std::size_t mark, std::size_t row)
{
    Row& known = rows_[2 * mark + row % 2];
    if (known.number != row)
        known = {row, newBits(mark, row)};
    return known.bits;
}

std::uint64_t Chain::newBits(std::size_t mark, std::size_t row)
{
    if (mark < sets_.size())
        return row * kRow < text_.size() ? sets_[mark].at(text_, row * kRow) : 0;
    std::uint64_t all = ~std::uint64_t{0};
    const Mark& made = marks_[mark - sets_.size()];
    for (const Probe& probe : made.probes) {
        std::uint64_t bits = bitsOf(probe.set, row) >> probe.offset;
        if (probe.offset > 0)
            bits |= bitsOf(probe.set, row + 1) << (kRow - probe.offset);
        all &= bits;
    }
    if (!made.behindWord) {
        const std::size_t first = row * kRow;
        const bool word = first > 0 && first <= text_.size() && has(first - 1, kWord);
        all &= ~(bitsOf(wordUnits_, row) << 1 | std::uint64_t{word});
    }
    return all;
}

std::size_t Chain::nextOf(std::size_t mark, std::size_t from)
{
    for (; from < end_; from = (from / kRow + 1) * kRow) {
        const std::uint64_t bits = bitsOf(mark, from / kRow) >> from % kRow;
        if (bits == 0)
            continue;
        const std::size_t place = from + static_cast<std::size_t>(std::countr_zero(bits));
        return place < end_ ? place : kNowhere;
    }
    return kNowhere;
}

// The first place from `from` on, up to `last`, where no unit of the set stands.
std::size_t Chain::runEnd(std::size_t set, std::size_t from, std::size_t last)
{
    for (; from < last; from = (from / kRow + 1) * kRow) {
        const std::uint64_t others = ~bitsOf(set, from / kRow) >> from % kRow;
        if (others != 0)
            return std::min(from + static_cast<std::size_t>(std::countr_zero(others)), last);
    }
    return last;
}

// Where the run that ends with `last` begins, but not before `from`.
std::size_t Chain::runBegin(std::size_t set, std::size_t last, std::size_t from)
{
    std::size_t begin = last + 1;
    while (begin > from) {
        const std::size_t inRow = (begin - 1) % kRow + 1; // units of the row up to here
        const std::uint64_t others = ~bitsOf(set, (begin - 1) / kRow) << (kRow - inRow);
        const auto met = static_cast<std::size_t>(std::countl_zero(others));
        if (met < inRow)
            return std::max(begin - met, from);
        begin -= inRow;
    }
    return from;
}

std::size_t Chain::nextStart(std::size_t from)
{
    if (startsAtLine_)
        return nextAtLine(from);
    if (runEnds_ != kNowhere && !toFirstRun(from))
        return kNowhere;
    return nextOf(starts_, from);
}

std::size_t Chain::nextAtLine(std::size_t from)
{
    if (from == begin_)
        return from;
    const std::size_t lineEnd = multiline_ ? nextOf(lineEnds_, from - 1) : kNowhere;
    return lineEnd == kNowhere ? kNowhere : lineEnd + 1;
}

// Passes over starts from which the first run is followed by something else than it should be. False: all are
// such. known_ says that between its `from` and its `last` there is no earlier place where the run could end;
// a run that begins before known_.begin therefore meets another unit first, and ends at an unmarked place.
bool Chain::toFirstRun(std::size_t& from)
{
    const std::size_t entry = from + unitsBefore_;
    if (entry < known_.from || entry > known_.last || known_.from == known_.last) {
        const std::size_t last = nextOf(runEnds_, entry);
        if (last == kNowhere)
            return false;
        known_ = {entry, runBegin(steps_[firstRun_].set, last, entry), last};
    }
    from = std::max(from, known_.begin - unitsBefore_);
    return true;
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
        if (place < end_ && has(place, 1U << step.set))
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

std::size_t Chain::passRun(const Step& step, std::size_t place)
{
    const std::size_t last = place + std::min(step.most, end_ - place);
    const std::size_t end =
        place < last && has(place, 1U << step.set) ? runEnd(step.set, place, last) : place;
    spent_ += end - place;
    // A run that stopped because it had its most units would go further from a later start: nothing is
    // learnt.
    if (numberOf(step) == firstRun_ && (end < last || last == end_))
        runEnd_ = end;
    return end - place < step.fewest ? kNowhere : end;
}

std::size_t Chain::passReference(std::uint32_t group, std::size_t place)
{
    const std::size_t from = slots_[2 * group];
    assert(from <= slots_[2 * group + 1]);
    const std::size_t length = slots_[2 * group + 1] - from;
    if (length > end_ - place)
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
    const bool first = place == begin_;
    const bool last = place == end_;
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

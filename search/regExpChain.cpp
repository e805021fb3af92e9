#include "search/regExpChain.h"

#include <algorithm>
#include <bit>

namespace vellums::regexp {
namespace {

constexpr std::size_t kMostSets = 14;
constexpr unsigned kWord = 1U << 14;
constexpr unsigned kLineEnd = 1U << 15;

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
    findSkips(steps.sets);
    const auto withNumber = [&sets = steps.sets](const UnitSet& set) {
        const auto found = std::find(sets.begin(), sets.end(), set);
        const auto number = static_cast<std::size_t>(found - sets.begin());
        if (found == sets.end())
            sets.push_back(set);
        return number;
    };
    beginnings_ = withNumber(steps.beginnings);
    lineEnds_ = withNumber(lineEnds());
    for (const UnitSet& set : steps.sets)
        sets_.emplace_back(set);
    rows_.assign(sets_.size(), {kNowhere, 0});
}

void Chain::findSkips(const std::vector<UnitSet>& sets)
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
    startsAtEdge_ = units == 0 && steps_[0].kind == Step::Kind::Assert &&
        steps_[0].assertion == Assertion::WordEdge &&
        !sets[steps_[firstRun_].set].meets(wordUnits().complement());
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
    begin_ = begin;
    end_ = end;
    spent_ = 0;
}

Chain::Found Chain::next(std::size_t from)
{
    for (std::size_t start = nextStart(from); start != kNowhere; start = nextStart(afterFailure(start))) {
        if (spent_ > kAtLeast + kForEachUnit * (start - begin_))
            return {start, kNowhere};
        if (const std::size_t end = match(start); end != kNowhere)
            return {start, end};
    }
    return {kNowhere, kNowhere};
}

std::uint64_t Chain::bitsOf(std::size_t set, std::size_t row)
{
    Row& known = rows_[set];
    if (known.number != row)
        known = {row, sets_[set].at(text_, row * kRow)};
    return known.bits;
}

std::size_t Chain::nextOf(std::size_t set, std::size_t from)
{
    for (; from < end_; from = (from / kRow + 1) * kRow) {
        const std::uint64_t bits = bitsOf(set, from / kRow) >> from % kRow;
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

std::size_t Chain::nextStart(std::size_t from)
{
    if (!startsAtLine_)
        return nextOf(beginnings_, from);
    if (from == begin_)
        return from;
    const std::size_t lineEnd = multiline_ ? nextOf(lineEnds_, from - 1) : kNowhere;
    return lineEnd == kNowhere ? kNowhere : lineEnd + 1;
}

// Starts from which the first run would begin further on in the same row of units end like the last one.
std::size_t Chain::afterFailure(std::size_t start) const
{
    if (runEnd_ == kNowhere)
        return start + 1;
    if (startsAtEdge_)
        return std::max(start + 1, runEnd_);
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
    if (numberOf(step) == firstRun_ && (end < last || last == end_))
        runEnd_ = end;
    return end - place < step.fewest ? kNowhere : end;
}

std::size_t Chain::passReference(std::uint32_t group, std::size_t place)
{
    const std::size_t from = slots_[2 * group];
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

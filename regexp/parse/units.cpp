// A set is kept as its ranges, sorted, apart from each other and with a gap between any two, so that equal
// sets are equal lists and can be sorted and looked up as such. Sets of patterns have few ranges, and every
// operation goes through them once. Where units are looked up one by one, as in a scan, whoever does so makes
// a table of the set for itself.
#include "regexp/parse/units.h"

#include "text/capitalLetters.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <map>

namespace vellums::regexp {
namespace {

// The table maps every unit to its capital letter, or to itself; a capital letter maps to itself, so folding
// twice is folding once. Up to four units share a form: the micro sign, the small and the capital letter mu
// are three with one.
struct Folding {
    std::array<char16_t, kUnits> to{};
    std::map<char16_t, std::vector<char16_t>> groups; // folded form -> its units, where more than one

    Folding()
    {
        for (std::uint32_t unit = 0; unit < kUnits; ++unit)
            to[unit] = static_cast<char16_t>(unit);
        for (const text::LetterRun& run : text::capitalRuns())
            for (std::uint32_t unit = run.first; unit <= run.last; unit += run.step)
                to[unit] = static_cast<char16_t>(static_cast<std::int32_t>(unit) + run.delta);
        for (std::uint32_t unit = 0; unit < kUnits; ++unit)
            if (to[unit] != unit)
                groups[to[unit]].push_back(static_cast<char16_t>(unit));
        for (auto& [form, units] : groups) {
            if (to[form] == form)
                units.push_back(form);
            std::sort(units.begin(), units.end());
        }
    }
};

const Folding& folding()
{
    static const Folding table;
    return table;
}

} // namespace

char16_t folded(char16_t unit)
{
    return folding().to[unit];
}

const char16_t* foldTable()
{
    return folding().to.data();
}

std::vector<char16_t> sameFolded(char16_t unit)
{
    const auto found = folding().groups.find(folded(unit));
    return found == folding().groups.end() ? std::vector<char16_t>{unit} : found->second;
}

UnitSet::UnitSet(std::vector<UnitRange> ranges)
{
    std::sort(ranges.begin(), ranges.end());
    for (const UnitRange& range : ranges) {
        assert(range.first <= range.last && range.last < kUnits);
        if (!ranges_.empty() && range.first <= ranges_.back().last + 1)
            ranges_.back().last = std::max(ranges_.back().last, range.last);
        else
            ranges_.push_back(range);
    }
}

bool UnitSet::contains(char16_t unit) const
{
    const auto after = std::upper_bound(ranges_.begin(), ranges_.end(), unit,
        [](std::uint32_t value, const UnitRange& range) { return value < range.first; });
    return after != ranges_.begin() && unit <= std::prev(after)->last;
}

std::size_t UnitSet::size() const
{
    std::size_t count = 0;
    for (const UnitRange& range : ranges_)
        count += range.last - range.first + 1;
    return count;
}

bool UnitSet::meets(const UnitSet& other) const
{
    auto a = ranges_.begin();
    auto b = other.ranges_.begin();
    while (a != ranges_.end() && b != other.ranges_.end()) {
        if (a->last < b->first)
            ++a;
        else if (b->last < a->first)
            ++b;
        else
            return true;
    }
    return false;
}

UnitSet UnitSet::complement() const
{
    UnitSet result;
    std::uint32_t next = 0;
    for (const UnitRange& range : ranges_) {
        if (range.first > next)
            result.ranges_.push_back({next, range.first - 1});
        next = range.last + 1;
    }
    if (next < kUnits)
        result.ranges_.push_back({next, kUnits - 1});
    return result;
}

UnitSet UnitSet::with(const UnitSet& other) const
{
    std::vector<UnitRange> all = ranges_;
    all.insert(all.end(), other.ranges_.begin(), other.ranges_.end());
    return UnitSet(std::move(all));
}

UnitSet UnitSet::withFolded() const
{
    std::vector<UnitRange> all = ranges_;
    // About a thousand groups are looked at, rather than the units of the set, which may be nearly all there
    // are.
    for (const auto& [form, units] : folding().groups) {
        const bool met =
            std::any_of(units.begin(), units.end(), [this](char16_t unit) { return contains(unit); });
        if (met)
            for (const char16_t unit : units)
                all.push_back({unit, unit});
    }
    return UnitSet(std::move(all));
}

UnitSet digits()
{
    return UnitSet({{'0', '9'}});
}

UnitSet wordUnits()
{
    return UnitSet({{'0', '9'}, {'A', 'Z'}, {'_', '_'}, {'a', 'z'}});
}

UnitSet blanks()
{
    return UnitSet({{'\t', '\r'}, {' ', ' '}});
}

UnitSet lineEnds()
{
    return UnitSet({{'\n', '\n'}, {'\r', '\r'}});
}

} // namespace vellums::regexp

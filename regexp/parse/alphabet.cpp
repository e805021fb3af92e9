// Classes are found by splitting: at first all units are one class, and each set in turn gives a new name to
// the part of every class that lies in it. The units between two neighbouring borders of any ranges are never
// told apart, so names are given to those stretches and not to 65536 units.
#include "regexp/parse/alphabet.h"

#include <algorithm>
#include <unordered_map>

namespace vellums::regexp {
namespace {

// Where the sets' ranges begin and end: between two neighbours all units are alike.
std::vector<std::uint32_t> bordersOf(const std::vector<UnitSet>& sets)
{
    std::vector<std::uint32_t> borders = {0, kUnits};
    for (const UnitSet& set : sets) {
        for (const UnitRange& range : set.ranges()) {
            borders.push_back(range.first);
            borders.push_back(range.last + 1);
        }
    }
    std::sort(borders.begin(), borders.end());
    borders.erase(std::unique(borders.begin(), borders.end()), borders.end());
    return borders;
}

std::size_t placeOf(const std::vector<std::uint32_t>& borders, std::uint32_t border)
{
    return static_cast<std::size_t>(
        std::lower_bound(borders.begin(), borders.end(), border) - borders.begin());
}

} // namespace

Alphabet::Alphabet()
    : table_(kUnits)
{
}

void Alphabet::tellApart(const std::vector<UnitSet>& sets)
{
    const std::vector<std::uint32_t> borders = bordersOf(sets);
    std::vector<std::uint32_t> classes(borders.size() - 1, 0);
    std::uint32_t count = 1;
    for (const UnitSet& set : sets) {
        // The smaller of the set and its complement splits the same classes.
        const UnitSet rest = set.complement();
        const UnitSet& parts = set.size() <= rest.size() ? set : rest;
        std::unordered_map<std::uint32_t, std::uint32_t> renamed;
        for (const UnitRange& range : parts.ranges()) {
            const std::size_t end = placeOf(borders, range.last + 1);
            // One new name for each old one that is met in the set: what was one class stays one, inside and
            // outside.
            for (std::size_t i = placeOf(borders, range.first); i < end; ++i)
                classes[i] = renamed.try_emplace(classes[i], count + renamed.size()).first->second;
        }
        count += static_cast<std::uint32_t>(renamed.size());
    }
    // Names that nobody bears any more are given up.
    std::unordered_map<std::uint32_t, std::uint32_t> dense;
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const std::uint32_t number =
            dense.try_emplace(classes[i], static_cast<std::uint32_t>(dense.size())).first->second;
        std::fill(table_.begin() + borders[i], table_.begin() + borders[i + 1], static_cast<ClassNo>(number));
    }
    count_ = static_cast<std::uint32_t>(dense.size());
}

std::vector<ClassNo> Alphabet::classesOf(const UnitSet& set) const
{
    std::vector<bool> met(count_);
    for (const UnitRange& range : set.ranges())
        for (std::uint32_t unit = range.first; unit <= range.last; ++unit)
            met[table_[unit]] = true;
    std::vector<ClassNo> classes;
    for (std::uint32_t number = 0; number < count_; ++number)
        if (met[number])
            classes.push_back(static_cast<ClassNo>(number));
    return classes;
}

} // namespace vellums::regexp

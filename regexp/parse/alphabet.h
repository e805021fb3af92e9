// Units that no set of a pattern tells apart count as one class; automata run over classes.
#pragma once

#include "regexp/parse/units.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vellums::regexp {

using ClassNo = std::uint16_t;

class Alphabet {
public:
    // One class at first.
    Alphabet();
    // Makes the classes anew: none lies half in one of the sets.
    void tellApart(const std::vector<UnitSet>& sets);

    std::uint32_t size() const { return count_; }
    ClassNo of(char16_t unit) const { return table_[unit]; }
    const ClassNo* table() const { return table_.data(); } // for each of the 65536 units
    // The classes of the set's units, which the set was told apart for, ascending.
    std::vector<ClassNo> classesOf(const UnitSet& set) const;

private:
    std::vector<ClassNo> table_;
    std::uint32_t count_ = 1;
};

} // namespace vellums::regexp

// A pattern as a tree. Nodes lie in one list and name each other by number, children before parents.
#pragma once

#include "regexp/parse/units.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vellums::regexp {

using NodeNo = std::uint32_t;

enum class NodeKind : std::uint8_t {
    Unit,          // one unit out of a set
    Sequence,      // children one after the other; none: the empty text
    Either,        // the first child that leads to a match
    Repeat,        // the child, fewest to most times
    Group,         // the child, remembered under a number
    Look,          // the child matches here, or does not (negative); takes nothing
    BackReference, // what a group holds
    Assert,        // a condition on the place
};

enum class Assertion : std::uint8_t { Start, End, WordEdge, NoWordEdge };

inline constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;
inline constexpr std::uint32_t kMostCount = 0x7FFFFFFF; // larger counts mean this one

struct Node {
    NodeKind kind = NodeKind::Sequence;
    Assertion assertion = Assertion::Start;
    bool lazy = false;     // Repeat
    bool negative = false; // Look
    bool hasBackReference = false;
    bool hasCondition = false;    // holds Look or Assert
    std::uint32_t set = 0;        // Unit: its number among the sets
    std::uint32_t number = 0;     // Group, BackReference: from 1
    std::uint32_t fewest = 0;     // Repeat
    std::uint32_t most = 0;       // kNoLimit: any number
    std::uint32_t groupsFrom = 0; // the groups in it: from this number
    std::uint32_t groupsTo = 0;   // to before this one
    std::uint64_t minLength = 0;  // units that a match has at least
    std::vector<NodeNo> children;
};

struct Tree {
    std::vector<Node> nodes;
    std::vector<UnitSet> sets;
    NodeNo root = 0;
    std::uint32_t groupCount = 0;
    bool ignoreCase = false;
    bool multiline = false;
};

// In parser.cpp. Throws RegExpError. Neither the length nor the nesting of the pattern is a danger to the
// stack.
Tree parsePattern(std::u16string_view pattern, bool ignoreCase, bool multiline);

} // namespace vellums::regexp

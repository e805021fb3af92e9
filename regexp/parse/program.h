// A pattern as instructions, read in two ways: forwards in order of preference, and backwards as an
// automaton that answers from where a match can still be reached.
#pragma once

#include "regexp/parse/alphabet.h"
#include "regexp/parse/tree.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vellums::regexp {

using Place = std::uint32_t; // an instruction, by its number

enum class Op : std::uint8_t {
    Unit,          // takes one unit of `value`, a set
    Split,         // goes on at `next`, or else at `other`
    Assert,        // goes on where `assertion` holds
    Look,          // goes on where the look-ahead `value` holds
    Accept,        // the end of the pattern or of a look-ahead
    BackReference, // takes what group `value` holds; read backwards: what lies between `other` and `next`
    Save,          // the place in the text becomes slot `value`
    Forget,        // slots from `value` to before `other` become empty
    Enter,         // a pass of a loop begins that may take nothing
    Leave,         // it ends; fails when it took nothing
};

struct Instruction {
    Op op;
    Assertion assertion = Assertion::Start;
    Place next = 0;
    Place other = 0;
    std::uint32_t value = 0;
    std::uint32_t depth = 0; // loops around it that have Enter and Leave; Enter and Leave count their own
    std::uint32_t graph = 0; // 0: the pattern itself; n: look-ahead n - 1
};

struct LookAhead {
    Place entry = 0;
    bool negative = false;
    bool unknown = false; // read backwards it counts as holding: back references decide
};

// What stands beside a place, as far as assertions ask.
enum class Beside : std::uint8_t { Nothing, Word, LineEnd, Other };

struct Program {
    std::vector<Instruction> instructions;
    Place start = 0;
    std::vector<LookAhead> lookAheads; // an inner one has a higher number than the one around it
    std::uint32_t slots = 0;           // two for each group; none where no reference asks
    std::uint32_t deepest = 0;         // the highest depth
    bool hasBackReference = false;
    bool asksBefore = false; // some assertion depends on what stands before a place
    bool multiline = false;
    bool ignoreCase = false;
    std::uint64_t minLength = 0;

    // Counts above this many units were cut, which no shorter text can tell.
    std::size_t countLimit = 0;
    bool countsCut = false;

    Alphabet alphabet;
    std::vector<Beside> besideOfClass;
    std::vector<std::vector<bool>> setHolds; // by set, by class

    // The Unit instructions: those of inner look-aheads first, the pattern's own last.
    std::vector<Place> positions;
    std::vector<std::uint32_t> positionOf; // by instruction
    // Which instructions lead to one without taking a unit: before[firstBefore[i]] ...
    std::vector<std::uint32_t> firstBefore;
    std::vector<Place> before;
    // And which Unit instructions lead to one, by position.
    std::vector<std::uint32_t> firstUnitBefore;
    std::vector<std::uint32_t> unitsBefore;

    Beside beside(char16_t unit) const { return besideOfClass[alphabet.of(unit)]; }
};

bool holds(Assertion assertion, bool multiline, Beside left, Beside right);

// In compiler.cpp. For texts of up to countLimit units; without cut counts for any. Throws RegExpError 7 when
// the program would be too large.
Program compile(const Tree& tree, std::size_t countLimit);

} // namespace vellums::regexp

// Why a pattern or a search with it is refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace vellums::regexp {

// Why, with the number under which scripts know it from their own regular expressions.
enum class RegExpFault : std::int32_t {
    OutOfMemory = 7, // a search beyond its limits
    NestedTooDeeply = 28,
    Syntax = 5017,
    Quantifier = 5018, // where none can stand
    OpenClass = 5019,  // no "]"
    OpenGroup = 5020,  // no ")"
    Range = 5021,      // of a class, the wrong way round
};

// Carries the number and the sentence that scripts know.
struct RegExpError : std::exception {
    RegExpError(RegExpFault fault, std::optional<std::size_t> where);

    const char* what() const noexcept override { return "regular expression refused"; }

    std::int32_t number;
    std::u16string description;
    std::optional<std::size_t> position; // in the pattern, in units; none when no place is to blame
};

} // namespace vellums::regexp

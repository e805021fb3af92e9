// Why a pattern or a search with it is refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace vellums {

// Carries the number and the sentence that scripts know from their own regular expressions:
//
//   5017 syntax error, 5018 unexpected quantifier, 5019 expected ']', 5020 expected ')',
//   5021 invalid range in a class, 7 out of memory (a search beyond its limits), 28 nested too deeply
struct RegExpError : std::exception {
    RegExpError(std::int32_t code, std::optional<std::size_t> where);

    const char* what() const noexcept override { return "regular expression refused"; }

    std::int32_t number;
    std::u16string description;
    std::optional<std::size_t> position; // in the pattern, in units; none when no place is to blame
};

} // namespace vellums

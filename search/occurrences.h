// Every place in a record's text where a find keyword occurs, as the result list shows them.
#pragma once

#include "regexp/regExp.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellums {

struct Occurrence {
    std::int32_t position; // units from the start of the whole text
    std::u16string text;   // as it stands there
};

inline constexpr std::size_t kMostOccurrences = 32767;

struct Occurrences {
    std::vector<Occurrence> list; // ascending, kMostOccurrences at most
    // Why the search ended before the end of the text, other than by the length of the list; then the
    // list holds what was found before. 6: a column beyond 32767; the others are RegExp's.
    struct Ending {
        std::int32_t number;
        std::u16string description;
        std::optional<std::size_t> position; // in the keyword, where a place in it is to blame
    };
    std::optional<Ending> ending;
};

// The keyword is a regular expression, and case does not count. Lines end at CR LF, and none is
// searched beyond its end. Within a line, each match is listed where its text stands first behind the
// beginning of the entry before it, which need not be where the expression met it.
Occurrences findOccurrences(std::u16string_view text, std::u16string_view keyword);

} // namespace vellums

// The one query that fills the heading list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellums {

// Every listing holds at most so many headings.
inline constexpr int kMaxListed = 32767;

// What was typed into the search box as a pattern: trimmed, blanks and "*" become "%".
std::u16string searchPattern(std::u16string_view words);

struct HeadingQuery {
    std::u16string table;
    std::vector<std::u16string> columns; // searched, in menu order
    std::u16string pattern;              // of searchPattern()
    bool byTitle = false;
    bool ascending = false; // by date
};

// The statement. With no column the condition is empty and the provider refuses it.
std::u16string headingStatement(const HeadingQuery& query);

} // namespace vellums

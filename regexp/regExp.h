// Regular expressions with the syntax and the meaning that scripts on Windows know: those of the third
// edition of ECMAScript, over UTF-16 units. The same results on every system.
//
// Groups, back references \1 to \99, look-ahead (?= ) (?! ), lazy quantifiers, classes; \d \w \s \b are
// about ASCII; "." stops at LF only; "^" and "$" stand for the ends of the text alone. Without regard to
// case, units count as equal that have the same upper-case form.
//
// The time of a search grows with the length of the text, whatever the pattern; patterns with back
// references, which nobody knows to bound so, are given an allowance of steps, and using it up ends the
// search with an error. Memory grows with the length of the text at most.
#pragma once

#include "regexp/parse/regExpError.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::regexp {

struct RegExpMatch {
    std::size_t FirstIndex = 0; // units from the start of the text
    std::size_t Length = 0;
    friend bool operator==(const RegExpMatch&, const RegExpMatch&) = default;
};

struct RegExpLineMatch {
    std::size_t lineStart = 0; // units from the start of the text
    std::size_t position = 0;  // the same
    std::size_t length = 0;    // never 0
};

class RegExp {
public:
    RegExp();
    ~RegExp();
    RegExp(RegExp&&) noexcept;
    RegExp& operator=(RegExp&&) noexcept;

    // May be changed at any time. A bad pattern is reported by the first search with it.
    std::u16string Pattern;
    bool IgnoreCase = false;
    bool Global = false;    // all matches, not only the first
    bool Multiline = false; // "^" and "$" also at line ends

    // The matches from left to right; none overlaps another. Behind an empty match the search goes on
    // one unit further. Throws RegExpError. The program itself searches line by line, below; scripts know
    // this form, and tests compare by it.
    std::vector<RegExpMatch> Execute(std::u16string_view text);
    bool Test(std::u16string_view text);

    // Takes each line of the text for a text of its own and visits the matches that are not empty, as
    // if Execute ran over line after line with Global set. Lines end at CR LF; a lone CR or LF is part
    // of a line. Ends early when the visitor gives false. Throws RegExpError; what was visited before
    // is right.
    using Visitor = std::function<bool(const RegExpLineMatch&)>;
    void findInLines(std::u16string_view text, const Visitor& visit);

private:
    struct Compiled;
    Compiled& compiled();
    template <typename Visit>
    void forEach(std::u16string_view text, Visit visit); // visit(first, end), until it gives false

    std::unique_ptr<Compiled> compiled_;
};

} // namespace vellums::regexp

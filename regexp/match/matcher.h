// Finds the matches of one program in texts. Keeps what it learns about the program from text to text.
#pragma once

#include "regexp/match/backtrack.h"
#include "regexp/match/guide.h"
#include "regexp/match/walk.h"

#include <cstddef>
#include <string_view>

namespace vellums::regexp {

class Matcher {
public:
    explicit Matcher(const Program& program);

    // visit(first, end) for each match in `text` from `from` on, from left to right, until it gives
    // false. False: it did. Throws RegExpError 7.
    template <typename Visit>
    bool forEach(std::u16string_view text, std::size_t from, Effort& effort, Visit visit)
    {
        if (program_.minLength > text.size())
            return true;
        return program_.hasBackReference ? tryAll(text, from, effort, visit)
                                         : walkAll(text, from, effort, visit);
    }

private:
    static std::size_t behind(std::size_t first, std::size_t end) { return end == first ? end + 1 : end; }

    template <typename Visit>
    bool walkAll(std::u16string_view text, std::size_t from, Effort& effort, Visit& visit)
    {
        if (!guide_.take(text, effort))
            return true;
        for (auto first = guide_.begin(from); first; first = guide_.begin(from)) {
            const std::size_t end = walk_.endOf(guide_, *first);
            if (!visit(*first, end))
                return false;
            from = behind(*first, end);
        }
        return true;
    }

    template <typename Visit>
    bool tryAll(std::u16string_view text, std::size_t from, Effort& effort, Visit& visit)
    {
        const auto taken = guide_.takeWhole(text, effort);
        if (taken && !*taken)
            return true;
        Guide* const guide = taken ? &guide_ : nullptr;
        for (; from <= text.size(); ++from) {
            if (guide != nullptr) {
                const auto first = guide->begin(from);
                if (!first)
                    return true;
                from = *first;
            }
            const auto end = backtrack_.endOf(text, from, guide, effort);
            if (!end)
                continue;
            if (!visit(from, *end))
                return false;
            from = behind(from, *end) - 1;
        }
        return true;
    }

    const Program& program_;
    Walk walk_;
    Guide guide_;
    Backtrack backtrack_;
};

} // namespace vellums::regexp

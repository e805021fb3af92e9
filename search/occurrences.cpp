// A match is not listed where the expression met it but where its text stands first, counted from behind the
// beginning of the entry before in the same line. For most expressions that is the same place. It differs
// where an earlier piece of the line is spelt alike without being a match, as with "$" or "\b": then the
// earlier piece is listed. Positions ascend all the same, as each search starts behind the last place, and
// never leads further than to the match itself.
#include "search/occurrences.h"

#include <cassert>

namespace vellums {
namespace {

constexpr std::size_t kLastColumn = 32767; // counted from 1

struct ColumnTooLarge { };

// Gives the matches of one text their columns.
class Columns {
public:
    explicit Columns(std::u16string_view text)
        : text_(text)
    {
    }

    // Units from the start of the text.
    std::size_t placeOf(const regexp::RegExpLineMatch& match)
    {
        if (!line_ || *line_ != match.lineStart) {
            line_ = match.lineStart;
            next_ = match.lineStart;
        }
        // No further than the match itself, so what is searched for is always found.
        const std::size_t place = text_.find(text_.substr(match.position, match.length), next_);
        assert(place <= match.position);
        if (place - match.lineStart >= kLastColumn)
            throw ColumnTooLarge();
        next_ = place + 1;
        return place;
    }

private:
    std::u16string_view text_;
    std::optional<std::size_t> line_;
    std::size_t next_ = 0;
};

} // namespace

Occurrences findOccurrences(std::u16string_view text, std::u16string_view keyword)
{
    Occurrences result;
    regexp::RegExp regExp;
    regExp.Pattern = keyword;
    regExp.IgnoreCase = true;
    Columns columns(text);
    try {
        regExp.findInLines(text, [&](const regexp::RegExpLineMatch& match) {
            const std::size_t place = columns.placeOf(match);
            result.list.push_back({static_cast<std::int32_t>(place),
                std::u16string(text.substr(match.position, match.length))});
            return result.list.size() < kMostOccurrences;
        });
    } catch (const regexp::RegExpError& e) {
        result.ending = {e.number, e.description, e.position};
    } catch (const ColumnTooLarge&) {
        result.ending = {6, u"Overflow", {}};
    }
    return result;
}

} // namespace vellums

#include "text/pieces.h"

#include "text/letterCase.h"

#include <cassert>

namespace vellums::text {
namespace {

// The replacement, with the places to search in and the text to search for already alike in case.
std::u16string replaceFound(
    std::u16string_view text, std::u16string_view searched, std::u16string_view from, std::u16string_view to)
{
    assert(text.size() == searched.size());
    std::u16string out;
    out.reserve(text.size());
    std::size_t done = 0;
    while (!from.empty()) {
        const std::size_t found = searched.find(from, done);
        if (found == std::u16string_view::npos)
            break;
        out.append(text.substr(done, found - done)).append(to);
        done = found + from.size();
    }
    out.append(text.substr(done));
    return out;
}

} // namespace

std::u16string replaceAll(std::u16string_view text, std::u16string_view from, std::u16string_view to)
{
    return replaceFound(text, text, from, to);
}

std::u16string replaceAllNoCase(std::u16string_view text, std::u16string_view from, std::u16string_view to)
{
    return replaceFound(text, lowerCase(text), lowerCase(from), to);
}

std::u16string_view trimBlanks(std::u16string_view text)
{
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

std::vector<std::u16string> split(std::u16string_view text, std::u16string_view separator)
{
    std::vector<std::u16string> pieces;
    for (;;) {
        const std::size_t found = text.find(separator);
        pieces.emplace_back(text.substr(0, found));
        if (found == std::u16string_view::npos)
            return pieces;
        text.remove_prefix(found + separator.size());
    }
}

} // namespace vellums::text

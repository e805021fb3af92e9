// The titles that texts and files get when nobody gives them one.
#pragma once

#include <string>
#include <string_view>

namespace vellums::text {

// The title for a text that comes without one: a mail's subject, or the first 50 characters of the first
// line.
std::u16string titleOf(std::u16string_view text);

// The title of an imported file: its name without folder and extension, at most 100 characters and "...",
// where an apostrophe counts twice. Where the last dot lies in a folder's name, that folder's name up to it.
// Empty when the path has no dot, and when the last one begins a name or ends that of a folder.
std::u16string titleFromPath(std::u16string_view path);

} // namespace vellums::text

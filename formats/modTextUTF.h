// Whole text files in one piece. Failures are answers here, never exceptions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vellums::formats {

// The encoding of a text file. Only the mark at its beginning tells; a file without one is Ansi.
//
//   Utf8     EF BB BF        Utf16Le  FF FE           Utf32Le  FF FE 00 00
//                            Utf16Be  FE FF           Utf32Be  00 00 FE FF
enum class Encoding : std::int32_t { Detect = -1, Ansi, Utf8, Utf16Le, Utf16Be, Utf32Le, Utf32Be };

// The text of a file. Detect is replaced by what the mark says; any other encoding rules, and a mark
// of a different one is then read as text. Empty when the file is missing, held by others, empty, of
// 2 GiB and more or in UTF-32, or when the encoding is none of those named. The path passes through
// the ANSI code page.
std::u16string readTextFile(const std::u16string& path, Encoding& encoding);

// The same, and whether that is the whole file: false where the text is empty for another reason than
// that the file is, and where reading failed half way.
struct TextRead {
    std::u16string text;
    bool whole = false;
};
TextRead readTextFileWhole(const std::u16string& path, Encoding& encoding);

struct TextWriting {
    bool append = false;               // else the file begins anew
    Encoding ifEmpty = Encoding::Ansi; // what Detect means for a new or empty file
    bool writeMark = false;            // never into a file that has content and is appended to
};

// Writes the text. Detect may stand only where text is appended, and is replaced by what the file's
// mark says. False when the file cannot be written or the encoding is UTF-32 or none.
bool writeTextFile(
    const std::u16string& path, std::u16string_view text, Encoding& encoding, const TextWriting& how);

} // namespace vellums::formats

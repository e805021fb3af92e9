// The digest by which equal texts are found.
//
// It is the MD5 of RFC 1321 over one byte for each code unit of the text: its low byte. Texts of plain
// ASCII thus have their usual MD5; of other characters the high byte does not count. Digests that are
// stored already depend on this.
#pragma once

#include <string>
#include <string_view>

namespace vellums::text {

inline constexpr int kMd5Digits = 32;

class clsMD5 {
public:
    // kMd5Digits lower-case hexadecimal digits.
    std::u16string MD5(std::u16string_view text) const;
};

} // namespace vellums::text

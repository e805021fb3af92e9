// The bytes of a text file, read in every encoding; a Unicode text comes back when it is written again.
#include "formats/modTextUTF.h"
#include "fuzz/target.h"
#include "text/textCleanup.h"

namespace vellums::fuzz {

std::vector<std::string> seeds()
{
    using namespace std::string_literals;
    return {"plain text\r\n  second line\n\n\n\nend",
        "\xEF\xBB\xBF"
        "中文 ガ"s,
        "\xFF\xFE"
        "a\0b\0\r\0\n\0"s,
        "\xFE\xFF\0a\0b\xD8\x3D\xDE\0"s, "\xFF\xFE\0\0a\0\0\0"s, "\0\0\xFE\xFF\0\0\0a"s, ""};
}

} // namespace vellums::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vellums;
    using formats::Encoding;
    const std::u16string path = fuzz::workFile(u"input.txt");
    const std::u16string copy = fuzz::workFile(u"copy.txt");
    fuzz::writeWorkFile(path, data, size);
    for (std::int32_t code = -2; code <= 6; ++code) {
        Encoding encoding = static_cast<Encoding>(code);
        const std::u16string text = formats::readTextFile(path, encoding);
        text::cleanBody(text);
        Encoding out = Encoding::Utf16Le;
        fuzz::require(formats::writeTextFile(copy, text, out, {.writeMark = true}), "a text is not written");
        if (text.empty() || text[0] == 0)
            continue; // behind the mark, U+0000 makes it that of UTF-32
        Encoding in = Encoding::Detect;
        fuzz::require(formats::readTextFile(copy, in) == text, "a text does not come back");
    }
    return 0;
}

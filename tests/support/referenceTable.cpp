#include "tests/support/referenceTable.h"

#include "text/pieces.h"
#include "text/unicode.h"

#include <cstdlib>
#include <fstream>

namespace vellums::tests {

std::optional<std::vector<std::vector<std::u16string>>> referenceTable(const std::string& name)
{
    const char* fixtures = std::getenv("VELLUMS_FIXTURES");
    const std::string folder = fixtures ? fixtures : VELLUMS_SOURCE_DIR "/../shared/fixtures";
    std::ifstream file(folder + "/../reference/" + name, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::vector<std::vector<std::u16string>> rows;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line))
        rows.push_back(text::split(text::fromUtf8(line), u"\t"));
    return rows;
}

std::u16string unescaped(const std::u16string& text)
{
    std::u16string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const char16_t c = text[++i];
        result += c == u't' ? u'\t' : c == u'r' ? u'\r' : c == u'n' ? u'\n' : c;
    }
    return result;
}

} // namespace vellums::tests

// A pattern and a text. The first byte holds the properties, the second the length of the pattern in
// bytes; both are UTF-8, and U+E000 to U+E7FF stand for halves of surrogate pairs. The search refuses the
// pattern or gives matches in order; short ones are those of the reference matcher, whole texts give what
// their lines give, and a pattern finds the same as a part of a larger one.
#include "fuzz/target.h"
#include "regexp/regExp.h"
#include "tests/regexp/reference.h"
#include "text/unicode.h"

#include <algorithm>

namespace vellums::fuzz {
namespace {

std::string seed(unsigned flags, const std::string& pattern, const std::string& text)
{
    return std::string{static_cast<char>(flags), static_cast<char>(pattern.size())} + pattern + text;
}

std::u16string decoded(std::string_view bytes)
{
    std::u16string text = text::fromUtf8(bytes);
    for (char16_t& unit : text)
        if (unit >= 0xE000 && unit < 0xE800)
            unit = static_cast<char16_t>(unit - 0x800);
    return text;
}

void checkAgainstReference(
    const regexp::RegExp& regExp, std::u16string_view text, const std::vector<regexp::RegExpMatch>& matches)
{
    constexpr std::size_t kLongestPattern = 40;
    constexpr std::size_t kLongestText = 30;
    if (regExp.Pattern.size() > kLongestPattern || text.size() > kLongestText)
        return;
    const regexp::Tree tree = regexp::parsePattern(regExp.Pattern, regExp.IgnoreCase, regExp.Multiline);
    const bool hasLargeCount =
        std::any_of(tree.nodes.begin(), tree.nodes.end(), [](const regexp::Node& node) {
            return node.fewest > 50 || (node.most > 50 && node.most != regexp::kNoLimit);
        });
    if (hasLargeCount)
        return;
    const auto expected = regexp::referenceMatches(tree, text, regExp.Global);
    if (!expected)
        return;
    require(expected->size() == matches.size(), "another number of matches");
    for (std::size_t i = 0; i < matches.size(); ++i)
        require((*expected)[i] == std::pair(matches[i].FirstIndex, matches[i].FirstIndex + matches[i].Length),
            "another match");
}

// As one of two ways, the other of which never matches, the pattern takes none of the engine's shortcuts.
void checkAsOneOfTwo(
    const regexp::RegExp& regExp, std::u16string_view text, const std::vector<regexp::RegExpMatch>& matches)
{
    regexp::RegExp either;
    either.Pattern = u"(?:" + regExp.Pattern + u"|[])";
    either.IgnoreCase = regExp.IgnoreCase;
    either.Global = regExp.Global;
    either.Multiline = regExp.Multiline;
    std::vector<regexp::RegExpMatch> expected;
    try {
        expected = either.Execute(text);
    } catch (const regexp::RegExpError&) {
        return; // it may be nested too deeply now, or try too much
    }
    require(matches == expected, "a shortcut finds something else");
}

void checkLines(regexp::RegExp& regExp, std::u16string_view text)
{
    std::vector<regexp::RegExpMatch> expected;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(u"\r\n", start), text.size());
        for (const regexp::RegExpMatch& match : regExp.Execute(text.substr(start, end - start)))
            if (match.Length > 0)
                expected.push_back({start + match.FirstIndex, match.Length});
        start = end + 2;
    }
    std::vector<regexp::RegExpMatch> found;
    regExp.findInLines(text, [&found](const regexp::RegExpLineMatch& match) {
        found.push_back({match.position, match.length});
        return true;
    });
    require(found == expected, "a text gives other matches than its lines");
}

void search(regexp::RegExp& regExp, std::u16string_view text)
{
    const std::vector<regexp::RegExpMatch> matches = regExp.Execute(text);
    require(regExp.Global || matches.size() <= 1, "more than one match");
    std::size_t place = 0;
    for (const regexp::RegExpMatch& match : matches) {
        require(match.FirstIndex >= place && match.Length <= text.size() - match.FirstIndex,
            "a match lies outside");
        place = match.FirstIndex + match.Length;
    }
    require(regExp.Test(text) == !matches.empty(), "Test and Execute differ");
    checkAgainstReference(regExp, text, matches);
    checkAsOneOfTwo(regExp, text, matches);
    if (regExp.Global)
        checkLines(regExp, text);
}

} // namespace

std::vector<std::string> seeds()
{
    return {seed(3, "(a+)+b|\\bc{2,3}?(?=d)", "aaab ccd\r\nccc"), seed(2, "(\\w+) \\1", "the the cat Cat"),
        seed(3, "[^\\w-]|[\xC3\xA9\\u4e00-\\x7f]*$", "\xC3\x89\xE4\xB8\xAD -"),
        seed(7, "^(?!x).*?(a|b|)\\2{0,300}", "ab\ncd\r\nef"),
        seed(2, "(?:a?){3}(a*)*\\10", "aaaa\xEE\x80\x80"),
        seed(3, "price: \\$?\\d+(\\.\\d{2})?", "Price: $12.50, price: 7"),
        seed(2, "red|green apple|[ab]+", "a green apple\r\nred ab"), seed(2, "a{2,1}", ""),
        seed(3, "[A-Z][a-z]+ [A-Z][a-z]+", "New York, new\r\nyork City"),
        seed(2, "\\b(\\w+) \\1\\b-?", "the the- cat ca"), seed(6, "^\\s*(?:a){1,9}[^b]*?b", "aaa\n aa-b"),
        seed(3, "\xCF\x83+(\xCE\xA3)\\1", "\xCF\x82\xCF\x83\xCE\xA3\xCF\x82")};
}

} // namespace vellums::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vellums;
    if (size < 2)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::size_t length = std::min<std::size_t>(data[1], bytes.size());
    regexp::RegExp regExp;
    regExp.IgnoreCase = (data[0] & 1) != 0;
    regExp.Global = (data[0] & 2) != 0;
    regExp.Multiline = (data[0] & 4) != 0;
    regExp.Pattern = fuzz::decoded(bytes.substr(0, length));
    try {
        fuzz::search(regExp, fuzz::decoded(bytes.substr(length)));
    } catch (const regexp::RegExpError& e) {
        fuzz::require(!e.description.empty() && (!e.position || *e.position <= regExp.Pattern.size()),
            "an error without its reason");
    }
    return 0;
}

#include "search/regExp.h"

#include "search/regExpMatcher.h"
#include "search/regExpProgram.h"

#include <algorithm>
#include <optional>

namespace vellums {

using regexp::Effort;

// What was made of Pattern and the properties beside it.
struct RegExp::Compiled {
    std::u16string pattern;
    bool ignoreCase;
    bool multiline;
    regexp::Tree tree;
    std::optional<regexp::Program> program;
    std::optional<regexp::Matcher> matcher;

    // Large counts are cut to what the text's length lets matter.
    regexp::Matcher& matcherFor(std::size_t length)
    {
        constexpr std::size_t kFirstLimit = 255;
        if (!program || (program->countsCut && program->countLimit < length)) {
            const std::size_t limit = program ? std::max(length, 2 * program->countLimit) : kFirstLimit;
            matcher.reset();
            program.reset();
            program.emplace(regexp::compile(tree, std::max(length, limit)));
            matcher.emplace(*program);
        }
        return *matcher;
    }
};

RegExp::RegExp() = default;
RegExp::~RegExp() = default;
RegExp::RegExp(RegExp&&) noexcept = default;
RegExp& RegExp::operator=(RegExp&&) noexcept = default;

RegExp::Compiled& RegExp::compiled(std::size_t)
{
    if (!compiled_ || compiled_->pattern != Pattern || compiled_->ignoreCase != IgnoreCase ||
        compiled_->multiline != Multiline) {
        compiled_.reset();
        regexp::Tree tree = regexp::parsePattern(Pattern, IgnoreCase, Multiline);
        compiled_ =
            std::make_unique<Compiled>(Compiled{Pattern, IgnoreCase, Multiline, std::move(tree), {}, {}});
    }
    return *compiled_;
}

std::vector<RegExpMatch> RegExp::Execute(std::u16string_view text)
{
    std::vector<RegExpMatch> matches;
    Compiled& made = compiled(text.size());
    if (made.tree.nodes[made.tree.root].minLength > text.size())
        return matches;
    Effort effort(text.size());
    made.matcherFor(text.size()).forEach(text, 0, effort, [&](std::size_t first, std::size_t end) {
        matches.push_back({first, end - first});
        return Global;
    });
    return matches;
}

bool RegExp::Test(std::u16string_view text)
{
    Compiled& made = compiled(text.size());
    if (made.tree.nodes[made.tree.root].minLength > text.size())
        return false;
    Effort effort(text.size());
    return !made.matcherFor(text.size()).forEach(text, 0, effort, [](std::size_t, std::size_t) {
        return false;
    });
}

void RegExp::findInLines(std::u16string_view text, const Visitor& visit)
{
    Compiled& made = compiled(text.size());
    Effort effort(text.size());
    for (std::size_t start = 0; start <= text.size();) {
        std::size_t end = text.find(u"\r\n", start);
        if (end == text.npos)
            end = text.size();
        const std::u16string_view line = text.substr(start, end - start);
        if (made.tree.nodes[made.tree.root].minLength <= line.size() &&
            !made.matcherFor(line.size()).forEach(line, 0, effort, [&](std::size_t first, std::size_t last) {
                return first == last || visit({start, start + first, last - first});
            }))
            return;
        start = end + 2;
    }
}

} // namespace vellums

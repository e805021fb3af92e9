// A search takes the cheapest way that can answer it, and goes on to the next where that one cannot:
//
//   1. the pattern is plain texts alone          LiteralScan finds them, nothing else runs
//   2. the text lacks what every match needs     LineSearch::promising() ends the search
//   3. the pattern leaves no choice              Chain goes through its steps, start by start
//   4. everything else                           Matcher: the automaton, then a walk or back-tracking
//
// Chain gives up by itself where it looks at units too often, and the Matcher goes on from there. The
// instructions that the Matcher needs are made when a text first comes that far, so that a pattern which is
// answered by the first three is never compiled. All ways find the same matches.
#include "regexp/regExp.h"

#include "regexp/match/lines.h"
#include "regexp/match/matcher.h"
#include "regexp/parse/program.h"

#include <algorithm>
#include <optional>

namespace vellums::regexp {

// What was made of Pattern and the properties beside it.
// The members use each other: `program` reads nothing of `tree` once it is made, but `matcher` holds a
// reference to `program` and has to go first.
struct RegExp::Compiled {
    std::u16string pattern;
    bool ignoreCase;
    bool multiline;
    Tree tree;
    LineSearch lines;
    std::optional<Program> program;
    std::optional<Matcher> matcher;

    // Large counts are cut to what the text's length lets matter.
    Matcher& matcherFor(std::size_t length)
    {
        constexpr std::size_t kFirstLimit = 255;
        if (!program || (program->countsCut && program->countLimit < length)) {
            const std::size_t limit = program ? std::max(length, 2 * program->countLimit) : kFirstLimit;
            matcher.reset();
            program.reset();
            program.emplace(compile(tree, std::max(length, limit)));
            matcher.emplace(*program);
        }
        return *matcher;
    }
};

RegExp::RegExp() = default;
RegExp::~RegExp() = default;
RegExp::RegExp(RegExp&&) noexcept = default;
RegExp& RegExp::operator=(RegExp&&) noexcept = default;

RegExp::Compiled& RegExp::compiled()
{
    if (!compiled_ || compiled_->pattern != Pattern || compiled_->ignoreCase != IgnoreCase ||
        compiled_->multiline != Multiline) {
        compiled_.reset();
        Tree tree = parsePattern(Pattern, IgnoreCase, Multiline);
        LineSearch lines(tree);
        compiled_ = std::make_unique<Compiled>(
            Compiled{Pattern, IgnoreCase, Multiline, std::move(tree), std::move(lines), {}, {}});
    }
    return *compiled_;
}

template <typename Visit>
void RegExp::forEach(std::u16string_view text, Visit visit)
{
    Compiled& made = compiled();
    if (made.tree.nodes[made.tree.root].minLength > text.size())
        return;
    if (made.lines.literal()) {
        auto hit = made.lines.scan().next(text, 0);
        while (hit.place != kNowhere && visit(hit.place, hit.place + hit.length))
            hit = made.lines.scan().next(text, hit.place + hit.length);
    } else if (made.lines.promising(text)) {
        Effort effort(text.size());
        made.lines.forEach(
            text, 0, text.size(), [&made](std::size_t length) -> Matcher& { return made.matcherFor(length); },
            effort, visit);
    }
}

std::vector<RegExpMatch> RegExp::Execute(std::u16string_view text)
{
    std::vector<RegExpMatch> matches;
    forEach(text, [&](std::size_t first, std::size_t end) {
        matches.push_back({first, end - first});
        return Global;
    });
    return matches;
}

bool RegExp::Test(std::u16string_view text)
{
    bool found = false;
    forEach(text, [&found](std::size_t, std::size_t) {
        found = true;
        return false;
    });
    return found;
}

void RegExp::findInLines(std::u16string_view text, const Visitor& visit)
{
    Compiled& made = compiled();
    Effort effort(text.size());
    made.lines.run(
        text, [&made](std::size_t length) -> Matcher& { return made.matcherFor(length); }, effort,
        [&visit](std::size_t line, std::size_t first, std::size_t length) {
            return visit({line, first, length});
        });
}

} // namespace vellums::regexp

#include "benchmarks/hostilePatterns.h"

#include "benchmarks/turns.h"
#include "regexp/regExp.h"
#include "text/unicode.h"

#include <algorithm>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace vellums::benchmarks {
namespace {

constexpr std::size_t kTextUnits = 100000;
constexpr int kHostileRounds = 11;
constexpr double kBar = 10; // milliseconds
constexpr double kBarWithReferences = 100;

const std::u16string_view kPatterns[] = {u"(a+)+b", u"(a|aa)+$", u"(.*)*x", u"(a*)*b", u"^(a+)+$",
    u"(a|a?)+b", u"(a+)*[^a]b", u"(?:a|b|ab)*c", u".*.*.*=", u"(?:.*a){12}", u"(x+x+)+y", u"a*b|a*c|a*d",
    u"(?=(a+)+$)a", u"(?!(a+)+b)a", u"a(?:.*b)?", u"((a*)*)*", u"(a?){50}a{50}", u"([a-z]+)*\\d",
    u"^(\\w+\\s?)*$", u"(a+){2,}b", u"\\w+\\w+\\w+\\d", u"(?:(?:a*)*)*?b", u"a.{0,60}b", u"[^x]{1,60}x",
    u"a+[ab]+b", u"(a{1,50}){1,50}b"};
const std::u16string_view kPatternsWithReferences[] = {u"(a+)+\\1b", u"(a|aa)+\\1$", u"(.*)\\1x",
    u"(a*)*\\1b", u"(?=(a+))\\1b", u"(a)(?:\\1|a)*b", u"(?:a|aa)+(!)\\1", u"(?:a*)*(!)\\1", u"(a+)+(!)\\2",
    u"(a*)a*\\1b", u"(a+)(a+)\\1\\2b", u"((a+)+)\\1!$", u"(a+)\\1+$", u"(\\w+)b?\\1!=", u"(a{1,9})!\\1b"};

std::string search(std::u16string_view pattern, std::u16string_view text)
{
    regexp::RegExp regExp;
    regExp.Pattern = pattern;
    regExp.IgnoreCase = true;
    regExp.Global = true;
    try {
        return std::to_string(regExp.Execute(text).size()) + " matches";
    } catch (const regexp::RegExpError& e) {
        return "error " + std::to_string(e.number);
    }
}

// Two that have no match to offer at their end, and one that has all that is asked for, but in front.
double slowest(std::u16string_view pattern, std::string& outcomes)
{
    const std::u16string many(kTextUnits, u'a');
    const std::u16string texts[] = {many, many + u"!", u"!=xybcd1 " + many};
    double result = 0;
    for (const std::u16string& text : texts) {
        std::string outcome;
        const double took = medianTimes({[&] { outcome = search(pattern, text); }}, kHostileRounds)[0];
        outcomes += (outcomes.empty() ? "" : ", ") + outcome;
        result = std::max(result, took);
    }
    return result;
}

void measure(std::span<const std::u16string_view> patterns, double bar)
{
    for (const std::u16string_view pattern : patterns) {
        std::string outcomes;
        const double took = slowest(pattern, outcomes);
        std::printf("%-34s %8.2f (%3.0f)%s  %s\n", text::toUtf8(pattern).c_str(), took, bar,
            took < bar ? "" : " MISSED", outcomes.c_str());
        std::fflush(stdout);
    }
}

} // namespace

void measureHostilePatterns()
{
    std::printf("\n100,000 times \"a\"; the same and \"!\"; \"!=xybcd1 \" and the same\n%-34s %8s (bar)\n",
        "pattern", "ms");
    measure(kPatterns, kBar);
    measure(kPatternsWithReferences, kBarWithReferences);
}

} // namespace vellums::benchmarks

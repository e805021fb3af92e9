// How long does it take to find regular expressions in every line of 5 MB of text, beside PCRE2 (16 bit,
// compiled to machine code) and RE2 (UTF-8)? Each searches line by line and stops at 32,767 matches.
//
//   regExpBenchmark NOTES     a file that scripts/collectTexts made
#define PCRE2_CODE_UNIT_WIDTH 16
#include "benchmarks/notesFile.h"
#include "platform/text.h"
#include "search/regExp.h"

#include <pcre2.h>
#include <re2/re2.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vellums::benchmarks {
namespace {

constexpr std::size_t kUnits = 5000000;
constexpr std::size_t kMostMatches = 32767;
constexpr int kRuns = 9;

struct Question {
    const char* kind;
    std::u16string_view pattern;
    double bar; // of PCRE2's time
};

const Question kQuestions[] = {
    {"literal", u"information", 0.5},
    {"literal", u"zebra", 0.5},
    {"literal, Chinese", u"文件", 0.5},
    {"literal, Chinese", u"无法打开", 0.5},
    {"needed literal", u"\\bfile\\b", 0.5},
    {"needed literal", u"the.*system", 0.5},
    {"needed literal", u"https?://[^\\s]+", 0.5},
    {"needed literal", u"\\w+tion\\b", 0.5},
    {"needed literal", u"第.*章|无法.*文件", 0.5},
    {"needed literal", u"(\\w+)@example\\.com", 0.5},
    {"alternation", u"cat|dog|horse", 1},
    {"alternation", u"error|warning|failure|fatal", 1},
    {"alternation", u"错误|警告|失败", 1},
    {"class", u"\\d+", 1},
    {"class", u"\\d{4}-\\d{1,2}-\\d{1,2}", 1},
    {"class", u"[\\u4e00-\\u9fa5]+", 1},
    {"class", u"[aeiou]{3,}", 1},
    {"class", u"[A-Z][a-z]+ [A-Z][a-z]+", 1},
    {"other", u"\\b[a-z]{12,}\\b", 1.5},
    {"other", u"^\\s*\\w+\\s*$", 1.5},
    {"other", u"(?=\\w*z)\\w+", 1.5},
    {"other", u"\\w+\\s+(is|was)\\s+\\w+", 1.5},
    {"back reference", u"\\b(\\w+) \\1\\b", 2},
    {"back reference", u"(['\"]).*?\\1", 2},
};

double best(const std::function<void()>& work)
{
    double result = 1e9;
    for (int i = 0; i < kRuns; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
        result = std::min(result, took.count());
    }
    return result;
}

std::size_t ours(RegExp& regExp, std::u16string_view text)
{
    std::size_t count = 0;
    regExp.findInLines(text, [&count](const RegExpLineMatch&) { return ++count < kMostMatches; });
    return count;
}

class Pcre {
public:
    explicit Pcre(std::u16string_view pattern)
    {
        int error = 0;
        PCRE2_SIZE place = 0;
        code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
            PCRE2_CASELESS | PCRE2_ALT_BSUX | PCRE2_DOLLAR_ENDONLY | PCRE2_MATCH_UNSET_BACKREF, &error,
            &place, nullptr));
        pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE);
        data_.reset(pcre2_match_data_create(10, nullptr));
    }

    std::size_t count(std::u16string_view text)
    {
        const PCRE2_SIZE* const found = pcre2_get_ovector_pointer(data_.get());
        std::size_t matches = 0;
        std::size_t start = 0;
        while (start <= text.size()) {
            const std::size_t end = std::min(text.find(u"\r\n", start), text.size());
            const auto* const line = reinterpret_cast<PCRE2_SPTR>(text.data() + start);
            std::size_t from = 0;
            while (from <= end - start &&
                pcre2_jit_match(code_.get(), line, end - start, from, 0, data_.get(), nullptr) > 0) {
                if (found[1] > found[0] && ++matches == kMostMatches)
                    return matches;
                from = found[1] > found[0] ? found[1] : found[1] + 1;
            }
            start = end + 2;
        }
        return matches;
    }

private:
    struct Free {
        void operator()(pcre2_code* code) const { pcre2_code_free(code); }
        void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
    };
    std::unique_ptr<pcre2_code, Free> code_;
    std::unique_ptr<pcre2_match_data, Free> data_;
};

class Re2 {
public:
    explicit Re2(std::u16string_view pattern)
    {
        RE2::Options options;
        options.set_case_sensitive(false);
        options.set_log_errors(false);
        std::string source = platform::toUtf8(pattern);
        // RE2 writes a unit by its number in another way.
        for (std::size_t at = 0; (at = source.find("\\u", at)) != source.npos; at += 8)
            source = source.substr(0, at) + "\\x{" + source.substr(at + 2, 4) + "}" + source.substr(at + 6);
        expression_ = std::make_unique<RE2>(source, options);
    }

    bool knows() const { return expression_->ok(); }

    std::size_t count(const std::string& text)
    {
        std::size_t matches = 0;
        std::size_t start = 0;
        while (start <= text.size()) {
            const std::size_t end = std::min(text.find("\r\n", start), text.size());
            const re2::StringPiece line(text.data() + start, end - start);
            re2::StringPiece match;
            std::size_t from = 0;
            while (from <= line.size() &&
                expression_->Match(line, from, line.size(), RE2::UNANCHORED, &match, 1)) {
                const std::size_t first = static_cast<std::size_t>(match.data() - line.data());
                if (!match.empty() && ++matches == kMostMatches)
                    return matches;
                from = first + std::max<std::size_t>(match.size(), 1);
            }
            start = end + 2;
        }
        return matches;
    }

private:
    std::unique_ptr<RE2> expression_;
};

std::u16string realText(const std::string& path)
{
    std::u16string text;
    for (const Note& note : readNotes(path)) {
        text += note.body + u"\r\n";
        if (text.size() >= kUnits)
            break;
    }
    text.resize(std::min(text.size(), kUnits));
    return text;
}

void measure(const Question& question, std::u16string_view text, const std::string& utf8)
{
    RegExp regExp;
    regExp.Pattern = question.pattern;
    regExp.IgnoreCase = true;
    Pcre pcre(question.pattern);
    Re2 re2(question.pattern);
    const std::size_t found = ours(regExp, text);
    const std::size_t theirs = pcre.count(text);
    const double our = best([&] { ours(regExp, text); });
    const double their = best([&] { pcre.count(text); });
    std::printf("%-17s %-34s %6zu %8.2f %8.2f %6.2f (%.1f)%s", question.kind,
        platform::toUtf8(question.pattern).c_str(), found, our, their, our / their, question.bar,
        our / their <= question.bar ? "" : " MISSED");
    if (re2.knows()) {
        const double third = best([&] { re2.count(utf8); });
        std::printf(" %8.2f %6.2f%s", third, our / third, our <= third ? "" : " MISSED");
    }
    if (found != theirs)
        std::printf("  PCRE2 finds %zu", theirs);
    std::printf("\n");
    std::fflush(stdout);
}

void measureHostile(std::u16string_view pattern)
{
    std::u16string text(100000, u'a');
    RegExp regExp;
    regExp.Pattern = pattern;
    regExp.IgnoreCase = true;
    regExp.Global = true;
    double took = 0;
    std::string outcome;
    for (const std::u16string_view ending : {u"", u"!"}) {
        const std::u16string whole = text + std::u16string(ending);
        took = std::max(took, best([&] {
            try {
                outcome = std::to_string(regExp.Execute(whole).size()) + " matches";
            } catch (const RegExpError& e) {
                outcome = "ends with error " + std::to_string(e.number);
            }
        }));
    }
    const bool refers = pattern.find(u"\\1") != pattern.npos || pattern.find(u"\\2") != pattern.npos;
    std::printf("%-34s %8.2f ms%s  %s\n", platform::toUtf8(pattern).c_str(), took,
        took < (refers ? 100 : 10) ? "" : " MISSED", outcome.c_str());
}

const std::u16string_view kHostile[] = {u"(a+)+b", u"(a|aa)+$", u"(.*)*x", u"(a*)*b", u"^(a+)+$", u"(a|a?)+b",
    u"(a+)*[^a]b", u"(?:a|b|ab)*c", u".*.*.*=", u"(?:.*a){12}", u"(x+x+)+y", u"a*b|a*c|a*d", u"(?=(a+)+$)a",
    u"(?!(a+)+b)a", u"a(?:.*b)?", u"((a*)*)*", u"(a?){50}a{50}", u"(a+)+\\1b", u"(a|aa)+\\1$", u"(.*)\\1x",
    u"(a*)*\\1b", u"(?=(a+))\\1b", u"(a)(?:\\1|a)*b", u"(?:a|aa)+(!)\\1", u"(?:a*)*(!)\\1", u"(a+)+(!)\\2"};

} // namespace
} // namespace vellums::benchmarks

int main(int count, char** arguments)
{
    using namespace vellums;
    using namespace vellums::benchmarks;
    if (count != 2) {
        std::fprintf(stderr, "Usage: regExpBenchmark NOTES\n");
        return 2;
    }
    try {
        const std::u16string text = realText(arguments[1]);
        const std::string utf8 = platform::toUtf8(text);
        std::printf("%zu units\n\n%-17s %-34s %6s %8s %8s %12s %8s %6s\n", text.size(), "kind", "pattern",
            "found", "ms", "PCRE2", "ratio (bar)", "RE2", "ratio");
        for (const Question& question : kQuestions)
            measure(question, text, utf8);
        std::printf("\n100,000 times \"a\", then the same and \"!\"\n");
        for (const std::u16string_view pattern : kHostile)
            measureHostile(pattern);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}

// How long does it take to find regular expressions in every line of 5 MB of text, beside PCRE2 (16 bit,
// compiled to machine code) and RE2 (UTF-8)? Each searches line by line and stops at 32,767 matches. Then:
// how long do patterns take that other engines hang on?
//
//   regExpBenchmark NOTES     a file that scripts/collectTexts made
#define PCRE2_CODE_UNIT_WIDTH 16
#include "benchmarks/hostilePatterns.h"
#include "benchmarks/notesFile.h"
#include "benchmarks/turns.h"
#include "regexp/regExp.h"
#include "text/unicode.h"

#include <pcre2.h>
#include <re2/re2.h>

#include <algorithm>
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
constexpr int kRounds = 15;

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
    {"needed literal", u"colou?r", 0.5},
    {"needed literal", u"TODO.*", 0.5},
    {"needed literal", u"^\\s*#", 0.5},
    {"needed literal", u"\"[^\"]*\"", 0.5},
    {"needed literal", u"《[^》]+》", 0.5},
    {"needed literal", u"[\\w.+-]+@[\\w-]+\\.[\\w.]+", 0.5},
    {"alternation", u"cat|dog|horse", 1},
    {"alternation", u"error|warning|failure|fatal", 1},
    {"alternation", u"错误|警告|失败", 1},
    {"class", u"\\d+", 1},
    {"class", u"\\d{4}-\\d{1,2}-\\d{1,2}", 1},
    {"class", u"\\(?\\d{3}\\)?[-. ]\\d{3}[-. ]\\d{4}", 1},
    {"class", u"\\d+\\.\\d+", 1},
    {"class", u"[\\u4e00-\\u9fa5]+", 1},
    {"class", u"[aeiou]{3,}", 1},
    {"class", u"[A-Z][a-z]+ [A-Z][a-z]+", 1},
    {"other", u"\\b[a-z]{12,}\\b", 1.5},
    {"other", u"^\\s*\\w+\\s*$", 1.5},
    {"other", u"\\w+:\\s*\\w+", 1.5},
    {"other", u"\\s+$", 1.5},
    {"other", u"\\b\\w+\\b", 1.5},
    {"other", u".+", 1.5},
    {"other", u"(?=\\w*z)\\w+", 1.5},
    {"other", u"\\w+\\s+(is|was)\\s+\\w+", 1.5},
    {"back reference", u"\\b(\\w+) \\1\\b", 2},
    {"back reference", u"(['\"]).*?\\1", 2},
};

std::size_t ours(regexp::RegExp& regExp, std::u16string_view text)
{
    std::size_t count = 0;
    regExp.findInLines(text, [&count](const regexp::RegExpLineMatch&) { return ++count < kMostMatches; });
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
        std::string source = text::toUtf8(pattern);
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
    regexp::RegExp regExp;
    regExp.Pattern = question.pattern;
    regExp.IgnoreCase = true;
    Pcre pcre(question.pattern);
    Re2 re2(question.pattern);
    const std::size_t found = ours(regExp, text);
    const std::size_t theirs = pcre.count(text);
    std::vector<std::function<void()>> works = {[&] { ours(regExp, text); }, [&] { pcre.count(text); }};
    if (re2.knows())
        works.push_back([&] { re2.count(utf8); });
    const std::vector<double> times = medianTimes(works, kRounds);
    const double our = times[0];
    const double their = times[1];
    std::printf("%-17s %-34s %6zu %8.2f %8.2f %6.2f (%.1f)%s", question.kind,
        text::toUtf8(question.pattern).c_str(), found, our, their, our / their, question.bar,
        our / their <= question.bar ? "" : " MISSED");
    if (re2.knows())
        std::printf(" %8.2f %6.2f%s", times[2], our / times[2], our <= times[2] ? "" : " MISSED");
    if (found != theirs)
        std::printf("  PCRE2 finds %zu", theirs);
    std::printf("\n");
    std::fflush(stdout);
}

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
        const std::string utf8 = text::toUtf8(text);
        std::printf("%zu units\n\n%-17s %-34s %6s %8s %8s %12s %8s %6s\n", text.size(), "kind", "pattern",
            "found", "ms", "PCRE2", "ratio (bar)", "RE2", "ratio");
        for (const Question& question : kQuestions)
            measure(question, text, utf8);
        measureHostilePatterns();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}

// Each step is one pass with an output of its own, so the whole is linear in the length. Their order is part
// of the result, and with it of every stored digest: blanks before a line end are looked for while the CR is
// still there, then all line ends become LF, then blanks behind them go and CR LF is written, and blanks
// within lines come last. No step is repeated until nothing changes: a text may therefore change once more
// when it is cleaned again.
#include "text/textCleanup.h"

#include <algorithm>

namespace vellums::text {
namespace {

constexpr char16_t kIdeographicSpace = 0x3000;

bool equalLetters(char16_t a, char16_t b)
{
    const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; };
    return lower(a) == lower(b);
}

// "suffix, " becomes "suffix," and a line end, in one pass; the suffix is written as it is meant.
std::u16string splitAfter(const std::u16string& text, std::u16string_view suffix)
{
    const std::u16string wanted = std::u16string(suffix) + u", ";
    auto done = text.begin();
    std::u16string out;
    for (;;) {
        const auto found = std::search(done, text.end(), wanted.begin(), wanted.end(), equalLetters);
        if (found == text.end() && done == text.begin())
            return text;
        out.append(done, found);
        if (found == text.end())
            return out;
        out.append(suffix).append(u",\r\n");
        done = found + static_cast<std::ptrdiff_t>(wanted.size());
    }
}

void dropTrailing(std::u16string& text, char16_t c)
{
    while (!text.empty() && text.back() == c)
        text.pop_back();
}

// Blanks before each CR: first the spaces, then ideographic spaces, then tabs; what stands before
// those stays, even if it is a blank of another kind.
std::u16string withoutBlanksBeforeLineEnds(std::u16string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (const char16_t c : text) {
        if (c == u'\r') {
            dropTrailing(out, u' ');
            dropTrailing(out, kIdeographicSpace);
            dropTrailing(out, u'\t');
        }
        out.push_back(c);
    }
    return out;
}

// CRs before an LF belong to it, any other CR is a line end of its own.
std::u16string withLineFeeds(std::u16string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (const char16_t c : text) {
        if (c == u'\n')
            dropTrailing(out, u'\r');
        out.push_back(c);
    }
    std::replace(out.begin(), out.end(), u'\r', u'\n');
    return out;
}

// Takes out the spaces and then the ideographic spaces behind each LF, writes line ends as CR LF,
// and passes over line ends that would make a second empty line.
std::u16string withLinesJoined(std::u16string_view text)
{
    std::u16string out;
    out.reserve(text.size() + text.size() / 16);
    int lineEnds = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] != u'\n') {
            out.push_back(text[i++]);
            lineEnds = 0;
            continue;
        }
        if (++lineEnds <= 2)
            out.append(u"\r\n");
        ++i;
        while (i < text.size() && text[i] == u' ')
            ++i;
        while (i < text.size() && text[i] == kIdeographicSpace)
            ++i;
    }
    return out;
}

std::u16string_view withoutOuterLineEnds(std::u16string_view text)
{
    while (text.substr(0, 2) == u"\r\n")
        text.remove_prefix(2);
    while (text.size() >= 2 && text.substr(text.size() - 2) == u"\r\n")
        text.remove_suffix(2);
    return text;
}

bool isVoicedKatakana(char16_t c)
{
    constexpr std::u16string_view kVoiced = u"ゴガギグゲザジズヅデドポベプビパヴボペブピバヂダゾゼ";
    return c >= 0x30A0 && c <= 0x30FF && kVoiced.find(c) != std::u16string_view::npos;
}

// Every three blanks in a row become one, again and again until no three are left.
std::size_t shrunkRun(std::size_t length)
{
    // Replacing once turns each three into one and leaves the rest; the shorter run may again hold three.
    while (length >= 3)
        length = length / 3 + length % 3;
    return length;
}

std::u16string withoutBlankRuns(std::u16string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == u' ') {
            const std::size_t end = std::min(text.find_first_not_of(u' ', i), text.size());
            out.append(shrunkRun(end - i), u' ');
            i = end;
        } else if (isVoicedKatakana(text[i])) {
            ++i;
        } else {
            out.push_back(text[i++]);
        }
    }
    return out;
}

} // namespace

std::u16string cleanBody(std::u16string_view text)
{
    std::u16string body(text);
    for (const char16_t* suffix : {u"/QRX@QRX", u"/QRX", u"/QRXGD@QRXGD", u"/QRXGD"})
        body = splitAfter(body, suffix);
    body = withLinesJoined(withLineFeeds(withoutBlanksBeforeLineEnds(body)));
    return withoutBlankRuns(withoutOuterLineEnds(body));
}

} // namespace vellums::text

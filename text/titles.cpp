#include "text/titles.h"

#include "text/path.h"
#include "text/pieces.h"

#include <algorithm>
#include <cassert>

namespace vellums::text {
namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";
constexpr std::u16string_view kSubject = u"主题:";
constexpr std::size_t kLongestFirstLine = 50;
constexpr std::size_t kLongestTitle = 100;

bool endsInHalfAPair(std::u16string_view text)
{
    return !text.empty() && text.back() >= 0xD800 && text.back() < 0xDC00;
}

// A mail's subject; empty when the text has none or begins with it. Behind the colon one character is passed
// over, which is a blank in mails; the line end is sought from the second character of the subject on.
std::u16string subjectOf(std::u16string_view text)
{
    const std::size_t at = text.find(kSubject);
    if (at == std::u16string_view::npos || at == 0)
        return {};
    const std::size_t end = text.find(kLineEnd, std::min(at + 5, text.size()));
    if (end == std::u16string_view::npos)
        return {};
    return std::u16string(text.substr(at + 4, end - at - 4));
}

// The name between the last folder and the last dot.
std::u16string_view baseName(std::u16string_view path)
{
    const std::size_t dot = path.rfind(u'.');
    if (dot == std::u16string_view::npos)
        return {};
    const std::size_t folder = lastSeparator(path.substr(0, dot + 2));
    if (folder == std::u16string_view::npos)
        return path.substr(0, dot);
    return folder < dot ? path.substr(folder + 1, dot - folder - 1) : std::u16string_view();
}

// The beginning of a quoted text, without half of a doubled apostrophe or of a pair at its end.
std::u16string cutQuoted(const std::u16string& text, std::size_t length)
{
    assert(length < text.size());
    std::u16string cut = text.substr(0, length);
    const std::size_t other = cut.find_last_not_of(u'\'');
    const std::size_t apostrophes = cut.size() - (other == std::u16string::npos ? 0 : other + 1);
    if (apostrophes % 2 != 0 || endsInHalfAPair(cut))
        cut.pop_back();
    return cut;
}

} // namespace

std::u16string titleOf(std::u16string_view text)
{
    const std::u16string subject = subjectOf(text);
    if (!subject.empty())
        return subject;
    const std::size_t length = std::min(text.find(kLineEnd), kLongestFirstLine);
    std::u16string title(text.substr(0, length));
    if (endsInHalfAPair(title))
        title.pop_back();
    return title;
}

std::u16string titleFromPath(std::u16string_view path)
{
    std::u16string title = replaceAll(baseName(path), u"'", u"''");
    title = replaceAll(title, u"附件: ", u"");
    title = replaceAll(title, u"Tarnwick Group Limited", u"Tarn");
    title = replaceAll(title, u"Tarnwick", u"Tarn");
    title = replaceAll(title, u"North Branch", u"分行");
    title = replaceAll(title, u"North City Branch", u"分行");
    if (title.size() > kLongestTitle)
        title = cutQuoted(title, kLongestTitle) + u"...";
    return replaceAll(title, u"''", u"'");
}

} // namespace vellums::text

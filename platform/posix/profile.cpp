// A profile is kept as the lines it consists of, and only the line of the key that changes is written
// otherwise: remarks, unknown keys and the order of everything stay as the user left them. Each call reads
// the whole file and, where it changes something, writes the whole file; settings are few, and nothing is
// ever out of date.
//
// Where Windows has calls for this, they are used there; what is done here is what those calls do: letter
// case does not count, the first of equal names does, one pair of quotes around a value is taken off. A file
// begins with FF FE when it is in UTF-16, and is written back in the encoding it was read in. Lines may end
// in LF or CR LF and are written with CR LF.
#include "platform/profile.h"

#include "platform/codePage.h"
#include "platform/files.h"
#include "text/letterCase.h"
#include "text/pieces.h"

#include <cassert>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace vellums::platform {
namespace {

constexpr std::u16string_view kBlanks = u" \t";

std::u16string_view trimmed(std::u16string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The name of the section that the line opens.
std::optional<std::u16string_view> sectionOf(std::u16string_view line)
{
    line = trimmed(line);
    if (line.empty() || line[0] != u'[')
        return std::nullopt;
    return line.substr(1, line.rfind(u']') == std::u16string_view::npos ? line.npos : line.rfind(u']') - 1);
}

// The name of the key that the line holds; the value begins behind the first "=".
std::optional<std::u16string_view> keyOf(std::u16string_view line)
{
    line = trimmed(line);
    const std::size_t equals = line.find(u'=');
    if (equals == std::u16string_view::npos || line[0] == u';')
        return std::nullopt;
    return trimmed(line.substr(0, equals));
}

std::u16string_view valueOf(std::u16string_view line)
{
    assert(line.find(u'=') != line.npos);
    std::u16string_view value = trimmed(line.substr(line.find(u'=') + 1));
    const bool paired = value.size() > 1 && (value.front() == u'"' || value.front() == u'\'') &&
        value.front() == value.back();
    return paired ? value.substr(1, value.size() - 2) : value;
}

class Profile {
public:
    // Empty when the file exists and cannot be read.
    static std::optional<Profile> read(const std::u16string& path);
    bool write(const std::u16string& path) const;

    // Where the lines of the section begin and end; npos when there is none.
    struct Span {
        std::size_t begin = std::u16string::npos;
        std::size_t end = std::u16string::npos;
    };
    Span section(std::u16string_view name) const;
    std::size_t key(Span lines, std::u16string_view name) const; // npos: not there

    std::vector<std::u16string> lines;

private:
    bool utf16_ = false;
};

std::optional<Profile> Profile::read(const std::u16string& path)
{
    Profile profile;
    std::string bytes;
    try {
        const File file(path, Access::Read);
        bytes.resize(static_cast<std::size_t>(file.size()));
        bytes.resize(file.readAt(0, std::as_writable_bytes(std::span<char>(bytes))));
    } catch (const FileError& e) {
        // A missing file is one without sections. One that cannot be read must not be written over either.
        if (e.fault == FileFault::NotFound)
            return profile;
        return std::nullopt;
    }
    std::u16string text;
    profile.utf16_ = bytes.rfind("\xFF\xFE", 0) == 0;
    if (profile.utf16_) {
        for (std::size_t i = 2; i + 1 < bytes.size(); i += 2)
            text.push_back(static_cast<char16_t>(
                static_cast<unsigned char>(bytes[i]) | (static_cast<unsigned char>(bytes[i + 1]) << 8)));
    } else {
        text = fromAnsi(bytes);
    }
    if (text.empty())
        return profile;
    profile.lines = text::split(text, u"\n");
    for (std::u16string& line : profile.lines) {
        if (!line.empty() && line.back() == u'\r')
            line.pop_back();
    }
    if (profile.lines.back().empty())
        profile.lines.pop_back();
    return profile;
}

bool Profile::write(const std::u16string& path) const
{
    std::u16string text;
    for (const std::u16string& line : lines)
        text += line + u"\r\n";
    std::string bytes;
    if (utf16_) {
        bytes = "\xFF\xFE";
        for (const char16_t c : text) {
            bytes.push_back(static_cast<char>(c & 0xFF));
            bytes.push_back(static_cast<char>(c >> 8));
        }
    } else {
        bytes = toAnsi(text);
    }
    try {
        // Written over and then cut, so that a failure of the cut leaves old lines behind rather than none.
        File file(path, Access::WriteOrCreate);
        file.writeAt(0, std::as_bytes(std::span<const char>(bytes)));
        file.resize(bytes.size());
        return true;
    } catch (const FileError&) {
        return false;
    }
}

Profile::Span Profile::section(std::u16string_view name) const
{
    Span span;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto opened = sectionOf(lines[i]);
        if (opened && span.begin != std::u16string::npos) {
            span.end = i;
            return span;
        }
        if (opened && text::equalNoCase(*opened, name))
            span.begin = i + 1;
    }
    span.end = lines.size();
    return span;
}

// A section that is not there begins at npos, behind every end, so no key is found in it.
std::size_t Profile::key(Span span, std::u16string_view name) const
{
    for (std::size_t i = span.begin; i < span.end; ++i) {
        const auto found = keyOf(lines[i]);
        if (found && text::equalNoCase(*found, name))
            return i;
    }
    return std::u16string::npos;
}

// Behind the last line of the section that is not blank.
std::size_t endOfSection(const Profile& profile, Profile::Span span)
{
    assert(span.begin <= span.end && span.end <= profile.lines.size());
    std::size_t end = span.end;
    while (end > span.begin && trimmed(profile.lines[end - 1]).empty())
        --end;
    return end;
}

} // namespace

std::u16string readProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key,
    std::u16string_view defaultValue)
{
    constexpr std::size_t kLongestValue = 255;
    std::u16string value(defaultValue.substr(0, defaultValue.find_last_not_of(u' ') + 1));
    if (const auto profile = Profile::read(path)) {
        const std::size_t line = profile->key(profile->section(section), key);
        if (line != std::u16string::npos)
            value = valueOf(profile->lines[line]);
    }
    value = value.substr(0, kLongestValue);
    return value.substr(0, value.find(u'\0'));
}

bool writeProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key,
    std::u16string_view value)
{
    auto profile = Profile::read(path);
    if (!profile)
        return false;
    const Profile::Span span = profile->section(section);
    const std::size_t line = profile->key(span, key);
    if (line != std::u16string::npos) {
        std::u16string& text = profile->lines[line];
        // Up to the "=" the line stays as it is spelt.
        text = text.substr(0, text.find(u'=') + 1) + profileText(value);
        return profile->write(path);
    }
    std::size_t place = profile->lines.size();
    if (span.begin == std::u16string::npos) {
        profile->lines.push_back(u"[" + std::u16string(section) + u"]");
        place = profile->lines.size();
    } else {
        place = endOfSection(*profile, span);
    }
    profile->lines.insert(profile->lines.begin() + static_cast<std::ptrdiff_t>(place),
        std::u16string(key) + u"=" + profileText(value));
    return profile->write(path);
}

bool deleteProfile(const std::u16string& path, std::u16string_view section, std::u16string_view key)
{
    auto profile = Profile::read(path);
    if (!profile)
        return false;
    const std::size_t line = profile->key(profile->section(section), key);
    if (line == std::u16string::npos)
        return true;
    profile->lines.erase(profile->lines.begin() + static_cast<std::ptrdiff_t>(line));
    return profile->write(path);
}

} // namespace vellums::platform

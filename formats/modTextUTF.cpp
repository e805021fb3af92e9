// A file is read in two looks: four bytes for the mark, then everything behind it in one piece. A mark is
// passed over only when the text is read in the encoding that it stands for; read in another one on request
// it is part of the text, which is what the file then says.
//
// When text is appended and the caller leaves it open, the file's own mark decides over the encoding. No mark
// is ever written into the midst of a file.
#include "formats/modTextUTF.h"

#include "platform/codePage.h"
#include "platform/sharedFile.h"
#include "text/unicode.h"

#include <array>
#include <new>

namespace vellums::formats {
namespace {

using platform::SharedFile;

bool isEncoding(Encoding encoding)
{
    return encoding >= Encoding::Ansi && encoding <= Encoding::Utf32Be;
}

struct Mark {
    std::uint32_t value = 0; // its bytes in file order, the first one lowest
    int length = 0;          // bytes
};

// What the mark of a file says.
struct Detected {
    Encoding encoding = Encoding::Ansi;
    int markLength = 0;
};

// The mark to write; of length 0 for Ansi and for what is no encoding.
Mark markOf(Encoding encoding)
{
    switch (encoding) {
    case Encoding::Utf8:
        return {0xBFBBEF, 3};
    case Encoding::Utf16Le:
        return {0xFEFF, 2};
    case Encoding::Utf16Be:
        return {0xFFFE, 2};
    case Encoding::Utf32Le:
        return {0x0000FEFF, 4};
    case Encoding::Utf32Be:
        return {0xFFFE0000, 4};
    default:
        return {};
    }
}

Detected detectMark(std::uint32_t firstBytes)
{
    // The mark of UTF-16 begins that of UTF-32, so the longer ones come first.
    for (const Encoding encoding :
        {Encoding::Utf32Le, Encoding::Utf32Be, Encoding::Utf16Le, Encoding::Utf16Be, Encoding::Utf8}) {
        const Mark mark = markOf(encoding);
        if ((firstBytes & (0xFFFFFFFFu >> (32 - 8 * mark.length))) == mark.value)
            return {encoding, mark.length};
    }
    return {};
}

// Four, the first one lowest; zeros stand for missing ones.
std::uint32_t firstBytes(const SharedFile& file)
{
    std::array<std::byte, 4> bytes{};
    file.readAt(0, bytes);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        value |= std::to_integer<std::uint32_t>(bytes[i]) << (8 * i);
    return value;
}

std::string readFrom(const SharedFile& file, std::uint64_t start, std::uint64_t size)
{
    std::string bytes(static_cast<std::size_t>(size > start ? size - start : 0), '\0');
    bytes.resize(file.readAt(start, std::as_writable_bytes(std::span<char>(bytes))));
    return bytes;
}

// An odd byte at the end gives a character whose high byte is zero.
std::u16string fromUnits(std::string_view bytes, bool bigEndian)
{
    std::u16string text((bytes.size() + 1) / 2, u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const bool whole = i % 2 != 0 || i + 1 < bytes.size();
        const bool high = whole && (i % 2 == 0) == bigEndian;
        text[i / 2] = static_cast<char16_t>(text[i / 2] | (high ? byte << 8 : byte));
    }
    return text;
}

std::string toUnits(std::u16string_view text, bool bigEndian)
{
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t c : text) {
        const char low = static_cast<char>(c & 0xFF);
        const char high = static_cast<char>(c >> 8);
        bytes.push_back(bigEndian ? high : low);
        bytes.push_back(bigEndian ? low : high);
    }
    return bytes;
}

std::u16string decoded(std::string_view bytes, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Ansi:
        return platform::fromAnsi(bytes);
    case Encoding::Utf8:
        return text::fromUtf8(bytes);
    case Encoding::Utf16Le:
    case Encoding::Utf16Be:
        return fromUnits(bytes, encoding == Encoding::Utf16Be);
    default:
        return {};
    }
}

// Empty when the encoding cannot be written.
std::string encoded(std::u16string_view text, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Ansi:
        return platform::toAnsi(text);
    case Encoding::Utf8:
        return text::toUtf8(text);
    case Encoding::Utf16Le:
    case Encoding::Utf16Be:
        return toUnits(text, encoding == Encoding::Utf16Be);
    default:
        return {};
    }
}

bool writeBytes(SharedFile& file, std::uint64_t offset, std::string_view bytes)
{
    return file.writeAt(offset, std::as_bytes(std::span<const char>(bytes)));
}

TextRead readOpened(const SharedFile& file, Encoding& encoding)
{
    constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 31;
    const auto size = file.size();
    if (!size || *size >= kTooLarge)
        return {};
    const Detected detected = detectMark(firstBytes(file));
    if (encoding == Encoding::Detect)
        encoding = detected.encoding;
    const int mark = encoding == detected.encoding ? detected.markLength : 0;
    if (encoding == Encoding::Utf32Le || encoding == Encoding::Utf32Be)
        return {};
    const std::string bytes = readFrom(file, static_cast<std::uint64_t>(mark), *size);
    // Fewer bytes than the file said it has: reading broke off half way.
    return {decoded(bytes, encoding), bytes.size() + static_cast<std::size_t>(mark) >= *size};
}

std::string markBytes(Encoding encoding)
{
    const Mark mark = markOf(encoding);
    std::string bytes;
    for (int i = 0; i < mark.length; ++i)
        bytes.push_back(static_cast<char>((mark.value >> (8 * i)) & 0xFF));
    return bytes;
}

bool writeOpened(SharedFile& file, std::u16string_view text, Encoding& encoding, const TextWriting& how)
{
    const std::uint64_t size = file.size().value_or(0);
    const bool append = how.append && size != 0;
    if (size == 0 && encoding == Encoding::Detect)
        encoding = how.ifEmpty;
    if (encoding == Encoding::Detect)
        encoding = detectMark(firstBytes(file)).encoding;
    std::string bytes = !append && how.writeMark ? markBytes(encoding) : std::string();
    const std::string body = encoded(text, encoding);
    bytes += body;
    const bool written = bytes.empty() || writeBytes(file, append ? size : 0, bytes);
    // A text that became no bytes at all was not written, whatever the file says.
    return written && body.empty() == text.empty();
}

} // namespace

std::u16string readTextFile(const std::u16string& path, Encoding& encoding)
{
    return readTextFileWhole(path, encoding).text;
}

TextRead readTextFileWhole(const std::u16string& path, Encoding& encoding)
{
    if (encoding != Encoding::Detect && !isEncoding(encoding))
        return {};
    try {
        const auto file = SharedFile::open(path, SharedFile::Mode::Read);
        return file ? readOpened(*file, encoding) : TextRead();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

bool writeTextFile(
    const std::u16string& path, std::u16string_view text, Encoding& encoding, const TextWriting& how)
{
    if (!isEncoding(encoding) && !(encoding == Encoding::Detect && how.append))
        return false;
    try {
        auto file = SharedFile::open(path, how.append ? SharedFile::Mode::Append : SharedFile::Mode::Replace);
        return file && writeOpened(*file, text, encoding, how);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace vellums::formats

#include "platform/codePage.h"

#include "platform/win32/systemPath.h"
#include "text/unicode.h"

#include <windows.h>

namespace vellums::platform {
namespace {

// A conversion call takes an int for lengths; longer texts go in pieces of this many units.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 28;

std::string convertPiece(std::u16string_view text, DWORD flags, BOOL* missing)
{
    const auto* wide = reinterpret_cast<const wchar_t*>(text.data());
    const int units = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_ACP, flags, wide, units, nullptr, 0, nullptr, missing);
    std::string bytes(static_cast<std::size_t>(length > 0 ? length : 0), '\0');
    if (length > 0)
        WideCharToMultiByte(CP_ACP, flags, wide, units, bytes.data(), length, nullptr, missing);
    return bytes;
}

std::string exactPiece(std::u16string_view text, bool& missing)
{
    // Windows would put a look-alike for a missing character and tell nothing; without best fit it tells.
    BOOL used = FALSE;
    std::string bytes = convertPiece(text, WC_NO_BEST_FIT_CHARS, &used);
    missing = used != FALSE;
    return bytes;
}

} // namespace

unsigned ansiCodePage()
{
    return GetACP();
}

bool setAnsiCodePage(unsigned)
{
    return false;
}

std::u16string fromAnsi(std::string_view bytes)
{
    return fromCodePage(GetACP(), bytes);
}

std::u16string fromCodePage(unsigned codePage, std::string_view bytes)
{
    if (codePage == kCodePageUtf8)
        return text::fromUtf8(bytes);
    // Bytes go in one piece, as a cut might fall into a character of two; so their number has to fit into an
    // int.
    if (bytes.empty() || bytes.size() > kMostAtOnce * 7)
        return {};
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    std::u16string text(static_cast<std::size_t>(length > 0 ? length : 0), u'\0');
    if (length > 0)
        MultiByteToWideChar(codePage, 0, bytes.data(), size, reinterpret_cast<wchar_t*>(text.data()), length);
    return text;
}

std::string toAnsi(std::u16string_view text)
{
    if (GetACP() == kCodePageUtf8)
        return text::toUtf8(text);
    std::string bytes;
    while (!text.empty()) {
        const std::u16string_view piece = text.substr(0, kMostAtOnce);
        bytes += convertPiece(piece, 0, nullptr);
        text.remove_prefix(piece.size());
    }
    return bytes;
}

std::optional<std::string> toAnsiExact(std::u16string_view text)
{
    if (GetACP() == kCodePageUtf8)
        return text::toUtf8(text);
    bool missing = false;
    if (text.empty() || text.size() > kMostAtOnce)
        return std::string();
    std::string bytes = exactPiece(text, missing);
    if (missing)
        return std::nullopt;
    return bytes;
}

std::u16string throughAnsi(std::u16string_view text)
{
    if (GetACP() == kCodePageUtf8)
        return std::u16string(text);
    bool missing = false;
    return text.empty() ? std::u16string() : fromAnsi(exactPiece(text.substr(0, kMostAtOnce), missing));
}

std::int16_t ansiCode(char16_t c)
{
    if (c < 0x80)
        return static_cast<std::int16_t>(c);
    if (GetACP() == kCodePageUtf8)
        return -1;
    const std::string bytes = convertPiece({&c, 1}, 0, nullptr);
    if (bytes.empty())
        return 63;
    if (bytes.size() == 1)
        return static_cast<unsigned char>(bytes[0]);
    const unsigned high = static_cast<unsigned char>(bytes[0]);
    const unsigned low = static_cast<unsigned char>(bytes[1]);
    return static_cast<std::int16_t>((high << 8) | low);
}

} // namespace vellums::platform

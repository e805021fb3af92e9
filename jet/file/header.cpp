#include "jet/file/header.h"

#include "jet/file/codePageText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>

namespace vellums::jet {
namespace {

constexpr std::ptrdiff_t kHeadBytes = 0x800; // that are looked at
constexpr std::size_t kMaskStart = 0x18;
constexpr std::size_t kMaskLength = 128;
constexpr std::size_t kCodePageAt = 0x3C;
constexpr std::size_t kKeyAt = 0x3E; // not 0: the pages are encrypted
constexpr std::size_t kPasswordAt = 0x42;
constexpr std::array<std::uint8_t, 4> kMaskKey = {0xC7, 0xDA, 0x39, 0x6B};

// The first 128 bytes of RC4 under the fixed key. It hides nothing: the key is the same in every file.
std::array<std::uint8_t, kMaskLength> keyStream()
{
    std::array<std::uint8_t, 256> s{};
    for (std::size_t i = 0; i < 256; ++i)
        s[i] = static_cast<std::uint8_t>(i);
    for (std::size_t i = 0, j = 0; i < 256; ++i) {
        j = (j + s[i] + kMaskKey[i % kMaskKey.size()]) & 0xFF;
        std::swap(s[i], s[j]);
    }
    std::array<std::uint8_t, kMaskLength> stream{};
    std::size_t i = 0;
    std::size_t j = 0;
    for (std::uint8_t& byte : stream) {
        i = (i + 1) & 0xFF;
        j = (j + s[i]) & 0xFF;
        std::swap(s[i], s[j]);
        byte = s[(s[i] + s[j]) & 0xFF];
    }
    return stream;
}

bool startsWith(ByteView page0, std::size_t offset, std::string_view text)
{
    const ByteView part = slice(page0, offset, text.size());
    return std::equal(part.begin(), part.end(), text.begin(),
        [](std::byte a, char b) { return a == static_cast<std::byte>(b); });
}

// Name and version must go together; the name of the file says nothing.
std::optional<std::uint8_t> versionOf(ByteView page0)
{
    if (page0.size() < std::size_t{kHeadBytes} || load<std::uint32_t>(page0, 0) != 0x100)
        return std::nullopt;
    const bool jetName = startsWith(page0, 4, std::string_view("Standard Jet DB\0", 16));
    const bool aceName = startsWith(page0, 4, std::string_view("Standard ACE DB\0", 16));
    const auto version = load<std::uint8_t>(page0, 0x14);
    if ((!jetName && !aceName) || version > 6 || (version >= 2) != aceName)
        return std::nullopt;
    return version;
}

const Format& formatOfVersion(std::uint8_t version)
{
    return version == 0 ? kJet3 : kJet4;
}

// The password field. That of Jet 4 carries the day of creation as a second mask, four bytes that repeat.
Bytes passwordField(ByteView plain, const Format::Header& places)
{
    std::uint32_t day = 0;
    if (places.creationDate != 0) {
        const auto created = load<double>(plain, places.creationDate);
        const bool inRange = created > -1e9 && created < 1e9;
        day = static_cast<std::uint32_t>(inRange ? static_cast<std::int32_t>(created) : 0);
    }
    Bytes field;
    for (std::size_t i = 0; i < places.passwordBytes; i += 4)
        append<std::uint32_t>(field, load<std::uint32_t>(plain, kPasswordAt + i) ^ day);
    return field;
}

bool isEmpty(const Bytes& field)
{
    return std::all_of(field.begin(), field.end(), [](std::byte b) { return b == std::byte{0}; });
}

// Up to the first zero. Upper and lower case differ.
std::u16string passwordIn(const Bytes& field, const Header& header)
{
    std::u16string text;
    if (header.format->codePageTexts) {
        text = codePageText(field, header.codePage);
    } else {
        text.resize(field.size() / 2);
        std::memcpy(text.data(), field.data(), text.size() * 2);
    }
    return text.substr(0, text.find(u'\0'));
}

void checkPassword(
    ByteView plain, const Header& header, const std::u16string& path, std::u16string_view password)
{
    const Bytes field = passwordField(plain, header.format->header);
    if (isEmpty(field))
        return;
    if (password.empty())
        throw Error(3031, kAuthFailed, u"Not a valid password. The database '" + path + u"' has a password.");
    if (passwordIn(field, header) != password)
        throw Error(3031, kAuthFailed,
            u"Not a valid password. The database '" + path + u"' has another one than was given.");
}

} // namespace

void maskHeader(MutableBytes page0)
{
    static const auto stream = keyStream();
    for (std::size_t i = 0; i < kMaskLength; ++i)
        page0[kMaskStart + i] ^= static_cast<std::byte>(stream[i]);
}

const Format* formatOf(ByteView page0)
{
    const std::optional<std::uint8_t> version = versionOf(page0);
    return version ? &formatOfVersion(*version) : nullptr;
}

bool isLocked(ByteView page0)
{
    const Format* const format = formatOf(page0);
    if (format == nullptr)
        return false;
    Bytes plain(page0.begin(), page0.begin() + kHeadBytes);
    maskHeader(plain);
    return !isEmpty(passwordField(plain, format->header));
}

Header parseHeader(ByteView page0, const std::u16string& path, std::u16string_view password)
{
    const std::optional<std::uint8_t> version = versionOf(page0);
    if (!version)
        throw Error(3343, kFail, u"Unrecognized database format '" + path + u"'.");
    Header header;
    header.version = *version;
    header.format = &formatOfVersion(*version);
    const Format::Header& places = header.format->header;

    Bytes plain(page0.begin(), page0.begin() + kHeadBytes);
    maskHeader(plain);
    header.sortOrder.lcid = load<std::uint16_t>(plain, places.sortOrder);
    if (places.sortVersion != 0)
        header.sortOrder.version = load<std::uint8_t>(plain, places.sortVersion);
    header.codePage = load<std::uint16_t>(plain, kCodePageAt);
    if (load<std::uint32_t>(plain, kKeyAt) != 0)
        throw Error(3031, kAuthFailed, u"The database '" + path + u"' is encrypted and cannot be opened.");
    checkPassword(plain, header, path, password);
    return header;
}

} // namespace vellums::jet

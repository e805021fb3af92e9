#include "text/unicode.h"

#include <cassert>

namespace vellums::text {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

// The second byte is where ill-formed sequences are told: its range depends on the first.
//
//   first byte     bytes   second byte
//   C2 ... DF        2     80 ... BF
//   E0               3     A0 ... BF   no overlong forms
//   ED               3     80 ... 9F   no surrogates
//   E1 ... EF        3     80 ... BF   but for ED
//   F0               4     90 ... BF   no overlong forms
//   F1 ... F3        4     80 ... BF
//   F4               4     80 ... 8F   nothing above U+10FFFF
//
// Every byte after that is 80 ... BF.
bool goodSecond(unsigned lead, unsigned second)
{
    switch (lead) {
    case 0xE0:
        return second >= 0xA0 && second < 0xC0;
    case 0xED:
        return second >= 0x80 && second < 0xA0;
    case 0xF0:
        return second >= 0x90 && second < 0xC0;
    case 0xF4:
        return second >= 0x80 && second < 0x90;
    default:
        return second >= 0x80 && second < 0xC0;
    }
}

bool isHighSurrogate(char16_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}
bool isLowSurrogate(char16_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}

} // namespace

Utf8Sequence utf8At(std::string_view bytes)
{
    const auto at = [&bytes](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(bytes[i]));
    };
    assert(!bytes.empty());
    const unsigned lead = at(0);
    if (lead < 0x80)
        return {lead, 1, true};
    std::size_t wanted = 0;
    if (lead >= 0xC2 && lead < 0xE0)
        wanted = 2;
    else if (lead >= 0xE0 && lead < 0xF0)
        wanted = 3;
    else if (lead >= 0xF0 && lead < 0xF5)
        wanted = 4;
    // A lead byte whose second byte does not fit stands alone; from the third byte on, what was good so far
    // is passed over together.
    if (wanted == 0 || bytes.size() < 2 || !goodSecond(lead, at(1)))
        return {};
    char32_t value = lead & (0x7Fu >> wanted);
    for (std::size_t i = 1; i < wanted; ++i) {
        if (i >= bytes.size() || (at(i) & 0xC0u) != 0x80)
            return {kReplacement, i, false};
        value = (value << 6) | (at(i) & 0x3Fu);
    }
    return {value, wanted, true};
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
    if (c < 0x80) {
        byte(c);
        return;
    }
    if (c < 0x800) {
        byte(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            byte(0xE0 | (c >> 12));
        } else {
            byte(0xF0 | (c >> 18));
            byte(0x80 | ((c >> 12) & 0x3F));
        }
        byte(0x80 | ((c >> 6) & 0x3F));
    }
    byte(0x80 | (c & 0x3F));
}

void appendUtf16(std::u16string& out, char32_t c)
{
    assert(c <= 0x10FFFF);
    if (c >= 0x10000) {
        out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
        c = 0xDC00 + ((c - 0x10000) & 0x3FF);
    }
    out.push_back(static_cast<char16_t>(c));
}

std::u16string fromUtf8(std::string_view bytes)
{
    std::u16string out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (byte < 0x80) {
            out.push_back(byte);
            ++i;
            continue;
        }
        const Utf8Sequence sequence = utf8At(bytes.substr(i));
        appendUtf16(out, sequence.value);
        i += sequence.length;
    }
    return out;
}

std::string toUtf8(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size() + text.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00u);
            ++i;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = kReplacement;
        }
        appendUtf8(out, c);
    }
    return out;
}

} // namespace vellums::text

// Code pages other than UTF-8 are converted by the system's iconv, which stops at whatever it cannot convert.
// What Windows does then is put here around it: run() takes the conversion up to that place, one replacement
// is written, one unit (or byte) is passed over, and the conversion goes on behind it. Every turn takes
// something off the input, so it ends.
//
// iconv is asked for "CP" and the number, with UTF-16LE on the other side, byte by byte: no mark is written,
// and the order does not depend on the machine. A converter is made for each call; it holds a state, and two
// threads must not share one.
#include "platform/codePage.h"

#include "platform/posix/systemPath.h"
#include "text/unicode.h"

#include <atomic>
#include <cerrno>
#include <iconv.h>

namespace vellums::platform {
namespace {

std::atomic<unsigned>& chosenPage()
{
    static std::atomic<unsigned> page{kCodePageUtf8};
    return page;
}

class Converter {
public:
    Converter(const std::string& to, const std::string& from)
        : raw_(::iconv_open(to.c_str(), from.c_str()))
    {
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter()
    {
        if (usable())
            ::iconv_close(raw_);
    }

    bool usable() const { return raw_ != reinterpret_cast<iconv_t>(-1); }

    // Converts up to the first thing that cannot be converted and takes off the input what was done.
    void run(std::string_view& input, std::string& output)
    {
        while (!input.empty()) {
            // E2BIG says that the buffer is full, not that anything is wrong: it is emptied, and the rest
            // follows.
            char buffer[4096];
            char* from = const_cast<char*>(input.data());
            std::size_t left = input.size();
            char* to = buffer;
            std::size_t room = sizeof buffer;
            const std::size_t result = ::iconv(raw_, &from, &left, &to, &room);
            const int code = result == static_cast<std::size_t>(-1) ? errno : 0;
            output.append(buffer, sizeof buffer - room);
            input.remove_prefix(input.size() - left);
            if (code != E2BIG)
                return;
        }
    }

private:
    iconv_t raw_;
};

std::string pageName(unsigned page)
{
    return "CP" + std::to_string(page);
}

std::u16string textOfUnits(const std::string& bytes)
{
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned low = static_cast<unsigned char>(bytes[2 * i]);
        const unsigned high = static_cast<unsigned char>(bytes[2 * i + 1]);
        text[i] = static_cast<char16_t>(low | (high << 8));
    }
    return text;
}

std::string unitsOfText(std::u16string_view text)
{
    std::string bytes(text.size() * 2, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes[2 * i] = static_cast<char>(text[i] & 0xFF);
        bytes[2 * i + 1] = static_cast<char>(text[i] >> 8);
    }
    return bytes;
}

// Bytes that a page leaves undefined stand for the control characters of the same number, as on
// Windows.
bool undefinedByte(unsigned page, char16_t c)
{
    const std::string_view undefined = "\x81\x8D\x8F\x90\x9D";
    return page == 1252 && c >= 0x80 && c < 0xA0 &&
        undefined.find(static_cast<char>(c)) != std::string_view::npos;
}

// The text in the page; counts what had to become "?".
std::string convert(std::u16string_view text, std::size_t& missing)
{
    missing = 0;
    const unsigned page = chosenPage().load();
    if (page == kCodePageUtf8)
        return text::toUtf8(text);
    Converter converter(pageName(page), "UTF-16LE");
    const std::string units = unitsOfText(text);
    std::string_view input = units;
    std::string out;
    out.reserve(text.size());
    for (;;) {
        converter.run(input, out);
        // A unit is two bytes; iconv never stops between them.
        if (input.size() < 2)
            return out;
        const auto c = static_cast<char16_t>(
            static_cast<unsigned char>(input[0]) | (static_cast<unsigned char>(input[1]) << 8));
        input.remove_prefix(2);
        if (undefinedByte(page, c)) {
            out.push_back(static_cast<char>(c));
        } else {
            out.push_back('?');
            ++missing;
        }
    }
}

} // namespace

unsigned ansiCodePage()
{
    return chosenPage().load();
}

bool setAnsiCodePage(unsigned codePage)
{
    if (codePage != kCodePageUtf8 && !Converter("UTF-16LE", pageName(codePage)).usable())
        return false;
    chosenPage().store(codePage);
    return true;
}

std::u16string fromAnsi(std::string_view bytes)
{
    return fromCodePage(chosenPage().load(), bytes);
}

std::u16string fromCodePage(unsigned codePage, std::string_view bytes)
{
    if (codePage == kCodePageUtf8)
        return text::fromUtf8(bytes);
    Converter converter("UTF-16LE", pageName(codePage));
    std::string units;
    units.reserve(bytes.size() * 2);
    for (;;) {
        converter.run(bytes, units);
        if (bytes.empty())
            return textOfUnits(units);
        const auto byte = static_cast<unsigned char>(bytes[0]);
        const char16_t c = undefinedByte(codePage, byte) ? byte : char16_t{0xFFFD};
        units += unitsOfText({&c, 1});
        bytes.remove_prefix(1);
    }
}

std::string toAnsi(std::u16string_view text)
{
    std::size_t missing = 0;
    return convert(text, missing);
}

std::optional<std::string> toAnsiExact(std::u16string_view text)
{
    // A name of this system that is no UTF-8 is held as it is.
    if (chosenPage().load() == kCodePageUtf8)
        return systemPath(text);
    std::size_t missing = 0;
    std::string bytes = convert(text, missing);
    if (missing != 0)
        return std::nullopt;
    return bytes;
}

std::u16string throughAnsi(std::u16string_view text)
{
    if (chosenPage().load() == kCodePageUtf8)
        return std::u16string(text);
    return fromAnsi(toAnsi(text));
}

std::int16_t ansiCode(char16_t c)
{
    if (c < 0x80)
        return static_cast<std::int16_t>(c);
    if (chosenPage().load() == kCodePageUtf8)
        return -1;
    // The number is signed as scripts know it: a lead byte of 0x80 and more makes it negative.
    const std::string bytes = toAnsi({&c, 1});
    if (bytes.size() == 1)
        return static_cast<unsigned char>(bytes[0]);
    const unsigned high = static_cast<unsigned char>(bytes[0]);
    const unsigned low = static_cast<unsigned char>(bytes[1]);
    return static_cast<std::int16_t>((high << 8) | low);
}

} // namespace vellums::platform

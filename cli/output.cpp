// Every kind of value has one form, the same on every system and in every language: shortest digits that give
// the same floating-point number, exact digits of decimals and amounts, dates to the second. Text is the only
// kind that needs escaping.
#include "cli/output.h"

#include "text/decimal.h"
#include "text/oleDate.h"
#include "text/unicode.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <span>

namespace vellums::cli {
namespace {

using text::decimal;

std::u16string wide(std::string_view ascii)
{
    return std::u16string(ascii.begin(), ascii.end());
}

template <typename Number>
std::u16string shortest(Number number)
{
    std::array<char, 400> digits{};
    const auto [end, code] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return wide({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

std::u16string hexadecimal(std::span<const std::byte> bytes)
{
    std::u16string digits;
    for (const std::byte byte : bytes) {
        const auto value = std::to_integer<unsigned>(byte);
        digits.push_back(u"0123456789ABCDEF"[value >> 4]);
        digits.push_back(u"0123456789ABCDEF"[value & 15u]);
    }
    return digits;
}

// Digits of a whole number with the point so many places from the right; zeros at the end of the
// fraction do not count.
std::u16string withPoint(std::u16string digits, std::size_t places, bool negative)
{
    if (digits.size() <= places)
        digits.insert(0, places + 1 - digits.size(), u'0');
    if (places > 0) {
        digits.insert(digits.size() - places, u".");
        while (digits.back() == u'0')
            digits.pop_back();
        if (digits.back() == u'.')
            digits.pop_back();
    }
    return negative && digits != u"0" ? u"-" + digits : digits;
}

std::u16string currencyText(jet::Currency value)
{
    const std::int64_t amount = value.tenThousandths;
    const std::u16string digits = decimal(amount);
    return withPoint(amount < 0 ? digits.substr(1) : digits, 4, amount < 0);
}

// 128 bits, the highest word first, divided by ten again and again; the remainders are the digits from the
// right.
std::u16string decimalText(jet::Decimal value)
{
    std::u16string digits;
    for (auto left = value.magnitude; left != std::array<std::uint32_t, 4>{};) {
        std::uint64_t rest = 0;
        for (std::uint32_t& word : left) {
            rest = (rest << 32) | word;
            word = static_cast<std::uint32_t>(rest / 10);
            rest %= 10;
        }
        digits.insert(digits.begin(), static_cast<char16_t>(u'0' + rest));
    }
    return withPoint(digits, value.scale, value.negative);
}

std::u16string dateText(jet::Date date)
{
    const auto time = text::localTime(date.days);
    return time ? text::isoDateTime(*time) : shortest(date.days);
}

// The first three groups are stored as numbers, low byte first.
std::u16string guidText(const jet::Guid& guid)
{
    std::u16string text = u"{";
    for (const int place : {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15}) {
        if (place < 0)
            text += u"-";
        else
            text += hexadecimal(std::span(guid.bytes).subspan(static_cast<std::size_t>(place), 1));
    }
    return text + u"}";
}

struct FieldText {
    std::u16string operator()(jet::Null) const { return u"\\N"; }
    std::u16string operator()(bool value) const { return value ? u"-1" : u"0"; }
    std::u16string operator()(std::int32_t value) const { return decimal(value); }
    std::u16string operator()(std::int64_t value) const { return decimal(value); }
    std::u16string operator()(float value) const { return shortest(value); }
    std::u16string operator()(double value) const { return shortest(value); }
    std::u16string operator()(jet::Date value) const { return dateText(value); }
    std::u16string operator()(jet::Currency value) const { return currencyText(value); }
    std::u16string operator()(const jet::Decimal& value) const { return decimalText(value); }
    std::u16string operator()(const jet::Guid& value) const { return guidText(value); }
    std::u16string operator()(const std::u16string& value) const { return escaped(value); }
    std::u16string operator()(const jet::Bytes& value) const { return hexadecimal(value); }
};

// A value as a field: NULL \N, booleans -1 and 0, dates yyyy-mm-dd hh:nn:ss, bytes as hexadecimal digits.
std::u16string fieldText(const Value& value)
{
    return std::visit(FieldText(), value);
}

} // namespace

std::u16string escaped(std::u16string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (const char16_t c : text) {
        switch (c) {
        case u'\t':
            out += u"\\t";
            break;
        case u'\n':
            out += u"\\n";
            break;
        case u'\r':
            out += u"\\r";
            break;
        case u'\\':
            out += u"\\\\";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::u16string unescaped(std::u16string_view text)
{
    constexpr std::u16string_view kLetters = u"tnr\\";
    constexpr std::u16string_view kMeant = u"\t\n\r\\";
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t found =
            text[i] == u'\\' && i + 1 < text.size() ? kLetters.find(text[i + 1]) : kLetters.npos;
        if (found == kLetters.npos) {
            out += text[i];
        } else {
            out += kMeant[found];
            ++i;
        }
    }
    return out;
}

void print(std::u16string_view text)
{
    const std::string bytes = text::toUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

void printLine(std::u16string_view text)
{
    print(text);
    print(u"\n");
}

void printFields(const std::vector<std::u16string>& fields)
{
    std::u16string line;
    for (std::size_t i = 0; i < fields.size(); ++i)
        line += (i == 0 ? u"" : u"\t") + escaped(fields[i]);
    printLine(line);
}

void printRow(const std::vector<Value>& values)
{
    std::u16string line;
    for (std::size_t i = 0; i < values.size(); ++i)
        line += (i == 0 ? u"" : u"\t") + fieldText(values[i]);
    printLine(line);
}

// An error of an earlier write stays set, so that it is not lost when the last one succeeds.
bool flush()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

// Standard output first, so that both keep their order where they go to the same place.
void complain(std::u16string_view sentence)
{
    std::fflush(stdout);
    const std::string bytes = text::toUtf8(sentence) + "\n";
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

std::u16string readInput()
{
    std::string bytes;
    std::array<char, 65536> piece{};
    while (const std::size_t read = std::fread(piece.data(), 1, piece.size(), stdin))
        bytes.append(piece.data(), read);
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text::fromUtf8(
        bytes.starts_with(kMark) ? std::string_view(bytes).substr(kMark.size()) : std::string_view(bytes));
}

} // namespace vellums::cli

#include "tests/readers/jsonLine.h"

#include "jet/sql/values/conversion.h"
#include "text/oleDate.h"

#include <array>
#include <cstdio>

namespace vellums::tests {

namespace {

std::string plain(double number)
{
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "\"%.17g\"", number);
    return buffer.data();
}

std::string dateText(double days)
{
    std::array<char, 120> buffer{};
    const std::optional<text::LocalTime> time = text::localTime(days);
    const text::LocalTime t = time.value_or(text::LocalTime{});
    std::snprintf(buffer.data(), buffer.size(), "\"%04d-%02d-%02d %02d:%02d:%02d %.17g\"", t.year, t.month,
        t.day, t.hour, t.minute, t.second, days);
    return buffer.data();
}

std::string hexadecimal(const jet::Bytes& bytes)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text = "\"";
    for (const std::byte b : bytes) {
        text += kDigits[static_cast<unsigned>(b) >> 4];
        text += kDigits[static_cast<unsigned>(b) & 15];
    }
    return text + "\"";
}

} // namespace

std::string jsonText(std::u16string_view text)
{
    std::string json = "\"";
    for (const char16_t unit : text) {
        if (unit >= 0x20 && unit < 0x7F && unit != u'"' && unit != u'\\') {
            json += static_cast<char>(unit);
            continue;
        }
        std::array<char, 8> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "\\u%04x", static_cast<unsigned>(unit));
        json += buffer.data();
    }
    return json + "\"";
}

std::string jsonValue(const jet::Value& value)
{
    if (jet::isNull(value))
        return "null";
    if (const auto* boolean = std::get_if<bool>(&value))
        return *boolean ? "true" : "false";
    if (const auto* single = std::get_if<float>(&value))
        return plain(static_cast<double>(*single));
    if (const auto* number = std::get_if<double>(&value))
        return plain(*number);
    if (const auto* date = std::get_if<jet::Date>(&value))
        return dateText(date->days);
    if (const auto* bytes = std::get_if<jet::Bytes>(&value))
        return hexadecimal(*bytes);
    return jsonText(jet::sql::textOf(value));
}

} // namespace vellums::tests

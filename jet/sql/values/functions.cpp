#include "jet/sql/values/functions.h"

#include "jet/sql/values/caseFold.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/dateForm.h"
#include "jet/sql/values/dateText.h"
#include "jet/sql/values/operators.h"
#include "jet/sql/values/sqlError.h"
#include "text/letterCase.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace vellums::jet::sql {

namespace {

// A place or a number of characters: at least `least`, and no more than any text is long.
std::size_t countOf(const Value& value, double least)
{
    const double number = std::nearbyint(numberOf(value));
    if (!(number >= least))
        throwInvalidCall();
    return static_cast<std::size_t>(std::min(number, 4e9));
}

std::u16string part(const std::u16string& text, std::size_t begin, std::size_t length)
{
    return begin >= text.size() ? std::u16string() : text.substr(begin, length);
}

Value mid(const std::vector<Value>& arguments)
{
    const std::u16string text = textOf(arguments[0]);
    const std::size_t start = countOf(arguments[1], 1);
    const std::size_t length = arguments.size() == 3 ? countOf(arguments[2], 0) : text.size();
    return part(text, start - 1, length);
}

Value right(const std::vector<Value>& arguments)
{
    const std::u16string text = textOf(arguments[0]);
    const std::size_t length = std::min(countOf(arguments[1], 0), text.size());
    return text.substr(text.size() - length);
}

// The start, where there is one, is the first argument. Places count from 1. Folding keeps lengths, so
// places in the folded texts are those in the texts themselves.
Value inStr(const std::vector<Value>& arguments)
{
    const bool hasStart = arguments.size() == 3;
    const std::size_t start = hasStart ? countOf(arguments[0], 1) : 1;
    const auto folded = [](const Value& value) {
        std::u16string text = textOf(value);
        for (char16_t& unit : text)
            unit = foldTable()[unit];
        return text;
    };
    const std::u16string text = folded(arguments[hasStart ? 1 : 0]);
    const std::u16string wanted = folded(arguments[hasStart ? 2 : 1]);
    if (start > text.size())
        return 0;
    const std::size_t place = text.find(wanted, start - 1);
    return place == std::u16string::npos ? 0 : static_cast<std::int32_t>(place + 1);
}

Value trimmed(Function function, const std::u16string& text)
{
    std::size_t begin = 0;
    std::size_t end = text.size();
    if (function != Function::RTrim)
        begin = std::min(text.find_first_not_of(u' '), text.size());
    if (function != Function::LTrim)
        end = text.find_last_not_of(u' ') + 1; // none: npos + 1 is 0
    return begin < end ? text.substr(begin, end - begin) : std::u16string();
}

// As a date column takes values, but for what is out of range: a mismatch here, an overflow there.
Value cDate(const Value& value)
{
    const std::optional<Date> date = dateOf(value);
    if (!date)
        throwTypeMismatch();
    return *date;
}

bool isDate(const Value& value)
{
    if (const auto* text = std::get_if<std::u16string>(&value))
        return readDateText(*text).has_value();
    return std::holds_alternative<Date>(value);
}

Value cLng(const Value& value)
{
    const std::optional<std::int32_t> number = roundedLong(numberOf(value));
    if (!number)
        throwTypeMismatch();
    return *number;
}

} // namespace

Value callFunction(Function function, const std::vector<Value>& arguments, Date now)
{
    switch (function) {
    case Function::IsNull:
        return valueOf(truthOf(isNull(arguments[0])));
    case Function::IsDate:
        return valueOf(truthOf(isDate(arguments[0])));
    case Function::Now:
        return now;
    case Function::Date:
        return Date{std::trunc(now.days)};
    case Function::Time:
        return Date{std::fabs(now.days - std::trunc(now.days))};
    default:
        break;
    }
    // From here on a NULL among the arguments makes the answer NULL.
    if (std::any_of(arguments.begin(), arguments.end(), [](const Value& value) { return isNull(value); }))
        return Null{};
    switch (function) {
    case Function::Mid:
        return mid(arguments);
    case Function::Left:
        return part(textOf(arguments[0]), 0, countOf(arguments[1], 0));
    case Function::Right:
        return right(arguments);
    case Function::Len:
        return static_cast<std::int32_t>(textOf(arguments[0]).size());
    case Function::InStr:
        return inStr(arguments);
    case Function::UCase:
        return text::upperCase(textOf(arguments[0]));
    case Function::LCase:
        return text::lowerCaseOfCapitals(textOf(arguments[0]));
    case Function::Trim:
    case Function::LTrim:
    case Function::RTrim:
        return trimmed(function, textOf(arguments[0]));
    case Function::CDate:
        return cDate(arguments[0]);
    case Function::CStr:
        return textOf(arguments[0]);
    case Function::CLng:
        return cLng(arguments[0]);
    default:
        assert(function == Function::CDbl);
        return numberOf(arguments[0]);
    }
}

} // namespace vellums::jet::sql

#include "store/connection.h"

#include "text/decimal.h"

namespace vellums {

std::u16string reasonOf(const ProviderError& error)
{
    return error.description + u" (" + text::decimal(error.number) + u")";
}

std::u16string textOf(const Value& value)
{
    const auto* text = std::get_if<std::u16string>(&value);
    return text == nullptr ? std::u16string() : *text;
}

} // namespace vellums

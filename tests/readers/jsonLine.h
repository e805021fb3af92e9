// Values as JSON, in ASCII, so that every unit of a text arrives as it is.
#pragma once

#include "jet/table/value.h"

#include <string>
#include <string_view>

namespace vellums::tests {

std::string jsonText(std::u16string_view text);

// NULL is null, booleans are true and false, bytes and GUIDs texts of hexadecimal digits, dates texts
// like "2024-03-05 09:07:03 45356.379895833335"; all other values are texts that keep every digit.
std::string jsonValue(const jet::Value& value);

} // namespace vellums::tests

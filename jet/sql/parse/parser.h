// Reads the text of one statement.
#pragma once

#include "jet/sql/parse/tree.h"

#include <string_view>

namespace vellums::jet::sql {

// Throws Error with the sentence that the providers have for the fault.
Statement parseStatement(std::u16string_view sql);

// An expression on its own, such as the default value of a column. Throws Error.
Expression parseExpression(std::u16string_view text);

} // namespace vellums::jet::sql

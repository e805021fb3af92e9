// The functions of the dialect.
#pragma once

#include "jet/sql/tree.h"

#include <vector>

namespace vellums::jet::sql {

// The value of a function for its arguments, whose number the parser has checked. `now` is the moment of
// the statement. IIF is not among them: it looks at only one of its values. Throws Error: mismatch,
// invalid call (5).
Value callFunction(Function function, const std::vector<Value>& arguments, Date now);

} // namespace vellums::jet::sql

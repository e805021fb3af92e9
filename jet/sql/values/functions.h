// The functions of the dialect.
#pragma once

#include "jet/table/value.h"

#include <vector>

namespace vellums::jet::sql {

// None stands where there is none; Iif and those from Count on are not called by callFunction().
enum class Function {
    None,
    Mid,
    Left,
    Right,
    Len,
    InStr,
    UCase,
    LCase,
    Trim,
    LTrim,
    RTrim,
    Iif,
    IsNull,
    IsDate,
    CDate,
    Now,
    Date,
    Time,
    CStr,
    CLng,
    CDbl,
    Count,
    Min,
    Max,
    Sum,
    Avg,
};

// The value of a function for its arguments, whose number the parser has checked. `now` is the moment of
// the statement. IIF is not among them: it looks at only one of its values. Throws Error: mismatch,
// invalid call (5).
Value callFunction(Function function, const std::vector<Value>& arguments, Date now);

} // namespace vellums::jet::sql

// Values as ADO hands them over.
#pragma once

#include "jet/table/value.h"

#include <windows.h>

#include <oleauto.h>

namespace vellums {

// The type of a field as ADO numbers it, for what the value alone does not tell.
inline constexpr int kAdGuid = 72;

// Types whose values may be megabytes long: memos and long binary columns.
bool isLongType(int adType);

// Puts the value into `out`, whose room for text is used again. A whole number may come in any width.
// Throws platform::ComError (type mismatch) for what no column of an Access file holds.
void takeValue(jet::Value& out, const VARIANT& value, int adType);

} // namespace vellums

// Values of the embedded engine as ADO hands them over.
#pragma once

#include "jet/file/columnType.h"
#include "jet/table/value.h"

#include <windows.h>

#include <oleauto.h>

namespace vellums::tests::ado {

// Fills an empty VARIANT, of the kind that the providers use for the column type.
void fillVariant(VARIANT& out, const jet::Value& value, jet::ColumnType type);

// Field.Type.
int adTypeOf(jet::ColumnType type);

} // namespace vellums::tests::ado

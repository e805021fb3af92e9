// Reads the statements that change tables themselves: CREATE, ALTER and DROP.
#pragma once

#include "jet/sql/parse/tokenCursor.h"
#include "jet/sql/parse/tree.h"

namespace vellums::jet::sql {

// The cursor stands at the first word. Throws Error.
Statement parseSchemaStatement(TokenCursor& cursor);

} // namespace vellums::jet::sql

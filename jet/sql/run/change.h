// Runs INSERT, UPDATE and DELETE. The rows that a statement changes are fixed before the first change.
#pragma once

#include "jet/sql/parse/tree.h"

#include <optional>

namespace vellums::jet::sql {

struct ChangeResult {
    std::int32_t rows = 0;
    std::optional<std::int32_t> identity; // the last autonumber given out
};

// All throw Error; the file then holds changes that must be taken back.
ChangeResult runInsert(PageFile& file, InsertStatement& statement, Date now);
ChangeResult runUpdate(PageFile& file, UpdateStatement& statement, Date now);
ChangeResult runDelete(PageFile& file, DeleteStatement& statement, Date now);

} // namespace vellums::jet::sql

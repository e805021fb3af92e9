// What a statement gave back.
#pragma once

#include "jet/file/columnType.h"
#include "jet/table/value.h"

#include <string>
#include <vector>

namespace vellums::jet {

struct Result {
    bool hasRows = false; // SELECT
    std::vector<std::u16string> columns;
    std::vector<ColumnType> types;
    std::vector<std::vector<Value>> rows;
    std::int32_t changedRows = 0; // INSERT, UPDATE, DELETE
};

} // namespace vellums::jet

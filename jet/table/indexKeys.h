// From rows to index keys.
#pragma once

#include "jet/index/bTree.h"
#include "jet/index/key.h"
#include "jet/table/rowCodec.h"
#include "jet/table/table.h"

#include <optional>

namespace vellums::jet {

KeyColumn keyColumnOf(const PageFile& file, const TableDefinition& definition, const IndexColumn& column);
TreePlace treeOf(const TableDefinition& definition, const PhysicalIndex& index);

// The key of a row in one index.
struct RowKey {
    enum class State {
        Encoded,
        Absent,     // the index leaves out rows whose columns are all NULL
        Unencodable // no key can be made for this row
    };
    State state = State::Encoded;
    Bytes bytes;
    bool allNull = false;
    bool anyNull = false;
};

RowKey rowKey(
    const PageFile& file, const TableDefinition& definition, const PhysicalIndex& index, const Row& row);

} // namespace vellums::jet

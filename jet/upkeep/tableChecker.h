// Checks one table: its pages, rows, long values and indexes.
#pragma once

#include "jet/table/table.h"
#include "jet/upkeep/pageLedger.h"

#include <string>

namespace vellums::jet {

// Throws Error when the definition cannot be read; all other faults go into the ledger.
void checkTable(PageLedger& ledger, PageNo definitionPage, const std::u16string& name);

} // namespace vellums::jet

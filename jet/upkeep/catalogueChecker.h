// Checks what the system tables say about each other and about the tables.
#pragma once

#include "jet/upkeep/pageLedger.h"

#include <string>
#include <vector>

namespace vellums::jet {

struct CatalogueObject {
    std::int32_t id = 0;
    std::int32_t parentId = 0;
    std::u16string name;
    std::int32_t type = 0;
    std::optional<Bytes> properties;

    // There is a definition page behind it.
    bool hasDefinition() const { return type == 1 || (type == 4 && id > 0); }
};

// All rows of MSysObjects; those that cannot be read go into the ledger.
std::vector<CatalogueObject> readObjects(PageLedger& ledger);

void checkCatalogue(PageLedger& ledger, const std::vector<CatalogueObject>& objects);

} // namespace vellums::jet

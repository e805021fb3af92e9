// The texts that stand for attachments and other fields of several values.
#pragma once

#include "jet/catalogue/catalogue.h"

namespace vellums::jet::sql {

// Gives each complex column of the table the texts of its values: the names of attached files, the values,
// the versions of a memo, with semicolons between them, as a provider gives them. A column of which the
// catalogue knows nothing keeps its numbers. The file must outlive the table. Throws Error (damaged file).
void attachComplexTexts(
    PageFile& file, const Catalogue& catalogue, const CatalogueEntry& entry, Table& table);

} // namespace vellums::jet::sql

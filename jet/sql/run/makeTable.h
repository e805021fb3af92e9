// Runs SELECT ... INTO: makes a table with the columns of the answer and puts the rows into it.
//
// A column that is taken over as it is keeps its type, its length and whether it counts by itself; rules
// and indexes are not copied. One exception: SELECT * of a table with a unique index on its autonumber
// keeps that index, so that rows are found by their numbers as fast as before.
#pragma once

#include "jet/sql/parse/tree.h"

namespace vellums::jet::sql {

// Gives the number of rows. Throws Error: the table exists (3010), what a new table or a row may be
// refused for; the file then holds changes that must be taken back.
std::int32_t runSelectInto(PageFile& file, SelectStatement& statement, Date now);

} // namespace vellums::jet::sql

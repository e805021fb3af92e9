// Commands on a database as such.
#pragma once

#include "cli/arguments.h"

namespace vellums::cli {

void runCreate(const Arguments& arguments);
void runTables(const Arguments& arguments);
void runSql(const Arguments& arguments);
void runCheck(const Arguments& arguments);
void runCompact(const Arguments& arguments);

} // namespace vellums::cli

// Commands on the records of a table, and on texts.
#pragma once

#include "cli/arguments.h"

namespace vellums::cli {

void runAdd(const Arguments& arguments);
void runSearch(const Arguments& arguments);
void runShow(const Arguments& arguments);
void runDedupe(const Arguments& arguments);
void runDigest(const Arguments& arguments);
void runFind(const Arguments& arguments);

} // namespace vellums::cli

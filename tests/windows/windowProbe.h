// What tests of the running program look at besides its controls: its questions, and its database, read by
// the engine from outside.
#pragma once

#include "tests/windows/driver.h"

#include <string>
#include <vector>

namespace vellums::tests {

// How many dialogs of the program are open at the moment.
int questionsOpen(const Program& program);

// A record as it lies in a file.
struct StoredRecord {
    std::u16string table;
    int id = 0;
    std::u16string title;
    std::u16string text;
};

// Every record of every table with snippets in a file; waits while the program writes.
std::vector<StoredRecord> recordsIn(const std::u16string& file);

// A column of the first snippet table of a file, in the order of the IDs; NULL as an empty text. Waits
// while the program writes.
std::vector<std::u16string> textsOf(const std::u16string& file, const std::u16string& column);

} // namespace vellums::tests

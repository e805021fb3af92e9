// The database of the running program, read by the engine from outside.
#pragma once

#include <string>
#include <vector>

namespace vellums::tests {

// A record as it lies in a file.
struct StoredRecord {
    std::u16string table;
    int id = 0;
    std::u16string title;
    std::u16string text;
    std::u16string link;
};

// Every record of every table with snippets in a file; waits while the program writes.
std::vector<StoredRecord> recordsIn(const std::u16string& file);

} // namespace vellums::tests

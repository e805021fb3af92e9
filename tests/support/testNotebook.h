// A notebook with a database of its own, served by the client that the tests run through.
#pragma once

#include "store/notebook.h"
#include "tests/support/client.h"
#include "tests/support/shownLines.h"
#include "tests/support/temporaryFolder.h"

#include <string>
#include <utility>
#include <vector>

namespace vellums::tests {

// Keeps what the routines show. When it goes, the checker walks the whole file; its faults fail the test.
class TestNotebook {
public:
    explicit TestNotebook(
        const std::u16string& fileName = u"notes.mdb", const std::u16string& table = u"Notes");
    TestNotebook(const TestNotebook&) = delete;
    TestNotebook& operator=(const TestNotebook&) = delete;
    ~TestNotebook();

    Notebook& operator*() { return notebook_; }
    Notebook* operator->() { return &notebook_; }
    const Notebook* operator->() const { return &notebook_; }

    const TemporaryFolder& folder() const { return folder_; }
    const std::u16string& file() const { return file_; }
    const std::vector<std::u16string>& shown() const { return told_.lines; } // in order

    // Where it is collected, for a gate.
    Outcome& collected() { return told_.outcome; }
    // What a window would show of everything told since the last call.
    std::u16string outcome() { return std::exchange(told_.outcome, {}).line(notebook_.chinese); }

    // Runs one statement and gives its rows as texts: fields between "|", NULL as "NULL", dates as numbers.
    std::vector<std::u16string> rows(const std::u16string& sql);
    void run(const std::u16string& sql);

private:
    TemporaryFolder folder_;
    std::u16string file_;
    ShownLines told_;
    Notebook notebook_;
};

} // namespace vellums::tests

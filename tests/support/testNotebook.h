// A notebook with a database of its own, served by the client that the tests run through.
#pragma once

#include "store/notebook.h"
#include "tests/support/client.h"
#include "tests/support/temporaryFolder.h"

#include <string>
#include <vector>

namespace vellums::tests {

// Keeps what the routines show. When it goes, the checker walks the whole file; its faults fail the test.
class TestNotebook : private StatusLine {
public:
    explicit TestNotebook(
        const std::u16string& fileName = u"notes.mdb", const std::u16string& table = u"Notes");
    TestNotebook(const TestNotebook&) = delete;
    TestNotebook& operator=(const TestNotebook&) = delete;
    ~TestNotebook();

    Notebook& operator*() { return notebook_; }
    Notebook* operator->() { return &notebook_; }

    const TemporaryFolder& folder() const { return folder_; }
    const std::u16string& file() const { return file_; }
    const std::vector<std::u16string>& shown() const { return shown_; } // in the status line, in order

    // Runs one statement and gives its rows as texts: fields between "|", NULL as "NULL", dates as numbers.
    std::vector<std::u16string> rows(const std::u16string& sql);
    void run(const std::u16string& sql);

private:
    void show(const std::u16string& text) override { shown_.push_back(text); }

    TemporaryFolder folder_;
    std::u16string file_;
    Notebook notebook_;
    std::vector<std::u16string> shown_;
};

} // namespace vellums::tests

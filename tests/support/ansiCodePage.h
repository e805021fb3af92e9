// Another ANSI code page for one test.
#pragma once

#include "platform/codePage.h"

namespace vellums::tests {

// Where the code page is the system's, it cannot be chosen; active() then tells whether it is the
// wanted one by chance, and the test is skipped otherwise.
class AnsiCodePage {
public:
    explicit AnsiCodePage(unsigned codePage)
        : before_(platform::ansiCodePage())
    {
        changed_ = platform::setAnsiCodePage(codePage);
        active_ = platform::ansiCodePage() == codePage;
    }
    AnsiCodePage(const AnsiCodePage&) = delete;
    AnsiCodePage& operator=(const AnsiCodePage&) = delete;
    ~AnsiCodePage()
    {
        if (changed_)
            platform::setAnsiCodePage(before_);
    }
    bool active() const { return active_; }

private:
    unsigned before_;
    bool changed_ = false;
    bool active_ = false;
};

} // namespace vellums::tests

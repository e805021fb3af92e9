// A main window without a screen and without a database, for commands that work on its boxes alone.
#pragma once

#include "tests/support/memoryControls.h"

#include <string>

namespace vellums::tests {

struct WindowFixture {
    struct Line : StatusLine {
        std::u16string last = u"before";
        void show(const std::u16string& text) override { last = text; }
    };

    Line status;
    Notebook notebook{status};
    MemoryWindow window;
    MainWindow ports = window.ports(status);
};

} // namespace vellums::tests

// Keeps what the routines tell, in order, whatever kind of line it is.
#pragma once

#include "store/outcome.h"

#include <string>
#include <vector>

namespace vellums::tests {

class ShownLines : public StatusLine {
public:
    void failed(const std::u16string& line) override
    {
        outcome.failed(line);
        lines.push_back(line);
    }
    void noticed(const std::u16string& line) override
    {
        outcome.noticed(line);
        lines.push_back(line);
    }
    void done(const std::u16string& line) override
    {
        outcome.done(line);
        lines.push_back(line);
    }
    void found(const std::u16string& line) override
    {
        outcome.found(line);
        lines.push_back(line);
    }

    std::vector<std::u16string> lines;
    Outcome outcome; // what a window would show of all of them
};

} // namespace vellums::tests

// Keeps what the routines tell, in order, whatever kind of line it is.
#pragma once

#include "store/outcome.h"

#include <string>
#include <vector>

namespace vellums::tests {

class ShownLines : public StatusLine {
public:
    void failed(const std::u16string& line) override { keep(&Outcome::failed, line); }
    void noticed(const std::u16string& line) override { keep(&Outcome::noticed, line); }
    void done(const std::u16string& line) override { keep(&Outcome::done, line); }
    void found(const std::u16string& line) override { keep(&Outcome::found, line); }

    std::vector<std::u16string> lines;
    Outcome outcome; // what a window would show of all of them

private:
    void keep(void (Outcome::*kind)(const std::u16string&), const std::u16string& line)
    {
        (outcome.*kind)(line);
        lines.push_back(line);
    }
};

} // namespace vellums::tests

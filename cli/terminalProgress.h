// Progress of long work where a person looks on: one line on standard error, written over as the work goes
// on and taken away at its end. Nothing where standard error is no terminal.
#pragma once

#include "platform/terminal.h"
#include "ports/progress.h"
#include "store/records/bulkAct.h"

#include <cstdint>
#include <string>

namespace vellums::cli {

class TerminalProgress : public Progress {
public:
    void begin(std::u16string_view what) override;
    // Shows "<what>: 3 of 10", or "<what>: 3", at most ten times a second. Always true.
    bool step(std::size_t done, std::size_t total) override;
    void end() noexcept override { clear(); }

    // Takes the line away before something else is printed; the next step shows it again.
    void clear() noexcept;

    // For a bulk act, while this object lives: it shows its steps, and nobody can be asked.
    BulkUser bulkUser(bool safetyCopy, std::u16string_view what);

private:
    std::string what_; // UTF-8
    bool terminal_ = platform::errorsGoToTerminal();
    std::size_t shownLength_ = 0; // of the line on the screen, in bytes
    std::uint64_t shownMs_ = 0;
};

} // namespace vellums::cli

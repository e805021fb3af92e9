#include "cli/terminalProgress.h"

#include "platform/clock.h"
#include "text/unicode.h"

#include <cstdio>
#include <utility>

namespace vellums::cli {

void TerminalProgress::begin(std::u16string_view what)
{
    what_ = text::toUtf8(what);
    shownMs_ = platform::steadyMs();
}

bool TerminalProgress::step(std::size_t done, std::size_t total)
{
    constexpr std::uint64_t kPauseMs = 100;
    if (!terminal_ || platform::steadyMs() - shownMs_ < kPauseMs)
        return true;
    shownMs_ = platform::steadyMs();
    clear();
    const std::string line =
        what_ + ": " + std::to_string(done) + (total == 0 ? "" : " of " + std::to_string(total));
    shownLength_ = line.size();
    std::fprintf(stderr, "\r%s", line.c_str());
    std::fflush(stderr);
    return true;
}

void TerminalProgress::clear() noexcept
{
    // Blanks over the line, and the cursor back at its start, where whatever comes next is printed.
    if (const std::size_t length = std::exchange(shownLength_, 0); length != 0)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(length), "");
}

BulkUser TerminalProgress::bulkUser(bool safetyCopy, std::u16string_view what)
{
    BulkUser user;
    user.safetyCopy = safetyCopy;
    user.goesOn = [this, name = text::toUtf8(what)](std::size_t done, std::size_t total) {
        what_ = name;
        return step(done, total);
    };
    return user;
}

} // namespace vellums::cli

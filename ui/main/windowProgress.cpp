// step() is called for each record, however small, so it mostly looks at the clock and returns: messages get
// their turn every kBetweenMs, the texts change every kRefreshMs, and nothing is shown of work that is over
// within kUnseenMs. The link stays what it was underneath (LinkPanel): a record that is loaded meanwhile
// changes the link, and is shown when the cover goes.
#include "ui/main/windowProgress.h"

#include "platform/clock.h"
#include "text/decimal.h"

namespace vellums::ui {
namespace {

constexpr std::uint64_t kUnseenMs = 500;  // shorter work shows nothing
constexpr std::uint64_t kBetweenMs = 15;  // from one look at the messages to the next
constexpr std::uint64_t kRefreshMs = 100; // from one text to the next

} // namespace

void LinkPanel::setText(std::u16string_view text)
{
    link_ = text;
    if (!covered_)
        panel_->setCaption(link_);
}

void LinkPanel::cover(const std::u16string& text)
{
    covered_ = true;
    panel_->setCaption(text);
}

void LinkPanel::uncover()
{
    if (!covered_)
        return;
    covered_ = false;
    panel_->setCaption(link_);
}

void WindowProgress::attach(HWND window, bool chinese, ucStatus& panel, std::function<void()> treatMessages)
{
    taskbar_.attach(window);
    chinese_ = chinese;
    link_.attach(panel);
    treatMessages_ = std::move(treatMessages);
}

void WindowProgress::begin(std::u16string_view what)
{
    what_ = what;
    stopAsked_ = false;
    shown_ = false;
    beganMs_ = treatedMs_ = platform::steadyMs();
    running_ = true;
    if (Running)
        Running(true);
}

bool WindowProgress::step(std::size_t done, std::size_t total)
{
    const std::uint64_t now = platform::steadyMs();
    if (now - beganMs_ >= kUnseenMs && (!shown_ || now - shownMs_ >= kRefreshMs)) {
        show(done, total);
        shownMs_ = now;
    }
    if (now - treatedMs_ >= kBetweenMs) {
        // Counted from the end of the treatment, so that work goes on even where treating takes longer than
        // the pause.
        treatMessages_();
        treatedMs_ = platform::steadyMs();
    }
    return !stopAsked_;
}

void WindowProgress::show(std::size_t done, std::size_t total)
{
    shown_ = true;
    std::u16string text = what_ + u": " + text::decimal(static_cast<std::int64_t>(done));
    if (total != 0)
        text += u" / " + text::decimal(static_cast<std::int64_t>(total));
    link_.cover(text + (chinese_ ? u" (按 Esc 停止)" : u" (Esc stops)"));
    taskbar_.show(done, total);
}

void WindowProgress::end() noexcept
{
    running_ = false;
    try {
        // The boxes first: they must not stay locked when there is no memory for a text.
        if (Running)
            Running(false);
        taskbar_.hide();
        link_.uncover();
    } catch (...) { // the panel keeps the last one
    }
}

} // namespace vellums::ui

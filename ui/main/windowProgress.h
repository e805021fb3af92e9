// Long work in the window: while it runs the boxes cannot be typed into, the window still draws, moves and
// takes Esc or a close as the wish to stop. From half a second on the right panel and the taskbar button
// show how far it is.
#pragma once

#include "ports/controls.h"
#include "ports/progress.h"
#include "ui/controls/ucStatus.h"
#include "ui/windows/taskbarProgress.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vellums::ui {

// The right panel's own text, the link, which progress may cover for a while.
class LinkPanel : public Label {
public:
    void attach(ucStatus& panel) { panel_ = &panel; }
    std::u16string text() const override { return link_; }
    void setText(std::u16string_view text) override;
    void cover(const std::u16string& text);
    void uncover();

private:
    ucStatus* panel_ = nullptr;
    std::u16string link_;
    bool covered_ = false;
};

class WindowProgress : public Progress {
public:
    // `treatMessages`: lets the window have what may be treated while work runs.
    void attach(HWND window, bool chinese, ucStatus& panel, std::function<void()> treatMessages);
    LinkPanel& link() { return link_; }

    void begin(std::u16string_view what) override;
    bool step(std::size_t done, std::size_t total) override;
    void end() noexcept override;

    bool isRunning() const { return running_; }
    // The user has pressed Esc or closes the window.
    void askToStop() { stopAsked_ = true; }
    // Called when work begins (true) and ends (false): the boxes follow.
    std::function<void(bool runs)> Running;

private:
    void show(std::size_t done, std::size_t total);

    LinkPanel link_;
    TaskbarProgress taskbar_;
    std::function<void()> treatMessages_;
    bool chinese_ = false;
    bool running_ = false;
    bool shown_ = false;
    bool stopAsked_ = false;
    std::u16string what_;
    std::uint64_t beganMs_ = 0;
    std::uint64_t treatedMs_ = 0;
    std::uint64_t shownMs_ = 0;
};

} // namespace vellums::ui

// A procedure of ours that sees a window's messages before the window's own does.
#pragma once

#include <memory>

#include <windows.h>

#include <commctrl.h>

namespace vellums::ui {

// Puts the procedure on and takes it off exactly once: when the owner goes, by takeOff(), or with the
// window, whichever comes first. Several of them may stand on one window and go in any order.
class Subclass {
public:
    Subclass() = default;
    // The procedure is given `data` as its last argument, and passes a message on by DefSubclassProc(). It
    // may take itself off, or destroy its owner, before it passes the message on. Where the system
    // refuses, the window stays as it was.
    Subclass(HWND window, SUBCLASSPROC procedure, void* data);
    Subclass(Subclass&&) noexcept = default;
    Subclass& operator=(Subclass&& other) noexcept;
    ~Subclass() { takeOff(); }

    void takeOff() noexcept;
    bool isOn() const noexcept { return place_ != nullptr && place_->window != nullptr; }

private:
    // Where the procedure stands. Its address is its number among those on the window.
    struct Place {
        HWND window;
        SUBCLASSPROC procedure;
        void* data;
    };
    static LRESULT CALLBACK subclassProc(
        HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR number, DWORD_PTR place);
    static void leave(Place& place) noexcept;

    std::unique_ptr<Place> place_;
};

} // namespace vellums::ui

// The bar between the list and the text, dragged with the mouse.
#pragma once

#include <functional>

#include <windows.h>

namespace vellums::ui {

class fraSplitter {
public:
    void create(HWND parent, int id);
    HWND hwnd() const { return hwnd_; }
    bool isDragged() const { return dragged_; }

    // While the button is down: where the bar's left edge should go, in pixels of the parent.
    std::function<void(int left)> Moved;
    // The button was released, or the mouse was taken away.
    std::function<void()> Released;

private:
    static LRESULT CALLBACK splitterProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool onMessage(UINT message, LPARAM lParam);
    void endDrag();

    HWND hwnd_ = nullptr;
    bool dragged_ = false;
    int grip_ = 0; // where within the bar it was taken
};

} // namespace vellums::ui

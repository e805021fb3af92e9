#include "tests/support/heldClipboard.h"

#ifdef _WIN32
#include <future>
#include <thread>

#include <windows.h>
#else
#include "platform/posix/processClipboard.h"
#endif

namespace vellums::tests {

#ifdef _WIN32

// A thread of its own has it open, by a window of its own, as another program would.
struct HeldClipboard::Holder {
    std::promise<void> opened;
    std::promise<void> enough;
    std::thread thread{[this] {
        const HWND window =
            CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        while (!OpenClipboard(window))
            Sleep(5);
        opened.set_value();
        enough.get_future().wait();
        CloseClipboard();
        DestroyWindow(window);
    }};
    Holder() { opened.get_future().wait(); }
    ~Holder()
    {
        enough.set_value();
        thread.join();
    }
};

#else

struct HeldClipboard::Holder {
    Holder() { platform::holdClipboard(true); }
    ~Holder() { platform::holdClipboard(false); }
};

#endif

HeldClipboard::HeldClipboard()
    : holder_(std::make_unique<Holder>())
{
}

HeldClipboard::~HeldClipboard() = default;

} // namespace vellums::tests

#include "platform/clipboard.h"

#include "platform/win32/systemPath.h"

#include <cstring>
#include <string_view>

#include <windows.h>

namespace vellums::platform {
namespace {

// The clipboard, open. It wants a window as its owner before it takes anything.
class OpenedClipboard {
public:
    OpenedClipboard()
        : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr))
    {
        // Anyone else may have it open for a moment.
        constexpr int kAttempts = 10;
        constexpr DWORD kPauseMs = 50;
        for (int attempt = 0; attempt < kAttempts && !open_; ++attempt) {
            if (attempt != 0)
                Sleep(kPauseMs);
            open_ = OpenClipboard(window_) != FALSE;
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard()
    {
        if (open_)
            CloseClipboard();
        if (window_ != nullptr)
            DestroyWindow(window_);
    }
    explicit operator bool() const { return open_; }

private:
    HWND window_;
    bool open_ = false;
};

class LockedBlock {
public:
    explicit LockedBlock(HGLOBAL block)
        : block_(block)
        , data_(GlobalLock(block))
    {
    }
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;
    ~LockedBlock()
    {
        if (data_ != nullptr)
            GlobalUnlock(block_);
    }
    void* data() const { return data_; }

private:
    HGLOBAL block_;
    void* data_;
};

// A block of the text and its terminator; null: there is no room for it.
HGLOBAL blockOf(const std::u16string& text)
{
    const std::size_t bytes = (text.size() + 1) * sizeof(char16_t);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (block == nullptr)
        return nullptr;
    if (const LockedBlock locked(block); locked.data() != nullptr) {
        std::memcpy(locked.data(), text.c_str(), bytes);
        return block;
    }
    GlobalFree(block);
    return nullptr;
}

} // namespace

bool clipboardHasText()
{
    return IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE ||
        IsClipboardFormatAvailable(CF_TEXT) != FALSE;
}

ClipboardText clipboardText()
{
    const OpenedClipboard clipboard;
    if (!clipboard)
        return {ClipboardText::State::Held, {}};
    // The system makes this form of any text that was put there in another.
    const HGLOBAL block = GetClipboardData(CF_UNICODETEXT); // stays the clipboard's
    if (block == nullptr)
        return {};
    const LockedBlock locked(block);
    if (locked.data() == nullptr)
        return {};
    // The terminator may be missing.
    const std::wstring_view whole(
        static_cast<const wchar_t*>(locked.data()), GlobalSize(block) / sizeof(wchar_t));
    return {ClipboardText::State::Text, fromWide(whole.substr(0, whole.find(L'\0')))};
}

bool setClipboardText(const std::u16string& text)
{
    const HGLOBAL block = blockOf(text.substr(0, text.find(u'\0')));
    if (block == nullptr)
        return false;
    const OpenedClipboard clipboard;
    // Once taken, the block is the system's.
    const bool taken = clipboard && EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, block) != nullptr;
    if (!taken)
        GlobalFree(block);
    return taken;
}

} // namespace vellums::platform

// Owners of what Windows wants back.
#pragma once

#include <utility>

#include <windows.h>

namespace vellums::ui {

// Holds one raw handle, moves, never copies, gives back exactly once.
template <typename Kind>
class Owned {
public:
    using Raw = typename Kind::Raw;
    Owned() = default;
    explicit Owned(Raw raw) noexcept
        : raw_(raw)
    {
    }
    Owned(Owned&& other) noexcept
        : raw_(other.release())
    {
    }
    Owned& operator=(Owned&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    ~Owned() { reset(Kind::none()); }

    Raw get() const noexcept { return raw_; }
    Raw release() noexcept { return std::exchange(raw_, Kind::none()); }
    void reset(Raw raw) noexcept
    {
        if (raw_ != Kind::none())
            Kind::giveBack(raw_);
        raw_ = raw;
    }

private:
    Raw raw_ = Kind::none();
};

struct MenuKind {
    using Raw = HMENU;
    static Raw none() noexcept { return nullptr; }
    static void giveBack(Raw menu) noexcept { DestroyMenu(menu); }
};
using OwnedMenu = Owned<MenuKind>; // release() it once a window or a parent menu has taken it

struct HookKind {
    using Raw = HHOOK;
    static Raw none() noexcept { return nullptr; }
    static void giveBack(Raw hook) noexcept { UnhookWindowsHookEx(hook); }
};
using OwnedHook = Owned<HookKind>;

struct FontKind {
    using Raw = HFONT;
    static Raw none() noexcept { return nullptr; }
    static void giveBack(Raw font) noexcept { DeleteObject(font); }
};
using OwnedFont = Owned<FontKind>;

struct BrushKind {
    using Raw = HBRUSH;
    static Raw none() noexcept { return nullptr; }
    static void giveBack(Raw brush) noexcept { DeleteObject(brush); }
};
using OwnedBrush = Owned<BrushKind>;

struct AcceleratorKind {
    using Raw = HACCEL;
    static Raw none() noexcept { return nullptr; }
    static void giveBack(Raw table) noexcept { DestroyAcceleratorTable(table); }
};
using OwnedAccelerators = Owned<AcceleratorKind>;

} // namespace vellums::ui

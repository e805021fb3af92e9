// The registry of Windows, only ever read. On other systems it is empty.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vellums::platform {

enum class RegistryRoot { ClassesRoot, CurrentUser, LocalMachine };
// On a 64-bit system each kind of program has a part of its own; Own is that of this program.
enum class RegistryView { Own, Bits32, Bits64 };

// What was found. The code is the system's (0: found; 2: no such key or value; 5: denied).
struct RegistryText {
    std::int32_t code = 2;
    std::u16string text;
};

// The text of a value (REG_SZ or REG_EXPAND_SZ, not expanded), up to its first U+0000. An empty name
// means the key's default value. A value of another kind counts as missing.
RegistryText readRegistry(RegistryRoot root, std::u16string_view key, std::u16string_view name,
    RegistryView view = RegistryView::Own);

} // namespace vellums::platform

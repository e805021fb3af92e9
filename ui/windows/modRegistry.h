// Reading the registry where the user should hear of failures.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <windows.h>

namespace vellums::ui::modRegistry {

// Shows a message with a title.
using Report = std::function<void(const std::u16string& title, const std::u16string& text)>;

// Nothing in the program reads the registry this way yet.
//
// The text of a value; empty after a failure, which is reported. Without `report` a message box of
// `owner` shows it.
std::optional<std::u16string> readString(
    HWND owner, HKEY root, const std::u16string& path, const std::u16string& name, const Report& report = {});

// What a type of values is called. Nothing in the program asks.
std::u16string typeName(DWORD type);

} // namespace vellums::ui::modRegistry

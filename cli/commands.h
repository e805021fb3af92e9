// The commands of vellums-cli.
#pragma once

#include "cli/arguments.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vellums::cli {

struct Command {
    std::u16string_view name;
    std::u16string_view usage;   // behind the name
    std::u16string_view summary; // one line
    std::u16string_view details; // of its help, with line ends
    std::u16string_view options; // what it takes, blanks between
    std::size_t fewest;          // values
    std::size_t most;
    void (*run)(const Arguments& arguments); // throws Failure, UsageError, ProviderError
};

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

std::span<const Command> commands();
const Command* findCommand(std::u16string_view name); // null: there is none

bool takesOption(const Command& command, std::u16string_view option);

std::u16string generalHelp();
std::u16string helpOf(const Command& command);

} // namespace vellums::cli

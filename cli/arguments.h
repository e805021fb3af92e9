// What was written on the command line, taken apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::cli {

// Wrong usage: the sentence for standard error; the exit status is then 2.
struct UsageError {
    std::u16string sentence;
};

// The options of all commands; which of them a command takes stands in the table of commands.
struct Arguments {
    std::u16string command;             // empty: none
    std::vector<std::u16string> values; // what is no option, in order, without the command
    bool help = false;
    bool titlesOnly = false;
    bool byTitle = false;
    bool ascending = false;
    bool noBackup = false;
    std::optional<std::u16string> table;
    std::optional<std::u16string> title;
    std::u16string password; // of the database
    std::optional<unsigned> codePage;
    std::vector<std::u16string> options; // as written, to be held against what the command takes
};

// Options may stand anywhere before "--"; behind it everything is a value. An option's value stands
// behind it, or in it after "=". Throws UsageError for an unknown option and a missing value.
Arguments parseArguments(const std::vector<std::u16string>& words);

// A whole number in decimal digits, with a sign or without; nothing else around it.
std::optional<std::int32_t> wholeNumber(std::u16string_view text);

} // namespace vellums::cli

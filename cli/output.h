// What the commands print: tab-separated rows in UTF-8, errors a line each.
#pragma once

#include "store/connection.h"

#include <string>
#include <string_view>
#include <vector>

namespace vellums::cli {

// A text in one field of one line: tab, line feed, carriage return and backslash as \t, \n, \r, \\.
std::u16string escaped(std::u16string_view text);
// The reverse; a backslash before anything else stays as it is.
std::u16string unescaped(std::u16string_view text);

// Writes to standard output; kept back until flush() or the end of the program.
void print(std::u16string_view text);
void printLine(std::u16string_view text);
void printFields(const std::vector<std::u16string>& fields); // texts, escaped here
void printRow(const std::vector<Value>& values);
// False when standard output took not everything (a full disk, a closed pipe).
bool flush();

// One line on standard error.
void complain(std::u16string_view sentence);

// All of standard input, as text in UTF-8; a mark at its beginning is left out.
std::u16string readInput();

} // namespace vellums::cli

// Where a program begins. The program defines programMain; the entry point of the system calls it.
#pragma once

#include <string>
#include <vector>

// arguments: without the program's own name. commandLine: the raw text behind the program's name,
// trimmed, quotes and all; where the system keeps no such text, the arguments joined by blanks, in
// quotes where they hold blanks. Gives the exit status.
int programMain(const std::vector<std::u16string>& arguments, const std::u16string& commandLine);

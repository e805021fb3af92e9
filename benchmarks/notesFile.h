// The notes that scripts/collectTexts has collected.
#pragma once

#include <string>
#include <vector>

namespace vellums::benchmarks {

struct Note {
    std::u16string title;
    std::u16string body;
    std::u16string date; // yyyy-mm-dd hh:nn:ss
};

// Throws std::runtime_error when the file cannot be read.
std::vector<Note> readNotes(const std::string& path);

} // namespace vellums::benchmarks

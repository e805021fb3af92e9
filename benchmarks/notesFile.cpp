#include "benchmarks/notesFile.h"

#include "text/oleDate.h"
#include "text/unicode.h"

#include <fstream>
#include <stdexcept>

namespace vellums::benchmarks {

namespace {

// A note every five minutes or so, in no particular order.
std::u16string dateOf(std::size_t number)
{
    const auto minutes = static_cast<double>(number * 48271 % 600000);
    return text::isoDateTime(text::localTime(43831.0 + minutes / 288).value_or(text::LocalTime{}));
}

} // namespace

std::vector<Note> readNotes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::vector<Note> notes;
    std::string record;
    while (std::getline(file, record, '\0')) {
        const std::size_t mark = record.find('\x1f');
        if (mark == std::string::npos)
            continue;
        const std::string_view all(record);
        notes.push_back({text::fromUtf8(all.substr(0, mark)), text::fromUtf8(all.substr(mark + 1)),
            dateOf(notes.size())});
    }
    return notes;
}

} // namespace vellums::benchmarks

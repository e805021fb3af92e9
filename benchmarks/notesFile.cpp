#include "benchmarks/notesFile.h"

#include "platform/clock.h"
#include "platform/text.h"

#include <fstream>
#include <stdexcept>

namespace vellums::benchmarks {

namespace {

// A note every five minutes or so, in no particular order.
std::u16string dateOf(std::size_t number)
{
    using platform::decimal;
    const auto minutes = static_cast<double>(number * 48271 % 600000);
    const platform::LocalTime t =
        platform::localTime(43831.0 + minutes / 288).value_or(platform::LocalTime{});
    return decimal(t.year, 4) + u"-" + decimal(t.month, 2) + u"-" + decimal(t.day, 2) + u" " +
        decimal(t.hour, 2) + u":" + decimal(t.minute, 2) + u":" + decimal(t.second, 2);
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
        notes.push_back({platform::fromUtf8(all.substr(0, mark)), platform::fromUtf8(all.substr(mark + 1)),
            dateOf(notes.size())});
    }
    return notes;
}

} // namespace vellums::benchmarks

#include "tests/windows/windowProbe.h"

#include "jet/database.h"

#include <stdexcept>

namespace vellums::tests {
namespace {

std::u16string textOf(const jet::Value& value)
{
    const auto* text = std::get_if<std::u16string>(&value);
    return text == nullptr ? u"" : *text;
}

// What is read from a file, tried again while the program is at work in it.
template <typename Read>
auto reading(const std::u16string& file, Read read)
{
    for (int attempt = 0;; ++attempt) {
        try {
            jet::Database database(file);
            return read(database);
        } catch (const jet::Error& e) {
            if (attempt == 60) {
                const std::u16string said = file + u": " + e.description;
                throw std::runtime_error(std::string(said.begin(), said.end()));
            }
            Sleep(50);
        }
    }
}

} // namespace

std::vector<StoredRecord> recordsIn(const std::u16string& file)
{
    return reading(file, [](jet::Database& database) {
        std::vector<StoredRecord> records;
        for (const jet::TableInfo& table : database.tables()) {
            if (table.kind != jet::TableKind::Table)
                continue;
            for (const auto& row :
                database.run(u"SELECT ID, VLHEAD, VLTEXT, VLLINK FROM [" + table.name + u"] ORDER BY ID")
                    .rows)
                records.push_back({table.name, std::get<std::int32_t>(row[0]), textOf(row[1]), textOf(row[2]),
                    textOf(row[3])});
        }
        return records;
    });
}

} // namespace vellums::tests

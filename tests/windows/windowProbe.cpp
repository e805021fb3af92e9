#include "tests/windows/windowProbe.h"

#include "jet/database.h"

#include <stdexcept>

namespace vellums::tests {
namespace {

struct Count {
    DWORD process = 0;
    int dialogs = 0;
};

BOOL CALLBACK countDialog(HWND window, LPARAM into)
{
    auto& count = *reinterpret_cast<Count*>(into);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t kind[16] = {};
    GetClassNameW(window, kind, 16);
    if (process == count.process && IsWindowVisible(window) && std::wstring(kind) == L"#32770")
        ++count.dialogs;
    return TRUE;
}

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

int questionsOpen(const Program& program)
{
    Count count;
    GetWindowThreadProcessId(program.window(), &count.process);
    EnumWindows(countDialog, reinterpret_cast<LPARAM>(&count));
    return count.dialogs;
}

std::vector<StoredRecord> recordsIn(const std::u16string& file)
{
    return reading(file, [](jet::Database& database) {
        std::vector<StoredRecord> records;
        for (const jet::TableInfo& table : database.tables()) {
            if (table.system)
                continue;
            for (const auto& row :
                database.run(u"SELECT ID, VLHEAD, VLTEXT FROM [" + table.name + u"] ORDER BY ID").rows)
                records.push_back(
                    {table.name, std::get<std::int32_t>(row[0]), textOf(row[1]), textOf(row[2])});
        }
        return records;
    });
}

std::vector<std::u16string> textsOf(const std::u16string& file, const std::u16string& column)
{
    return reading(file, [&](jet::Database& database) {
        std::vector<std::u16string> texts;
        for (const char16_t* const table : {u"Memo", u"笔记"}) {
            bool there = false;
            for (const auto& listed : database.tables())
                there = there || listed.name == table;
            if (!there)
                continue;
            for (const auto& row :
                database.run(u"SELECT " + column + u" FROM [" + table + u"] ORDER BY ID").rows)
                texts.push_back(textOf(row[0]));
        }
        return texts;
    });
}

} // namespace vellums::tests

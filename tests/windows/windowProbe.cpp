#include "tests/windows/windowProbe.h"

#include "jet/database.h"

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

} // namespace

int questionsOpen(const Program& program)
{
    Count count;
    GetWindowThreadProcessId(program.window(), &count.process);
    EnumWindows(countDialog, reinterpret_cast<LPARAM>(&count));
    return count.dialogs;
}

std::vector<std::u16string> textsOf(const std::u16string& file, const std::u16string& column)
{
    for (int attempt = 0;; ++attempt) {
        try {
            jet::Database database(file);
            std::vector<std::u16string> texts;
            for (const char16_t* const table : {u"Memo", u"笔记"}) {
                bool there = false;
                for (const auto& listed : database.tables())
                    there = there || listed.name == table;
                if (!there)
                    continue;
                for (const auto& row :
                    database.run(u"SELECT " + column + u" FROM [" + table + u"] ORDER BY ID").rows) {
                    const auto* text = std::get_if<std::u16string>(&row[0]);
                    texts.push_back(text == nullptr ? u"" : *text);
                }
            }
            return texts;
        } catch (const jet::Error&) { // the program is at work in it
            if (attempt == 20)
                throw;
            Sleep(50);
        }
    }
}

} // namespace vellums::tests

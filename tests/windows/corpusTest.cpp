// A folder of real texts, imported by the window and searched in it. What it finds is written down and
// held against an independent search by tests/corpus/search.py.
#include "tests/windows/driver.h"
#include "text/unicode.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vellums::tests {
namespace {

std::wstring environment(const wchar_t* name)
{
    wchar_t value[MAX_PATH] = {};
    return {value, GetEnvironmentVariableW(name, value, MAX_PATH)};
}

TEST(Corpus, IsImportedAndSearchedInTheWindow)
{
    const std::wstring place = environment(L"VELLUMS_CORPUS");
    std::ifstream patterns(std::filesystem::path(place + L"\\corpus-patterns.txt"));
    if (place.empty() || !patterns)
        GTEST_SKIP() << "VELLUMS_CORPUS names no folder with corpus-patterns.txt";
    const ProgramFolder folder;
    Program program(folder.executable(), L"\"" + place + L"\\corpus\"");
    ASSERT_TRUE(eventually([&] { return program.count(ID_lstHeads) >= 1000; }, 120000))
        << program.count(ID_lstHeads) << " records";

    std::ofstream found(std::filesystem::path(place + L"\\corpus-window.tsv"), std::ios::binary);
    std::string line;
    int searched = 0;
    while (std::getline(patterns, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        program.setText(ID_ucStatusLeft, u"");
        const HWND label = GetWindow(program.control(ID_ucStatusLeft), GW_CHILD);
        SendMessageW(label, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L""));
        program.setText(ID_txtKey, text::fromUtf8(line));
        program.press(ID_txtKey, VK_RETURN);
        ASSERT_TRUE(eventually([&] { return !program.text(ID_ucStatusLeft).empty(); }, 30000)) << line;
        const HWND list = program.control(ID_lstHeads);
        for (int i = 0; i < program.count(ID_lstHeads); ++i)
            found << SendMessageW(list, LB_GETITEMDATA, static_cast<WPARAM>(i), 0) << ' ';
        found << '\n';
        ++searched;
    }
    EXPECT_GE(searched, 50);
    EXPECT_EQ(program.close(), 0u);
    EXPECT_TRUE(
        CopyFileW(folder.file(L"Vellums.mdb").c_str(), (place + L"\\corpus-window.mdb").c_str(), FALSE));
}

} // namespace
} // namespace vellums::tests

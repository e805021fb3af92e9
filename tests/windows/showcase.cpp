// Starts the program on a folder of texts, searches all of them for some words and the first one found for
// the last word, saves a picture, and says what it saw.
// Usage: showcase.exe Vellums.exe FOLDER WORDS PICTURE.bmp [PICTURE-WITHOUT-LIST.bmp]
#include "tests/windows/driver.h"
#include "ui/ids.h"

#include <cstdio>

namespace {

void print(const char* what, const std::u16string& text)
{
    const std::wstring content = vellums::tests::wideOf(text);
    const int length = WideCharToMultiByte(CP_UTF8, 0, content.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, content.c_str(), -1, bytes.data(), length, nullptr, nullptr);
    std::printf("%s%s\n", what, bytes.c_str());
    std::fflush(stdout);
}

} // namespace

int wmain(int argumentCount, wchar_t** arguments)
{
    using namespace vellums::tests;
    if (argumentCount != 5 && argumentCount != 6) {
        std::puts("Usage: showcase.exe Vellums.exe FOLDER WORDS PICTURE.bmp [PICTURE-WITHOUT-LIST.bmp]");
        return 2;
    }
    Program program(arguments[1], L"\"" + std::wstring(arguments[2]) + L"\"");
    if (program.window() == nullptr) {
        std::puts("The window did not come.");
        return 1;
    }
    // A folder import ends by filling the list again.
    if (!eventually([&] { return program.count(ID_lstHeads) > 0; }, 40000)) {
        print("Nothing was imported: ", program.text(ID_ucStatusLeft));
        return 1;
    }
    print("Imported:  ", program.text(ID_ucStatusLeft));
    const int all = program.count(ID_lstHeads);
    program.setText(ID_txtKey, narrow(arguments[3]));
    const std::u16string before = program.text(ID_ucStatusLeft);
    program.press(ID_txtKey, VK_RETURN);
    eventually([&] { return program.text(ID_ucStatusLeft) != before; });
    print("Searched:  ", narrow(arguments[3]));
    print("Status:    ", program.text(ID_ucStatusLeft));
    print("Record:    ", program.text(ID_txtType));
    print("Window:    ", program.caption());
    std::printf("Headings:  %d of %d\n", program.count(ID_lstHeads), all);
    const std::u16string searched = program.text(ID_ucStatusLeft);
    const std::u16string words = narrow(arguments[3]);
    program.setText(ID_txtInline, words.substr(words.rfind(u' ') + 1));
    program.press(ID_txtInline, VK_RETURN);
    eventually([&] { return program.text(ID_ucStatusLeft) != searched; }, 3000);
    print("Found:     ", program.text(ID_ucStatusLeft));
    SetForegroundWindow(program.window());
    UpdateWindow(program.window());
    Sleep(300); // for the picture: the screen is drawn a moment later
    bool saved = savePicture(program.window(), arguments[4]);
    if (argumentCount == 6) {
        program.command(ID_mnu_hidelst);
        eventually([&] { return !program.isShown(ID_lstHeads); });
        Sleep(300);
        saved = savePicture(program.window(), arguments[5]) && saved;
    }
    program.close();
    return saved ? 0 : 1;
}

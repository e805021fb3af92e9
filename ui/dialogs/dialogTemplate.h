// Dialogs described in memory, in the layout of the system's dialog templates. Measures are dialog units.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

namespace vellums::ui {

enum class DialogControl : WORD { Button = 0x80, Edit = 0x81, Label = 0x82, List = 0x83 };

class DialogTemplate {
public:
    DialogTemplate(
        const std::u16string& title, int width, int height, const std::u16string& fontName, int points);
    void add(DialogControl kind, int id, const std::u16string& text, DWORD style, int x, int y, int width,
        int height);

    // Shows it over the owner until it ends; `proc` gets `parameter` with WM_INITDIALOG. Gives what
    // EndDialog was told, -1 when it could not be shown.
    INT_PTR run(HWND owner, DLGPROC proc, LPARAM parameter) const;

private:
    void putWord(WORD word) { words_.push_back(word); }
    void putDword(DWORD number);
    void putText(const std::u16string& text);
    void putPlace(int x, int y, int width, int height);

    std::vector<WORD> words_;
};

} // namespace vellums::ui

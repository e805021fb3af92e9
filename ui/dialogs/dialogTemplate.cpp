// A dialog template in memory, in words of 16 bits:
//
//   words  holds
//       2  style
//       2  extended style
//       1  number of controls (kCountAt)
//       4  x, y, width, height in dialog units
//       1  menu, 0: none
//       1  class, 0: that of dialogs
//       .  title, up to a 0
//       1  points of the font
//       .  name of the font, up to a 0
//
// and then for each control, from a multiple of four bytes on:
//
//   words  holds
//       2  style
//       2  extended style
//       4  x, y, width, height
//       1  id
//       2  0xFFFF and the number of a class of the system
//       .  text, up to a 0
//       1  bytes of data of its own, 0
#include "ui/dialogs/dialogTemplate.h"

#include <cstring>

namespace vellums::ui {
namespace {

constexpr std::size_t kCountAt = 4; // in words: how many controls there are

} // namespace

DialogTemplate::DialogTemplate(
    const std::u16string& title, int width, int height, const std::u16string& fontName, int points)
{
    putDword(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT | DS_CENTER);
    putDword(0);
    putWord(0);
    putPlace(0, 0, width, height);
    putWord(0); // no menu
    putWord(0); // the class of dialogs
    putText(title);
    putWord(static_cast<WORD>(points));
    putText(fontName);
}

void DialogTemplate::add(
    DialogControl kind, int id, const std::u16string& text, DWORD style, int x, int y, int width, int height)
{
    if (words_.size() % 2 != 0) // each control begins at a multiple of four bytes
        putWord(0);
    putDword(WS_CHILD | WS_VISIBLE | style);
    putDword(0);
    putPlace(x, y, width, height);
    putWord(static_cast<WORD>(id));
    putWord(0xFFFF);
    putWord(static_cast<WORD>(kind));
    putText(text);
    putWord(0); // no data of its own
    ++words_[kCountAt];
}

INT_PTR DialogTemplate::run(HWND owner, DLGPROC proc, LPARAM parameter) const
{
    std::vector<DWORD> aligned((words_.size() + 1) / 2);
    std::memcpy(aligned.data(), words_.data(), words_.size() * sizeof(WORD));
    return DialogBoxIndirectParamW(GetModuleHandleW(nullptr),
        reinterpret_cast<const DLGTEMPLATE*>(aligned.data()), owner, proc, parameter);
}

void DialogTemplate::putDword(DWORD number)
{
    putWord(LOWORD(number));
    putWord(HIWORD(number));
}

void DialogTemplate::putText(const std::u16string& text)
{
    words_.insert(words_.end(), text.begin(), text.end());
    putWord(0);
}

void DialogTemplate::putPlace(int x, int y, int width, int height)
{
    for (const int measure : {x, y, width, height})
        putWord(static_cast<WORD>(measure));
}

} // namespace vellums::ui

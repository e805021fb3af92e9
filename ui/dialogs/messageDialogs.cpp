#include "ui/dialogs/messageDialogs.h"

#include "ui/windows/wide.h"

#include <shlobj.h>

namespace vellums::ui {

Answer MessageDialogs::ask(const std::u16string& question, UINT style)
{
    // A box that could not be shown counts as Cancel: whoever asked then leaves everything as it is.
    switch (MessageBoxW(owner_, wide(question), L"Vellums", style)) {
    case IDYES:
        return Answer::Yes;
    case IDNO:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

Answer MessageDialogs::askYesNo(const std::u16string& question, QuestionIcon icon)
{
    return ask(question, MB_YESNO | (icon == QuestionIcon::Question ? MB_ICONQUESTION : MB_ICONINFORMATION));
}

Answer MessageDialogs::askNoYes(const std::u16string& question)
{
    return ask(question, MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2);
}

Answer MessageDialogs::askYesNoCancel(const std::u16string& question)
{
    return ask(question, MB_YESNOCANCEL | MB_ICONQUESTION);
}

void MessageDialogs::tell(const std::u16string& text, bool good)
{
    MessageBoxW(owner_, wide(text), L"Vellums",
        static_cast<UINT>(MB_OK | (good ? MB_ICONINFORMATION : MB_ICONWARNING)));
}

std::u16string MessageDialogs::chooseFolder(const std::u16string& prompt)
{
    BROWSEINFOW browse{};
    browse.hwndOwner = owner_;
    browse.lpszTitle = wide(prompt);
    browse.ulFlags = BIF_NEWDIALOGSTYLE | BIF_RETURNONLYFSDIRS;
    PIDLIST_ABSOLUTE chosen = SHBrowseForFolderW(&browse);
    if (chosen == nullptr)
        return {};
    std::u16string path(MAX_PATH, u'\0');
    const bool found = SHGetPathFromIDListW(chosen, reinterpret_cast<wchar_t*>(path.data())) != FALSE;
    CoTaskMemFree(chosen);
    path.resize(found ? path.find(u'\0') : 0);
    return path;
}

} // namespace vellums::ui

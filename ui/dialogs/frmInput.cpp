#include "ui/dialogs/frmInput.h"

#include "ui/controls/windowText.h"
#include "ui/dialogs/dialogTemplate.h"
#include "ui/ids.h"
#include "ui/windows/border.h"
#include "ui/windows/modSetIcon.h"

namespace vellums::ui {
namespace {

struct Question {
    const NameForm& form;
    std::u16string answer;
};

void start(HWND dialog, const Question& question)
{
    SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(&question));
    modSetIcon::setIcon(dialog, modSetIcon::kTableIcon, false);
    const HWND box = GetDlgItem(dialog, ID_frmInput_text);
    setWindowText(box, question.form.text);
    SendMessageW(box, EM_SETSEL, 0, -1);
    SetFocus(box);
}

INT_PTR CALLBACK inputProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return border::guarded<INT_PTR>(FALSE, [&]() -> INT_PTR {
        if (message == WM_INITDIALOG) {
            start(dialog, *reinterpret_cast<Question*>(lParam));
            return FALSE; // the focus is where it belongs
        }
        if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL))
            return FALSE;
        if (LOWORD(wParam) == IDOK)
            reinterpret_cast<Question*>(GetWindowLongPtrW(dialog, DWLP_USER))->answer =
                windowText(GetDlgItem(dialog, ID_frmInput_text));
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    });
}

} // namespace

std::u16string frmInput::ask(const NameForm& form)
{
    constexpr DWORD kButton = WS_TABSTOP;
    DialogTemplate dialog(form.caption, 190, 62, u"Tahoma", 8);
    dialog.add(DialogControl::Label, ID_frmInput_label, form.label, SS_LEFT, 8, 8, 174, 9);
    dialog.add(
        DialogControl::Edit, ID_frmInput_text, u"", WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL, 8, 20, 174, 13);
    dialog.add(DialogControl::Button, IDOK, form.accept, kButton | BS_DEFPUSHBUTTON, 76, 41, 50, 14);
    dialog.add(DialogControl::Button, IDCANCEL, form.cancel, kButton | BS_PUSHBUTTON, 132, 41, 50, 14);
    Question question{form, {}};
    dialog.run(owner_, inputProc, reinterpret_cast<LPARAM>(&question));
    return question.answer;
}

} // namespace vellums::ui

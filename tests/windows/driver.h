// Drives the real program from outside, as a user does: starts it, finds its windows, types, presses
// keys, reads what it shows. Every wait has an end.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>

namespace vellums::tests {

// Polls until the condition holds; false when it does not within that time.
bool eventually(const std::function<bool()>& condition, int timeoutMs = 10000);

// A running Vellums.exe. It dies with this process, however that ends.
class Program {
public:
    // Starts the executable with a command line (paths in quotes), its window at a place of the screen.
    explicit Program(
        const std::wstring& executable, const std::wstring& arguments = L"", const POINT* place = nullptr);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    HANDLE process() const { return process_.hProcess; }
    HWND window() const { return window_; } // the main window; null when it never came
    HWND control(int id) const { return GetDlgItem(window_, id); }

    std::u16string text(int id) const;
    std::u16string caption() const;
    int count(int listId) const;
    // The index of the entry with exactly this text; -1: none.
    int entryOf(int listId, const std::u16string& text) const;

    void setText(int id, const std::u16string& text) const;
    void press(int id, WPARAM key) const; // a key without modifiers
    void command(int id) const;           // as from a menu; posted
    // Types a key on the keyboard of the screen, with the modifiers held; the window is brought to the
    // front and the control gets the focus before.
    void type(int id, WORD key, bool ctrl = false, bool shift = false) const;
    // The same to whatever has the focus: an open menu, for one.
    static void strike(WORD key, bool ctrl = false, bool shift = false, bool alt = false);
    // A click of the mouse, so many pixels from the control's upper left corner.
    void click(int id, int x, int y, bool right = false) const;
    int focused() const; // the id of the control that has the focus
    // The selection of a box: units from the start of its text, behind 65,535 not to be told.
    std::pair<int, int> selection(int id) const;
    void select(int id, int start, int end) const;
    // Where a control stands in the window, in pixels.
    RECT place(int id) const;
    bool isShown(int id) const;
    // What a message to a control answers.
    LRESULT ask(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // Selects entries and tells the window, as a click does.
    void selectEntry(int listId, int index) const;
    void addToSelection(int listId, int index) const;
    // Makes a record of this text by way of the clipboard, and waits for its heading.
    bool paste(const std::u16string& text) const;

    // Waits for a message box of the program and gives its text.
    std::u16string waitForBox() const;
    // Presses a button of the message box (IDYES, IDNO, IDCANCEL) and waits until it is gone.
    bool answer(int button) const;
    bool boxIsOpen() const;
    int questionsOpen() const; // how many dialogs there are at the moment
    // Which of IDOK, IDCANCEL, IDYES and IDNO the open box offers, the one that Enter presses first.
    std::vector<int> buttons() const;
    bool menuIsOpen() const; // a context menu
    // Waits for the form that asks for a name, gives what it suggests, and answers it; empty text: cancel.
    std::u16string answerName(const std::u16string& name) const;

    // The left panel shows this text within some seconds.
    bool showsStatus(const std::u16string& text) const;
    bool statusBegins(const std::u16string& text, int timeoutMs = 10000) const;

    // Closes the main window and waits for the end; gives the exit code, or 9999.
    DWORD close();
    void kill();
    bool isRunning() const;

private:
    HWND findBox() const;
    bool awaitStatus(const std::function<bool(const std::u16string&)>& isWanted, int timeoutMs) const;

    HANDLE job_ = nullptr;
    PROCESS_INFORMATION process_{};
    HWND window_ = nullptr;
};

// Puts text on the clipboard; retries while others hold it.
bool setClipboard(const std::u16string& text);
void emptyClipboard();
std::u16string clipboard(); // its text; empty while others hold it

std::wstring wideOf(const std::u16string& text);
std::u16string narrow(const std::wstring& text);

// Where a control stands in its window, in pixels.
RECT placeOf(HWND window, int id);

// The colours of a rectangle of the screen, row by row.
std::vector<COLORREF> pixelsOf(const RECT& screen);

// Saves a picture of a window as it stands on the screen, as .bmp.
bool savePicture(HWND window, const std::wstring& path);

// A folder of its own with a copy of the program that was built beside the tests; removed at the end.
class ProgramFolder {
public:
    ProgramFolder();
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;
    ~ProgramFolder();

    const std::wstring& path() const { return path_; }
    std::wstring file(const std::wstring& name) const { return path_ + L"\\" + name; }
    std::wstring executable() const { return file(L"Vellums.exe"); }
    std::wstring write(const std::wstring& name, const std::string& bytes) const;

private:
    std::wstring path_;
};

} // namespace vellums::tests

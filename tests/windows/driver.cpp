#include "tests/windows/driver.h"

#include "ui/ids.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace vellums::tests {
namespace {

constexpr DWORD kSendTimeoutMs = 10000;
constexpr int kBoxTextId = 0xFFFF;

// What a message answers; 0 when the window does not react in time.
LRESULT send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    DWORD_PTR result = 0;
    if (SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kSendTimeoutMs, &result) == 0)
        return 0;
    return static_cast<LRESULT>(result);
}

std::u16string textOf(HWND window)
{
    const LRESULT length = send(window, WM_GETTEXTLENGTH);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const LRESULT copied = send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return narrow(text);
}

// The main window of a process, or its dialogs.
std::vector<HWND> topWindows(DWORD process, bool dialogs)
{
    std::vector<HWND> all;
    EnumWindows(
        [](HWND window, LPARAM into) CALLBACK -> BOOL {
            reinterpret_cast<std::vector<HWND>*>(into)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&all));
    std::erase_if(all, [&](HWND window) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        wchar_t name[64] = {};
        GetClassNameW(window, name, 64);
        const bool wanted = dialogs ? std::wstring(name) == L"#32770"
                                    : (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_APPWINDOW) != 0;
        return owner != process || !IsWindowVisible(window) || !wanted;
    });
    return all;
}

} // namespace

bool eventually(const std::function<bool()>& condition, int timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

Program::Program(const std::wstring& executable, const std::wstring& arguments, const POINT* place)
{
    job_ = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    std::wstring commandLine = L"\"" + executable + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (place != nullptr) {
        startup.dwFlags = STARTF_USEPOSITION;
        startup.dwX = static_cast<DWORD>(place->x);
        startup.dwY = static_cast<DWORD>(place->y);
    }
    // Right after a kill of the same program the system once refused to start it.
    const auto starts = [&] {
        const BOOL started = CreateProcessW(executable.c_str(), commandLine.data(), nullptr, nullptr, FALSE,
            0, nullptr, nullptr, &startup, &process_);
        if (started == FALSE)
            std::wprintf(L"The program did not start: error %lu.\n", GetLastError());
        return started != FALSE;
    };
    if (!eventually(starts, 1000))
        return;
    AssignProcessToJobObject(job_, process_.hProcess);
    WaitForInputIdle(process_.hProcess, 500); // one that imports at once is not idle for long
    eventually(
        [this] {
            const std::vector<HWND> windows = topWindows(process_.dwProcessId, false);
            window_ = windows.empty() ? nullptr : windows.front();
            return window_ != nullptr;
        },
        20000);
}

Program::~Program()
{
    kill();
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
    CloseHandle(job_);
}

bool Program::isRunning() const
{
    return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

void Program::kill()
{
    if (isRunning()) {
        TerminateProcess(process_.hProcess, 1);
        WaitForSingleObject(process_.hProcess, 10000);
    }
}

DWORD Program::close()
{
    PostMessageW(window_, WM_CLOSE, 0, 0);
    DWORD code = 9999;
    if (WaitForSingleObject(process_.hProcess, 10000) == WAIT_OBJECT_0)
        GetExitCodeProcess(process_.hProcess, &code);
    return code;
}

std::u16string Program::text(int id) const
{
    return textOf(control(id));
}
std::u16string Program::caption() const
{
    return textOf(window_);
}
int Program::count(int listId) const
{
    return static_cast<int>(send(control(listId), LB_GETCOUNT));
}

int Program::entryOf(int listId, const std::u16string& text) const
{
    const std::wstring wanted = wideOf(text);
    return static_cast<int>(send(control(listId), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
        reinterpret_cast<LPARAM>(wanted.c_str())));
}

void Program::setText(int id, const std::u16string& text) const
{
    const std::wstring content = wideOf(text);
    send(control(id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(content.c_str()));
}

void Program::press(int id, WPARAM key) const
{
    PostMessageW(control(id), WM_KEYDOWN, key, 1);
    PostMessageW(control(id), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

void Program::type(int id, WORD key, bool ctrl, bool shift) const
{
    // The focus of another process is changed by a thread that shares its input.
    const DWORD thread = GetWindowThreadProcessId(window_, nullptr);
    SetForegroundWindow(window_);
    AttachThreadInput(GetCurrentThreadId(), thread, TRUE);
    SetFocus(control(id));
    AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
    strike(key, ctrl, shift);
}

void Program::strike(WORD key, bool ctrl, bool shift, bool alt)
{
    std::vector<WORD> keys;
    if (ctrl)
        keys.push_back(VK_CONTROL);
    if (shift)
        keys.push_back(VK_SHIFT);
    if (alt)
        keys.push_back(VK_MENU);
    keys.push_back(key);
    std::vector<INPUT> events(2 * keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) { // released in the opposite order
        INPUT& down = events[i];
        INPUT& up = events[events.size() - 1 - i];
        down.type = up.type = INPUT_KEYBOARD;
        down.ki.wVk = up.ki.wVk = keys[i];
        up.ki.dwFlags = KEYEVENTF_KEYUP;
    }
    SendInput(static_cast<UINT>(events.size()), events.data(), sizeof(INPUT));
}

void Program::click(int id, int x, int y, bool right) const
{
    // A window that comes to the front after the click would close the menu that the click opens.
    SetForegroundWindow(window_);
    RECT rect{};
    eventually([&] {
        GetWindowRect(control(id), &rect);
        return GetForegroundWindow() == window_ && focused() != 0 &&
            WindowFromPoint({rect.left + x, rect.top + y}) == control(id);
    });
    const auto absolute = [](int pixel, int screen) { return (pixel * 65536 + screen - 1) / screen; };
    const LONG atX = absolute(rect.left + x, GetSystemMetrics(SM_CXSCREEN));
    const LONG atY = absolute(rect.top + y, GetSystemMetrics(SM_CYSCREEN));
    const DWORD buttons[] = {0UL, static_cast<DWORD>(right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN),
        static_cast<DWORD>(right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP)};
    INPUT events[3] = {};
    for (int i = 0; i < 3; ++i) {
        events[i].type = INPUT_MOUSE;
        events[i].mi = {atX, atY, 0, MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | buttons[i], 0, 0};
    }
    SendInput(3, events, sizeof(INPUT));
}

int Program::focused() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info);
    return info.hwndFocus == nullptr ? 0 : GetDlgCtrlID(info.hwndFocus);
}

std::pair<int, int> Program::selection(int id) const
{
    const LRESULT range = ask(id, EM_GETSEL);
    return {LOWORD(range), HIWORD(range)};
}

void Program::select(int id, int start, int end) const
{
    ask(id, EM_SETSEL, static_cast<WPARAM>(start), end);
}

RECT Program::place(int id) const
{
    return placeOf(window_, id);
}

bool Program::isShown(int id) const
{
    return IsWindowVisible(control(id)) != FALSE;
}

LRESULT Program::ask(int id, UINT message, WPARAM wParam, LPARAM lParam) const
{
    return send(control(id), message, wParam, lParam);
}

void Program::command(int id) const
{
    PostMessageW(window_, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

void Program::selectEntry(int listId, int index) const
{
    const HWND list = control(listId);
    send(list, LB_SETSEL, FALSE, -1);
    addToSelection(listId, index);
}

void Program::addToSelection(int listId, int index) const
{
    const HWND list = control(listId);
    send(list, LB_SETSEL, TRUE, index);
    send(list, LB_SETCARETINDEX, static_cast<WPARAM>(index), FALSE);
    PostMessageW(window_, WM_COMMAND, MAKEWPARAM(listId, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
}

bool Program::paste(const std::u16string& text) const
{
    const int before = count(ID_lstHeads);
    if (!setClipboard(text))
        return false;
    command(ID_mnu_top_PasteNew);
    return eventually([&] { return count(ID_lstHeads) == before + 1; });
}

HWND Program::findBox() const
{
    const std::vector<HWND> boxes = topWindows(process_.dwProcessId, true);
    return boxes.empty() ? nullptr : boxes.front();
}
bool Program::boxIsOpen() const
{
    return questionsOpen() > 0;
}
int Program::questionsOpen() const
{
    return static_cast<int>(topWindows(process_.dwProcessId, true).size());
}

std::vector<int> Program::buttons() const
{
    const HWND box = findBox();
    std::vector<int> found;
    for (const int button : {IDOK, IDCANCEL, IDYES, IDNO})
        if (GetDlgItem(box, button) != nullptr)
            found.push_back(button);
    const int chosen = focused(); // a key may have moved on from the default
    const int usual = LOWORD(send(box, DM_GETDEFID));
    const bool isChosen = std::find(found.begin(), found.end(), chosen) != found.end();
    std::stable_partition(
        found.begin(), found.end(), [&](int button) { return button == (isChosen ? chosen : usual); });
    return found;
}

std::u16string Program::waitForBox() const
{
    HWND label = nullptr;
    eventually([&] {
        const HWND box = findBox();
        label = box == nullptr ? nullptr : GetDlgItem(box, kBoxTextId);
        return label != nullptr;
    });
    return label == nullptr ? std::u16string() : textOf(label);
}

bool Program::answer(int button) const
{
    const HWND box = findBox();
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return eventually([&] { return IsWindow(box) == FALSE; });
}

bool Program::menuIsOpen() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info) != FALSE &&
        (info.flags & GUI_INMENUMODE) != 0;
}

std::u16string Program::answerName(const std::u16string& name) const
{
    HWND box = nullptr;
    HWND edit = nullptr;
    eventually([&] {
        box = findBox();
        edit = box == nullptr ? nullptr : GetDlgItem(box, ID_frmInput_text);
        return edit != nullptr && !textOf(edit).empty();
    });
    const std::u16string suggested = edit == nullptr ? std::u16string() : textOf(edit);
    send(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wideOf(name).c_str()));
    answer(name.empty() ? IDCANCEL : IDOK);
    return suggested;
}

bool Program::showsStatus(const std::u16string& text) const
{
    return awaitStatus([&text](const std::u16string& shown) { return shown == text; }, 10000);
}

bool Program::statusBegins(const std::u16string& text, int timeoutMs) const
{
    return awaitStatus([&text](const std::u16string& shown) { return shown.starts_with(text); }, timeoutMs);
}

// What there was instead goes into the report of the test.
bool Program::awaitStatus(const std::function<bool(const std::u16string&)>& isWanted, int timeoutMs) const
{
    if (eventually([&] { return isWanted(text(ID_ucStatusLeft)); }, timeoutMs))
        return true;
    std::wprintf(L"The panel shows \"%ls\"; the program %ls, its window %ls.\n",
        wideOf(text(ID_ucStatusLeft)).c_str(), isRunning() ? L"runs" : L"has ended",
        IsWindow(window_) == FALSE     ? L"is gone"
            : IsHungAppWindow(window_) ? L"hangs"
                                       : L"answers");
    return false;
}

bool setClipboard(const std::u16string& text)
{
    const HWND owner =
        CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    const bool opened = eventually([owner] { return OpenClipboard(owner) != FALSE; });
    if (opened) {
        EmptyClipboard();
        if (!text.empty()) {
            const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
            memcpy(GlobalLock(block), text.c_str(), (text.size() + 1) * sizeof(wchar_t));
            GlobalUnlock(block);
            SetClipboardData(CF_UNICODETEXT, block);
        }
        CloseClipboard();
    }
    DestroyWindow(owner);
    return opened;
}

void emptyClipboard()
{
    setClipboard(u"");
}

std::u16string clipboard()
{
    if (OpenClipboard(nullptr) == FALSE)
        return {};
    std::wstring text;
    if (const HANDLE block = GetClipboardData(CF_UNICODETEXT); block != nullptr) {
        text = static_cast<const wchar_t*>(GlobalLock(block));
        GlobalUnlock(block);
    }
    CloseClipboard();
    return narrow(text);
}

std::wstring wideOf(const std::u16string& text)
{
    return {text.begin(), text.end()};
}
std::u16string narrow(const std::wstring& text)
{
    return {text.begin(), text.end()};
}

RECT placeOf(HWND window, int id)
{
    RECT rect{};
    GetWindowRect(GetDlgItem(window, id), &rect);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

namespace {

BITMAPINFOHEADER pictureHeader(const RECT& screen)
{
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = screen.right - screen.left;
    header.biHeight = screen.top - screen.bottom; // negative: the upper row first
    header.biPlanes = 1;
    header.biBitCount = 32;
    return header;
}

// The pixels as a picture keeps them: blue in the lowest byte.
std::vector<DWORD> pictureOf(const RECT& screen)
{
    const int width = screen.right - screen.left;
    const int height = screen.bottom - screen.top;
    BITMAPINFO info{};
    info.bmiHeader = pictureHeader(screen);
    const HDC dc = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(dc);
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, dc, screen.left, screen.top, SRCCOPY);
    GdiFlush();
    const auto* first = static_cast<const DWORD*>(bits);
    std::vector<DWORD> pixels(first, first + static_cast<std::size_t>(width) * height);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, dc);
    return pixels;
}

bool writeFile(const std::wstring& path, std::string_view bytes)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return written == bytes.size();
}

} // namespace

std::vector<COLORREF> pixelsOf(const RECT& screen)
{
    std::vector<COLORREF> pixels;
    for (const DWORD pixel : pictureOf(screen))
        pixels.push_back(RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF));
    return pixels;
}

bool savePicture(HWND window, const std::wstring& path)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    const std::vector<DWORD> pixels = pictureOf(rect);
    const BITMAPINFOHEADER info = pictureHeader(rect);
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof info;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size() * sizeof(DWORD));
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    bytes.append(reinterpret_cast<const char*>(&info), sizeof info);
    bytes.append(reinterpret_cast<const char*>(pixels.data()), pixels.size() * sizeof(DWORD));
    return writeFile(path, bytes);
}

ProgramFolder::ProgramFolder()
{
    static int number = 0;
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const std::wstring tests = self;
    wchar_t temporary[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temporary);
    path_ = std::wstring(temporary) + L"vellums-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
        std::to_wstring(++number);
    CreateDirectoryW(path_.c_str(), nullptr);
    CopyFileW(
        (tests.substr(0, tests.rfind(L'\\') + 1) + L"Vellums.exe").c_str(), executable().c_str(), FALSE);
}

namespace {

void removeTree(const std::wstring& folder)
{
    WIN32_FIND_DATAW entry{};
    const HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (find != INVALID_HANDLE_VALUE) {
        do {
            const std::wstring name = entry.cFileName;
            if (name == L"." || name == L"..")
                continue;
            const std::wstring path = folder + L"\\" + name;
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
                removeTree(path);
            else
                eventually([&] { return DeleteFileW(path.c_str()) != FALSE; }, 2000);
        } while (FindNextFileW(find, &entry) != FALSE);
        FindClose(find);
    }
    RemoveDirectoryW(folder.c_str());
}

} // namespace

ProgramFolder::~ProgramFolder()
{
    removeTree(path_);
}

std::wstring ProgramFolder::write(const std::wstring& name, const std::string& bytes) const
{
    const std::wstring target = file(name);
    writeFile(target, bytes);
    return target;
}

} // namespace vellums::tests

// What the window costs beside the bare calls of the system, and how soon the program can be used.
//
//   windowTimes Vellums.exe FOLDER [FOLDER-WITH-NOTES]
//
// Fills 32,767 headings and sets a text of a million characters, each beside the same calls without
// anything around them; starts the program on an empty notebook in FOLDER beside the system's notepad.
// Types into the search box of a notebook with many notes while each letter searches all of them, beside
// the same where nothing is searched before Enter, until the letters stand and until the list is there.
#include "benchmarks/turns.h"
#include "tests/windows/driver.h"
#include "ui/controls/editBox.h"
#include "ui/controls/headsList.h"
#include "ui/ids.h"
#include "ui/windows/modBorderColor.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

using namespace vellums;
using benchmarks::median;
using benchmarks::millisecondsOf;
using Clock = std::chrono::steady_clock;

constexpr int kRuns = 11;
constexpr int kHeadings = 32767;

// Both in turns.
template <typename Own, typename Bare>
void compare(const char* what, Own&& own, const char* yardstick, Bare&& bare)
{
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int i = 0; i < kRuns; ++i) {
        ours.push_back(own());
        theirs.push_back(bare());
    }
    std::printf("%-34s %8.1f ms   %-28s %8.1f ms   ratio %5.2f\n", what, median(ours), yardstick,
        median(theirs), median(ours) / median(theirs));
    std::fflush(stdout);
}

void bareFill(HWND list, const std::vector<ListEntry>& entries)
{
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    SendMessageW(list, LB_INITSTORAGE, entries.size(), static_cast<LPARAM>(entries.size() * 64));
    for (std::size_t i = 0; i < entries.size(); ++i) {
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entries[i].text.c_str()));
        SendMessageW(list, LB_SETITEMDATA, i, entries[i].datum);
    }
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
}

void measureControls()
{
    const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 900, 700,
        nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    ui::HeadsList list;
    list.create(parent, 1);
    MoveWindow(list.hwnd(), 0, 0, 300, 600, TRUE);
    ui::modBorderColor::subclass(list.hwnd()); // as in the main window
    const HWND bare = CreateWindowExW(0, L"LISTBOX", nullptr,
        WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS |
            LBS_EXTENDEDSEL,
        0, 0, 300, 600, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
    std::vector<ListEntry> entries;
    for (int i = 0; i < kHeadings; ++i)
        entries.push_back({u"Heading of a note 标题 " + std::u16string(i % 20, u'x'), i});
    compare(
        "32,767 headings, our list", [&] { return millisecondsOf([&] { list.fill(entries); }); },
        "bare list-box calls", [&] { return millisecondsOf([&] { bareFill(bare, entries); }); });

    ui::EditBox box;
    box.create(parent, 2, ui::EditBox::Kind::Wrapping);
    MoveWindow(box.hwnd(), 300, 0, 500, 600, TRUE);
    std::u16string text;
    while (text.size() < 1000000)
        text += u"A line of a long text, as people keep them: 中文 and Latin.\r\n";
    compare(
        "a million characters, our box", [&] { return millisecondsOf([&] { box.setText(text); }); },
        "bare SetWindowTextW",
        [&] {
            return millisecondsOf(
                [&] { SetWindowTextW(box.hwnd(), reinterpret_cast<const wchar_t*>(text.c_str())); });
        });
    DestroyWindow(parent);
}

// Until a visible window of the process answers messages.
double startTime(const std::wstring& commandLine)
{
    std::wstring line = commandLine;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const double time = millisecondsOf([&] {
        CreateProcessW(
            nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
        struct Search {
            DWORD process;
            HWND window;
        } search{process.dwProcessId, nullptr};
        while (search.window == nullptr) {
            EnumWindows(
                [](HWND window, LPARAM parameter) CALLBACK -> BOOL {
                    auto* wanted = reinterpret_cast<Search*>(parameter);
                    DWORD owner = 0;
                    GetWindowThreadProcessId(window, &owner);
                    if (owner == wanted->process && IsWindowVisible(window) && GetMenu(window) != nullptr)
                        wanted->window = window;
                    return wanted->window == nullptr;
                },
                reinterpret_cast<LPARAM>(&search));
            if (search.window == nullptr)
                Sleep(1);
        }
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(search.window, WM_NULL, 0, 0, SMTO_NORMAL, 20000, &answer);
    });
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, 5000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return time;
}

void copyProgram(const wchar_t* from, const std::wstring& folder)
{
    CopyFileW(from, (folder + L"\\Vellums.exe").c_str(), FALSE);
}

// How long each letter takes to stand in the box, typed one every 80 ms.
std::vector<double> letterTimes(const tests::Program& program, std::string_view word)
{
    std::vector<double> times;
    program.setText(ID_txtKey, u"");
    tests::eventually([&] { // the focus of another program comes when it comes
        program.type(ID_txtKey, VK_HOME);
        return program.focused() == ID_txtKey;
    });
    std::size_t length = 0;
    for (const char letter : word) {
        Sleep(80);
        ++length;
        times.push_back(millisecondsOf([&] {
            tests::Program::strike(static_cast<WORD>(letter));
            const auto end = Clock::now() + std::chrono::seconds(10);
            while (static_cast<std::size_t>(program.ask(ID_txtKey, WM_GETTEXTLENGTH)) < length &&
                Clock::now() < end)
                Sleep(0);
        }));
    }
    return times;
}

void append(std::vector<double>& times, const std::vector<double>& more)
{
    times.insert(times.end(), more.begin(), more.end());
}

// Until the count of the list is the one that is waited for.
double listTime(const tests::Program& program, const std::u16string& found)
{
    return millisecondsOf([&] { tests::eventually([&] { return program.text(ID_ucStatusLeft) == found; }); });
}

// The list as it is before a word is searched: every note.
void listAll(const tests::Program& program, const std::u16string& found)
{
    program.setText(ID_txtKey, u"");
    program.press(ID_txtKey, VK_RETURN);
    tests::eventually([&] { return program.text(ID_ucStatusLeft) != found; });
}

void measureTyping(const std::wstring& folder)
{
    constexpr std::string_view kWord = "INFORMATION";
    constexpr int kTypings = 5;
    const tests::Program program(folder + L"\\Vellums.exe");
    if (program.window() == nullptr) {
        std::puts("The window of the notebook with many notes did not come.");
        return;
    }
    letterTimes(program, kWord); // warm
    program.press(ID_txtKey, VK_RETURN);
    Sleep(3000);
    const std::u16string found = program.text(ID_ucStatusLeft); // what the list comes to each time

    std::vector<double> quiet;
    std::vector<double> entered;
    for (int run = 0; run < kTypings; ++run) {
        listAll(program, found);
        append(quiet, letterTimes(program, kWord));
        program.press(ID_txtKey, VK_RETURN);
        entered.push_back(listTime(program, found));
    }
    program.command(ID_mnu_InstantSrch);
    std::vector<double> searching;
    std::vector<double> lists;
    for (int run = 0; run < kTypings; ++run) {
        listAll(program, found);
        append(searching, letterTimes(program, kWord));
        lists.push_back(listTime(program, found));
    }
    std::printf("a letter, no search before Enter   median %8.1f ms   worst %8.1f ms\n"
                "a letter, each searches all notes  median %8.1f ms   worst %8.1f ms\n"
                "the list, after the last letter    median %8.1f ms   after Enter %8.1f ms   ratio %5.2f\n",
        median(quiet), *std::max_element(quiet.begin(), quiet.end()), median(searching),
        *std::max_element(searching.begin(), searching.end()), median(lists), median(entered),
        median(lists) / median(entered));
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 3 && count != 4) {
        std::puts("Usage: windowTimes Vellums.exe FOLDER [FOLDER-WITH-NOTES]");
        return 2;
    }
    std::printf("medians of %d runs in turns\n", kRuns);
    measureControls();
    const std::wstring program = std::wstring(arguments[2]) + L"\\Vellums.exe";
    copyProgram(arguments[1], arguments[2]);
    startTime(L"\"" + program + L"\""); // makes the notebook
    startTime(L"notepad.exe");
    compare(
        "start to a usable window", [&] { return startTime(L"\"" + program + L"\""); },
        "the system's notepad", [] { return startTime(L"notepad.exe"); });
    if (count == 4) {
        copyProgram(arguments[1], arguments[3]);
        measureTyping(arguments[3]);
    }
    return 0;
}

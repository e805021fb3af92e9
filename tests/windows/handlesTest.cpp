// What the program holds of the system stays the same in number, however long it is used: kernel handles,
// GDI objects, windows.
//
// GetGuiResources and GetProcessHandleCount answer 0 under Wine, so handles are counted in the system's
// list of all handles, and GDI objects in the table to which the process's environment block points.
#include "tests/windows/programTest.h"
#include "tests/windows/windowProbe.h"
#include "ui/ids.h"

#include <algorithm>
#include <cstdlib>

#include <winternl.h>

namespace vellums::tests {
namespace {

constexpr int kShortRounds = 10;  // VELLUMS_ROUNDS names more
constexpr int kRoundsBefore = 11; // what is made at the first use and kept is there then

struct Held {
    std::size_t handles = 0;
    std::size_t gdiObjects = 0;
    std::size_t windows = 0;

    friend bool operator==(const Held&, const Held&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Held& held)
    {
        return out << held.handles << " handles, " << held.gdiObjects << " GDI objects, " << held.windows
                   << " windows";
    }
};

std::size_t handlesOf(DWORD process)
{
    struct Entry {
        ULONG process;
        BYTE kind, flags;
        USHORT value;
        void* object;
        ULONG access;
    };
    constexpr auto kHandles = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    std::vector<std::byte> list(1 << 22);
    if (NtQuerySystemInformation(kHandles, list.data(), static_cast<ULONG>(list.size()), nullptr) != 0)
        return 0;
    const std::size_t count = *reinterpret_cast<const ULONG*>(list.data());
    const auto* entries = reinterpret_cast<const Entry*>(list.data() + sizeof(void*));
    std::size_t own = 0;
    for (std::size_t i = 0; i < count; ++i)
        own += entries[i].process == process ? 1 : 0;
    return own;
}

std::size_t gdiObjectsOf(HANDLE process)
{
    struct Entry { // of the table in a program of 64 bits
        void* object;
        ULONG owner;
        USHORT unique;
        BYTE kind, flags;
        void* user;
    };
    constexpr std::size_t kTableField = 0xF8; // in the environment block
    constexpr std::size_t kEntries = 0x4000;
    PROCESS_BASIC_INFORMATION info{};
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &info, sizeof info, nullptr) != 0)
        return 0;
    const auto* block = reinterpret_cast<const std::byte*>(info.PebBaseAddress);
    const void* table = nullptr;
    std::vector<Entry> entries(kEntries);
    SIZE_T read = 0;
    if (ReadProcessMemory(process, block + kTableField, &table, sizeof table, &read) == FALSE ||
        ReadProcessMemory(process, table, entries.data(), kEntries * sizeof(Entry), &read) == FALSE)
        return 0;
    std::size_t used = 0;
    for (const Entry& entry : entries)
        used += entry.kind != 0 ? 1 : 0;
    return used;
}

BOOL CALLBACK countWindow(HWND window, LPARAM into)
{
    ++*reinterpret_cast<std::size_t*>(into);
    EnumChildWindows(
        window,
        [](HWND, LPARAM count) CALLBACK -> BOOL {
            ++*reinterpret_cast<std::size_t*>(count);
            return TRUE;
        },
        into);
    return TRUE;
}

Held heldBy(const Program& program)
{
    Held held;
    held.handles = handlesOf(GetProcessId(program.process()));
    held.gdiObjects = gdiObjectsOf(program.process());
    EnumThreadWindows(GetWindowThreadProcessId(program.window(), nullptr), countWindow,
        reinterpret_cast<LPARAM>(&held.windows));
    return held;
}

// The least of several looks: while something is drawn there is more for a moment.
Held heldAtRest(const Program& program)
{
    Held least = heldBy(program);
    for (int look = 0; look < 20; ++look) {
        Sleep(20);
        const Held held = heldBy(program);
        least = {std::min(least.handles, held.handles), std::min(least.gdiObjects, held.gdiObjects),
            std::min(least.windows, held.windows)};
    }
    return least;
}

class HandlesTest : public ProgramTest {
protected:
    static void send(const Program& program, int id)
    {
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(
            program.window(), WM_COMMAND, static_cast<WPARAM>(id), 0, SMTO_ABORTIFHUNG, 20000, &answer);
    }

    static void select(const Program& program, int index)
    {
        program.selectEntry(ID_lstHeads, index);
        program.ask(ID_lstHeads, WM_NULL);
    }

    static void popUp(const Program& program, int id)
    {
        PostMessageW(program.control(id), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(program.control(id)), -1);
        EXPECT_TRUE(opensMenu(program));
        PostMessageW(program.window(), WM_CANCELMODE, 0, 0);
        EXPECT_TRUE(eventually([&] { return !program.menuIsOpen(); }));
    }

    // What is done all day; ends as it began.
    static void round(const Program& program, int number)
    {
        send(program, ID_mnu_top_PasteNew);
        program.setText(ID_txtType, u"record of a round");
        program.setText(ID_txtShowWrap, u"round " + narrow(std::to_wstring(number)));
        send(program, ID_mnu_top_Save);
        select(program, 1);
        program.setText(ID_txtKey, u"round");
        program.ask(ID_txtKey, WM_KEYDOWN, VK_RETURN, 1);
        program.setText(ID_txtKey, u"");
        for (const int id : {ID_mnu_sqlman_Duplicate, ID_mnu_setsticky, ID_mnu_nosticky, ID_mnu_sqlman_Delete,
                 ID_mnu_sqlman_Refresh, ID_mnu_txtops_Date, ID_mnu_sqlman_Save, ID_mnu_chkwrap,
                 ID_mnu_chkwrap, ID_mnu_hidelst, ID_mnu_hidelst, ID_mnu_sizes_Larger, ID_mnu_sizes_Smaller,
                 ID_mnu_find_Inline, ID_mnu_find_Next, ID_mnu_SortOnTitle, ID_mnu_SortOnTitle})
            send(program, id);
        select(program, 0);
        send(program, ID_mnu_sqlman_Delete);
        if (number % 10 == 0) {
            popUp(program, ID_lstHeads);
            popUp(program, ID_txtShowWrap);
            send(program, ID_mnu_remdups);
            SendMessageW(program.window(), WM_SYSCOLORCHANGE, 0, 0);
            SetWindowPos(program.window(), nullptr, 0, 0, 700 + number % 20, 500,
                SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Languages, HandlesTest, testing::Values(GetACP() == 936), languageOf);

TEST_P(HandlesTest, AreTheSameInNumberAfterManyRounds)
{
    const char* const wanted = std::getenv("VELLUMS_ROUNDS");
    if (wanted == nullptr && GetACP() == 936)
        GTEST_SKIP() << "counted in English: the same handles in any language";
    const int rounds = wanted == nullptr ? kShortRounds : std::atoi(wanted);
    ASSERT_TRUE(setClipboard(u"from the clipboard"));
    Program program(folder.executable());
    ASSERT_NE(program.window(), nullptr);
    for (int i = 0; i < 4; ++i)
        send(program, ID_mnu_top_PasteNew);
    send(program, ID_mnu_ezdel); // nothing is asked
    for (int i = 0; i < kRoundsBefore; ++i)
        round(program, i);
    const int records = program.count(ID_lstHeads);
    const Held before = heldAtRest(program);
    EXPECT_GT(before.handles, 10u);
    EXPECT_GT(before.gdiObjects, 10u);
    EXPECT_GT(before.windows, 10u);
    for (int i = 0; i < rounds; ++i)
        round(program, i);
    EXPECT_EQ(program.questionsOpen(), 0);
    EXPECT_EQ(program.count(ID_lstHeads), records) << "each round did what it should";
    const Held after = heldAtRest(program);
    EXPECT_EQ(before, after) << "rounds: " << rounds;
    std::cout << before << "; after " << rounds << " rounds " << after << "\n";
    EXPECT_EQ(program.close(), 0u);
}

} // namespace
} // namespace vellums::tests

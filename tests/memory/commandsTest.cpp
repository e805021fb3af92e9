// Every command, with each of its allocations refused in turn. Afterwards each thing that the user sees or
// keeps is as before or as after the whole command, never half; where memory was refused, one line says so.
#include "app/listCommands.h"
#include "app/tableCommands.h"
#include "app/unsavedText.h"
#include "io/importCommands.h"
#include "maint/maintenanceCommands.h"
#include "platform/clipboard.h"
#include "search/searchFields.h"
#include "search/textCommands.h"
#include "store/databases/modCreateDB.h"
#include "store/databases/tableChanges.h"
#include "store/records/records.h"
#include "tests/memory/failingMemory.h"
#include "tests/support/windowNotebook.h"
#include "text/decimal.h"
#include "text/pieces.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace vellums {
namespace {

// Where there is a disk in memory, thousands of databases are made there.
const bool kInMemory = std::filesystem::is_directory("/dev/shm") && setenv("TMPDIR", "/dev/shm", 1) == 0;

using tests::FailingMemory;
using tests::Refuses;
using Texts = std::vector<std::u16string>;

// The tables Notes, with the records 1 apple, 2 banana, 3 cherry, 4 apple, and Other.
std::string sampleFile()
{
    tests::TestNotebook notes;
    notes.run(u"SELECT * INTO [Other] FROM [Notes]");
    int year = 2001;
    for (const char16_t* const title : {u"apple", u"banana", u"cherry", u"apple"}) {
        EXPECT_TRUE(addRecord(*notes, {u"the body of one " + std::u16string(title), title, u""}));
        notes.run(u"UPDATE [Notes] SET VLDATE='" + text::decimal(year) + u"-1-1' WHERE ID=" +
            text::decimal(year - 2000));
        ++year;
    }
    return tests::bytesOf(notes.file());
}

// The program around a window in memory, at the table Notes.
struct Program : tests::WindowNotebook {
    Program()
    {
        static const std::string sample = sampleFile();
        notes.folder().write(u"notes.mdb", sample);
        platform::setClipboardText(u"from the clipboard");
        moments.tableOpened.add(
            [this] { rebuildSearchFields(*notes, window.mnu_AvailFields, window.lstHeads); });
        records.start();
        lists.rebuildMenu();
        tables.rebuildMenu();
        notes.outcome();
    }
    void type(const char16_t* text) { window.txtShowWrap.type(text); }
    void click(const std::vector<int>& entries)
    {
        window.lstHeads.click(entries);
        records.selectHeading();
    }

    tests::MemoryMenuItems mnu_avtables, mnu_availdb;
    tests::MemorySwitch mnu_moverec, mnu_switchto;
    tests::MemoryCheckItem mnu_switchCase;
    tests::MemoryNameDialog frmInput;
    tests::MemoryPostponed pause;
    ListCommands lists{*notes, window.progress, window.dialogs, records, {mnu_avtables, mnu_moverec}};
    TableCommands tables{*notes, ports.list, window.mnu_AvailFields, records,
        {mnu_availdb, mnu_switchto, frmInput, window.dialogs}};
    ImportCommands imports{*notes, window.progress, window.dialogs, records};
    MaintenanceCommands maintenance{*notes, window.progress, window.dialogs, records};
    InstantSearch instant{window.mnu_InstantSrch, window.mnu_AvailFields, pause,
        [this] { return records.current().hasUnsavedChanges(); }};
    SearchBoxes boxes{*notes, ports.search, ports.find, records, instant};
    TextCommands texts{*notes, ports.textBoxes(), boxes, mnu_switchCase};
};

// What must be whole, each thing for itself.
struct State {
    Texts stored; // the tables with their rows, and the files
    Texts list;
    Texts record; // what the boxes show and whose text that is
    Texts place;  // database and table
    Texts menus;

    bool operator==(const State&) const = default;
};

Texts storedIn(Program& program)
{
    Texts all;
    for (const auto& entry : std::filesystem::directory_iterator(program.notes.folder().path()))
        if (entry.path().extension() ==
            ".mdb") // the safety copy, an empty journal or an unfinished file may stay
            all.push_back(entry.path().filename().u16string());
    std::sort(all.begin(), all.end());
    Texts tables;
    for (const SchemaTable& table : program.notes->connect()->tables())
        if (table.type == u"TABLE")
            tables.push_back(u"[" + table.name + u"]");
    // Dates are of now or of old, stamps are there or not.
    for (const std::u16string& table : tables)
        for (const std::u16string& what : {u"SELECT ID, VLHEAD, VLTEXT, VLLINK, VLMD5 FROM " + table,
                 u"SELECT ID FROM " + table + u" WHERE VLTYPE > ''",
                 u"SELECT ID FROM " + table + u" WHERE VLDATE > #2020-1-1#"}) {
            all.push_back(what);
            for (const std::u16string& row : program.notes.rows(what))
                all.push_back(text::replaceAll(row, program.notes.folder().path(), u""));
        }
    return all;
}

State stateOf(Program& program)
{
    State state;
    state.stored = storedIn(program);
    for (int i = 0; i < program.window.lstHeads.count(); ++i)
        state.list.push_back(
            text::decimal(program.window.lstHeads.datum(i)) + u" " + program.window.lstHeads.text(i));
    const CurrentRecord& current = program.records.current();
    state.record = {text::decimal(current.id()), program.window.txtType.text(),
        program.window.txtShowWrap.text(), current.hasUnsavedChanges() ? u"unsaved" : u"saved"};
    state.place = {program.notes->dbConn, program.notes->dbTable};
    for (const tests::MemoryMenuItems* menu : {&program.mnu_availdb, &program.mnu_avtables})
        for (std::size_t i = 0; i < menu->size(); ++i)
            state.menus.push_back(menu->at(i).visible ? menu->at(i).caption : u"");
    return state;
}

// The boxes show the record of that ID, saved.
bool isStored(const Texts& record, Program& program)
{
    return record[3] == u"saved" && record[0] != u"-1" &&
        program.notes.rows(u"SELECT VLHEAD, VLTEXT FROM [" + program.notes->dbTable + u"] WHERE ID=" +
            record[0]) == Texts{record[1] + u"|" + record[2]};
}

struct Case {
    friend void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

    const char* name;
    std::function<void(Program&)> prepare;
    std::function<void(Program&)> command;
    std::function<void(Program&)> firstPart = {}; // of the command, where it has parts that may stand alone
};

void answer(Program& p, Answer answer)
{
    p.window.dialogs.answerNext(answer);
}

// Typed over the shown record, and the command asks about it.
void typed(Program& p)
{
    p.type(u"typed over it");
    answer(p, Answer::Yes);
}

void leave(Program& p)
{
    p.records.leaveRecord();
}

void found(Program& p)
{
    p.window.txtInline.type(u"o.e");
    p.boxes.findNext();
}

void selected(Program& p)
{
    p.type(u"one\r\n\r\n\r\ntwo");
    p.window.txtShowWrap.selectAll();
}

void nothing(Program&) { }

const Case kCases[] = {
    {"start", nothing, [](Program& p) { p.records.start(); },
        [](Program& p) { p.records.current().clear(); }},
    {"search",
        [](Program& p) {
            typed(p);
            p.window.txtKey.type(u"banana");
        },
        [](Program& p) { p.boxes.searchEnter(); }, leave},
    {"instant search", [](Program& p) { p.window.txtKey.type(u"cherry"); },
        [](Program& p) { p.boxes.searchInstantly([] { return false; }); }},
    {"search escape", [](Program& p) { p.window.txtKey.type(u"cherry"); },
        [](Program& p) { p.boxes.searchEscape(); }},
    {"sort", nothing, [](Program& p) { p.boxes.toggleSortOnTitle(); }},
    {"reload", typed, [](Program& p) { p.records.reload(); }, leave},
    {"select",
        [](Program& p) {
            typed(p);
            p.window.lstHeads.click({2});
        },
        [](Program& p) { p.records.selectHeading(); }, leave},
    {"paste new", typed, [](Program& p) { p.records.pasteNew(); }, leave},
    {"capture", nothing, [](Program& p) { p.records.capture(); }},
    {"duplicate", nothing, [](Program& p) { p.records.duplicate(); }},
    {"delete the shown one", [](Program& p) { answer(p, Answer::Yes); },
        [](Program& p) { p.records.deleteSelected(); }},
    {"delete others",
        [](Program& p) {
            p.window.lstHeads.click({1, 3});
            answer(p, Answer::Yes);
        },
        [](Program& p) { p.records.deleteSelected(); }},
    {"save", [](Program& p) { p.type(u"typed over it"); }, [](Program& p) { p.records.save(); }},
    {"save what is gone",
        [](Program& p) {
            p.type(u"typed over it");
            p.notes.run(u"DELETE FROM [Notes] WHERE ID=4");
        },
        [](Program& p) { p.records.save(); }},
    {"save a new one",
        [](Program& p) {
            p.records.current().clear();
            p.type(u"a new text");
        },
        [](Program& p) { p.records.save(); }},
    {"close", typed, [](Program& p) { p.records.mayClose(); }},
    {"stick", nothing, [](Program& p) { p.lists.stick(); }},
    {"unstick", [](Program& p) { p.notes.run(u"UPDATE [Notes] SET VLTYPE='20010101000000' WHERE ID=4"); },
        [](Program& p) { p.lists.unstick(); }},
    {"move",
        [](Program& p) {
            p.window.lstHeads.click({0, 2});
        },
        [](Program& p) { p.lists.moveTo(0); }, [](Program& p) { p.lists.copyTo(0); }},
    {"copy",
        [](Program& p) {
            p.window.lstHeads.click({0, 2});
        },
        [](Program& p) { p.lists.copyTo(0); }},
    {"switch", typed, [](Program& p) { p.tables.switchTo(1); }, leave},
    {"new database", [](Program& p) { p.frmInput.answerNext(u"second"); },
        [](Program& p) { p.tables.newDatabase(); }, [](Program& p) { dbCreateNew(*p.notes, u"second.mdb"); }},
    {"new table", [](Program& p) { p.frmInput.answerNext(u"Third"); },
        [](Program& p) { p.tables.newTable(); }},
    {"rename", [](Program& p) { p.frmInput.answerNext(u"Renamed"); },
        [](Program& p) { p.tables.renameTable(); }},
    {"drop", [](Program& p) { answer(p, Answer::Yes); }, [](Program& p) { p.tables.dropTable(); },
        [](Program& p) {
            EXPECT_TRUE(dropTable(*p.notes, u"Notes"));
            p.notes->dbTable = u"-";
            p.window.lstHeads.fill({});
        }},
    {"import",
        [](Program& p) {
            p.notes.folder().write(u"in/a.txt", "one");
            p.notes.run(u"UPDATE [Notes] SET VLMD5='other' WHERE ID=4"); // no duplicate
            answer(p, Answer::No); // where there is no memory for the safety copy
        },
        [](Program& p) { p.imports.importPaths({p.notes.folder().file(u"in")}); },
        [](Program& p) { p.imports.importPaths({p.notes.folder().file(u"in/a.txt")}); }},
    {"remove duplicates",
        [](Program& p) {
            p.notes.run(u"UPDATE [Notes] SET VLMD5='same' WHERE ID IN (1, 4)");
            answer(p, Answer::No);
        },
        [](Program& p) { p.maintenance.removeDuplicates(); }},
    {"find", [](Program& p) { p.window.txtInline.type(u"o.e"); }, [](Program& p) { p.boxes.findNext(); }},
    {"find previous", [](Program& p) { p.window.txtInline.type(u"o.e"); },
        [](Program& p) { p.boxes.findPrevious(); }},
    {"find inline",
        [](Program& p) {
            p.type(u"one\r\ntwo");
            p.window.txtShowWrap.selectAll();
        },
        [](Program& p) { p.boxes.findInline(); }},
    {"find escape", found, [](Program& p) { p.boxes.findEscape(); }},
    {"copy a result", found, [](Program& p) { p.boxes.copyResult(); }},
    {"copy all results", found, [](Program& p) { p.boxes.copyAllResults(); }},
    {"new search", typed, [](Program& p) { p.boxes.newSearch(); }, leave},
    {"cut", selected, [](Program& p) { p.texts.cut(); }},
    {"copy text", selected, [](Program& p) { p.texts.copy(); }},
    {"paste", selected, [](Program& p) { p.texts.paste(); }},
    {"copy all of it", selected, [](Program& p) { p.texts.copyAll(); }},
    {"clear", selected, [](Program& p) { p.texts.clearText(); }},
    {"switch case", selected, [](Program& p) { p.texts.switchCase(); }},
    {"insert title", nothing, [](Program& p) { p.texts.insertTitle(); }},
    {"join lines", selected, [](Program& p) { p.texts.joinLines(); }},
    {"compress lines", selected, [](Program& p) { p.texts.compressLines(); }},
    {"compact", nothing, [](Program& p) { p.maintenance.compactData(); }},
    {"take back unsaved text",
        [](Program& p) {
            p.type(u"cut off by the end of the session");
            EXPECT_TRUE(keepUnsavedText(*p.notes, p.records.current().unsavedText()));
            p.records.start();
            answer(p, Answer::Yes);
        },
        [](Program& p) { p.records.offerUnsavedTexts(); }},
    {"clean up", [](Program& p) { p.type(u"  one\r\n\r\n\r\n\r\ntwo "); },
        [](Program& p) { p.texts.trimText(); }},
    {"paste and search",
        [](Program& p) {
            p.texts.setTarget(PopUpTarget::Search);
            typed(p);
        },
        [](Program& p) { p.texts.pasteAndGo(); }, leave},
};

// What the boxes show may count as a new record, or as unsaved text of its own one, where nothing could be
// done about it any more. It is then a text of one of the states.
bool isSafe(const State& now, const std::vector<State>& whole, Program& program)
{
    const Texts& record = now.record;
    const auto isIn = [&](std::size_t box) {
        return std::any_of(
            whole.begin(), whole.end(), [&](const State& state) { return state.record[box] == record[box]; });
    };
    if (record[0] == u"-1")
        return (isIn(1) && isIn(2)) ||
            (now.place != whole[0].place && record[1].empty() && record[2].empty());
    return record[3] == u"unsaved" && isIn(1) && isIn(2) &&
        program.notes.rows(u"SELECT VLTEXT FROM [" + program.notes->dbTable + u"] WHERE ID=" + record[0]) ==
        Texts{record[2]};
}

// A menu is filled entry by entry: each leads where it says, though some may be twice there or missing.
bool isMenu(const Texts& entries, const std::vector<State>& whole)
{
    return std::all_of(entries.begin(), entries.end(), [&](const std::u16string& entry) {
        return std::any_of(whole.begin(), whole.end(), [&](const State& state) {
            return std::find(state.menus.begin(), state.menus.end(), entry) != state.menus.end();
        });
    });
}

// Each thing is as in one of the states; a record may also be shown as it is stored.
void expectWhole(const State& now, const std::vector<State>& whole, Program& program)
{
    for (const auto part : {&State::stored, &State::list, &State::record, &State::place, &State::menus}) {
        const bool known = std::any_of(
            whole.begin(), whole.end(), [&](const State& state) { return state.*part == now.*part; });
        if (known ||
            (part == &State::record && (isStored(now.record, program) || isSafe(now, whole, program))) ||
            (part == &State::menus && isMenu(now.menus, whole)) ||
            (part == &State::list && now.list.empty() && now.place != whole[0].place))
            continue;
        ADD_FAILURE() << testing::PrintToString(now.*part)
                      << "\nbefore: " << testing::PrintToString(whole[0].*part)
                      << "\nafter: " << testing::PrintToString(whole[1].*part);
    }
}

// No headings stand there that would be taken for those of another table.
bool listIsOfItsTable(const State& now, const std::vector<State>& whole)
{
    return now.list.empty() || std::any_of(whole.begin(), whole.end(), [&](const State& state) {
        return state.list == now.list && state.place == now.place;
    });
}

class Memory : public testing::TestWithParam<Case> {
protected:
    // Runs the command; how many allocations it made.
    static std::size_t run(
        Program& program, const std::function<void(Program&)>& command, std::size_t refused, Refuses how)
    {
        std::size_t made = 0;
        program.gate.run([&](const Turn&) {
            const FailingMemory memory(refused, how);
            try {
                command(program);
            } catch (...) {
                made = FailingMemory::counted();
                throw;
            }
            made = FailingMemory::counted();
        });
        program.window.dialogs.forget();
        program.frmInput.forget();
        return made;
    }
};

INSTANTIATE_TEST_SUITE_P(Commands, Memory, testing::ValuesIn(kCases), [](const auto& test) {
    std::string name = test.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

TEST_P(Memory, RefusedLeavesEachThingAsBeforeOrAsAfter)
{
    const Case& c = GetParam();
    std::vector<State> whole; // before, after, and in between
    std::size_t made = 0;
    for (const auto& act : {std::function<void(Program&)>(nothing), c.command, c.firstPart}) {
        if (!act)
            continue;
        Program program;
        c.prepare(program);
        made = std::max(made, run(program, act, static_cast<std::size_t>(-1), Refuses::Once));
        whole.push_back(stateOf(program));
    }
    // The boxes change near the end.
    const bool all = std::getenv("VELLUMS_EVERY_ALLOCATION") != nullptr;
    for (const Refuses how : {Refuses::Once, Refuses::OnFrom})
        for (std::size_t n = 1; n <= made; n += all || n + 30 >= made ? 1 : 1 + n / 8) {
            SCOPED_TRACE(std::to_string(n) + " of " + std::to_string(made) +
                (how == Refuses::Once ? ", once" : ", and all that follow"));
            Program program;
            c.prepare(program);
            run(program, c.command, n, how);
            const State now = stateOf(program);
            expectWhole(now, whole, program);
            EXPECT_TRUE(listIsOfItsTable(now, whole)) << testing::PrintToString(now.list);
            EXPECT_FALSE(program.gate.isBusy());
            EXPECT_FALSE(program.window.progress.isRunning());
            EXPECT_TRUE(now == whole[1] || program.gateShown.size() == 1);
        }
}

} // namespace
} // namespace vellums

// A random walk over the real window: real keys and clicks, menu commands, closes, answers, searches that
// are due, imports, files handed in, ends of the session and of the power, at any moment. After every step
// each word that was ever typed is in the boxes, in a database, in a file of unsaved text, or was given up;
// there is never a question upon a question, and the window answers.
//
// Words are made once and never again, so that one look tells where each is. A word is given up by
//   - No to a question about saving or taking back: what the boxes or the kept text hold,
//   - Yes to one about deleting: what the selected records, or the table named, hold,
//   - undo and clearing: what the box holds,
//   - removal of duplicates: the titles of records whose texts are equal,
//   - a kill: what stands in the boxes alone.
// Anything else that is gone is lost.
#include "tests/windows/programTest.h"
#include "tests/windows/windowProbe.h"
#include "ui/ids.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>

namespace vellums::tests {
namespace {

constexpr int kShortWalk = 20; // VELLUMS_WALK names a longer one
constexpr unsigned kSeed = 20261125;
constexpr std::size_t kStepsTold = 60;
constexpr int kImported = 120;

std::u16string lowered(std::u16string text)
{
    for (char16_t& unit : text)
        if (unit >= u'A' && unit <= u'Z')
            unit = static_cast<char16_t>(unit + 32);
    return text;
}

std::string ascii(const std::u16string& text)
{
    std::string out;
    for (const char16_t c : text)
        out += c < 128 ? static_cast<char>(c) : '?';
    return out;
}

// What is kept outside the window.
class Kept {
public:
    explicit Kept(const ProgramFolder& folder)
        : folder_(folder)
    {
    }

    std::vector<StoredRecord> records() const
    {
        std::vector<StoredRecord> all;
        for (const std::wstring& name : names(L".mdb"))
            for (StoredRecord& record : recordsIn(narrow(folder_.file(name)))) {
                record.text = lowered(record.text);
                record.title = lowered(record.title);
                all.push_back(std::move(record));
            }
        return all;
    }

    // Texts of sessions that were ended.
    std::u16string unsaved() const
    {
        std::u16string all;
        for (const std::wstring& name : names(L".unsaved")) {
            std::ifstream file(ascii(narrow(folder_.file(name))), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            for (const char byte : bytes) // UTF-16, of which the words need the low bytes
                if (byte != 0)
                    all += static_cast<unsigned char>(byte);
            all += u'\n';
        }
        return lowered(all);
    }

private:
    // The files whose long name ends so; the system compares short names as well.
    std::vector<std::wstring> names(const std::wstring& ending) const
    {
        std::vector<std::wstring> found;
        WIN32_FIND_DATAW entry{};
        const HANDLE search = FindFirstFileW(folder_.file(L"*").c_str(), &entry);
        for (BOOL more = search != INVALID_HANDLE_VALUE; more != FALSE; more = FindNextFileW(search, &entry))
            if (const std::wstring name = entry.cFileName; name.ends_with(ending))
                found.push_back(name);
        if (search != INVALID_HANDLE_VALUE)
            FindClose(search);
        return found;
    }

    const ProgramFolder& folder_;
};

class Walker {
public:
    using Say = std::function<std::u16string(const char16_t* english, const char16_t* chinese)>;

    Walker(const ProgramFolder& folder, Say say)
        : folder_(folder)
        , kept_(folder)
        , say_(std::move(say))
        , random_(kSeed)
    {
        start(L"");
    }

    void go(int steps)
    {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            for (bool another = true; another; another = pick(5) == 0) // sometimes faster than it can work
                act();
            look(step);
        }
        std::string done;
        for (const auto& [what, count] : count_)
            done += what + " " + std::to_string(count) + ", ";
        testing::Test::RecordProperty("walked", done);
        std::printf("%swords typed %d, still there %zu\n", done.c_str(), words_, alive_.size());
    }

private:
    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    void note(const std::string& what, const std::string& detail = "")
    {
        ++count_[what];
        trace_.push_back(detail.empty() ? what : what + " " + detail);
    }

    void start(const std::wstring& arguments)
    {
        program_ = std::make_unique<Program>(folder_.executable(), arguments);
        ASSERT_NE(program_->window(), nullptr);
    }

    void act()
    {
        if (!program_->isRunning())
            return;
        if (program_->boxIsOpen()) {
            if (pick(3) == 0)
                disturb();
            else
                answer();
        } else if (program_->menuIsOpen()) {
            if (pick(3) == 0)
                disturb();
            else
                strike(VK_ESCAPE);
        } else {
            walkOn();
        }
    }

    void walkOn()
    {
        const int way = pick(40);
        if (way < 12)
            typeWord();
        else if (way < 18)
            command();
        else if (way < 25)
            key();
        else if (way < 28)
            click();
        else if (way < 31)
            toolItem();
        else if (way < 35)
            search();
        else if (way < 37)
            menu();
        else if (way == 37)
            close();
        else if (way == 38)
            handIn();
        else
            end();
    }

    // What comes from elsewhere while a question stands or a menu is open.
    void disturb()
    {
        if (pick(3) == 0)
            close();
        else
            command();
    }

    std::u16string newWord()
    {
        // No letter answers a question that opens while the word is typed.
        constexpr std::u16string_view kLetters = u"abdefghijklmpqrtuvxz";
        std::u16string word = u"w";
        for (auto number = static_cast<std::size_t>(++words_); number != 0; number /= kLetters.size())
            word += kLetters[number % kLetters.size()];
        return word + u"w";
    }

    // Real keys, behind what is in the box.
    void typeWord()
    {
        const std::u16string word = newWord();
        const int id = pick(5) == 0 ? ID_txtType : shownBox();
        note("type", ascii(word) + (id == ID_txtType ? " as title" : ""));
        program_->type(id, VK_END, true);
        for (const char16_t letter : word)
            Program::strike(static_cast<WORD>(letter - 32));
        if (eventually([&] { return holds(boxes(), word) || program_->boxIsOpen(); }, 300) &&
            holds(boxes(), word))
            alive_.insert(word); // the box took it
    }

    void command()
    {
        constexpr int kIds[] = {ID_mnu_top_PasteNew, ID_mnu_sqlman_Duplicate, ID_mnu_sqlman_Delete,
            ID_mnu_sqlman_Save, ID_mnu_sqlman_Save, ID_mnu_sqlman_Refresh, ID_mnu_Paste, ID_mnu_remdups,
            ID_mnu_dbops_Create, ID_mnu_dbops_Rename, ID_mnu_dbops_Drop, ID_mnu_dbcreate, ID_mnu_shrinkdata,
            ID_mnu_setsticky, ID_mnu_nosticky, ID_mnu_availdb, ID_mnu_avtables, ID_mnu_chkwrap,
            ID_mnu_hidelst, ID_mnu_SortOnTitle, ID_mnu_InstantSrch, ID_mnu_txtops_Case, ID_mnu_txtops_Trim,
            ID_mnu_txtjoinlines, ID_mnu_txtcomplines, ID_mnu_find_Inline, ID_mnu_find_Previous,
            ID_mnu_top_Title, ID_mnu_sizes_Larger, ID_mnu_sizes_Smaller, ID_mnu_ontop};
        const int id = kIds[pick(static_cast<int>(std::size(kIds)))];
        note("command", std::to_string(id));
        if (id == ID_mnu_remdups)
            giveUpTitlesOfTwins();
        if (pick(2) == 0)
            setClipboard(newWord()); // becomes a record once a command takes it; it is not typed text
        program_->command(id);
    }

    void key()
    {
        struct Key {
            WORD key;
            bool ctrl;
        };
        constexpr Key kKeys[] = {{VK_ESCAPE, false}, {VK_TAB, false}, {VK_TAB, true}, {VK_F3, false},
            {VK_F4, false}, {VK_F5, false}, {VK_F5, true}, {VK_F7, false}, {VK_F8, false}, {VK_DOWN, false},
            {VK_UP, false}, {VK_RETURN, false}, {'N', true}, {'M', true}, {'D', true}, {'S', true},
            {'R', true}, {'W', true}, {'G', true}, {'F', true}, {'B', true}, {'T', true}, {VK_DELETE, false},
            {'Z', true}, {'E', true}};
        const Key pressed = kKeys[pick(static_cast<int>(std::size(kKeys)))];
        const int id = pressed.key == VK_DELETE || pick(3) == 0 ? ID_lstHeads : shownBox();
        note("key", (pressed.ctrl ? "Ctrl+" : "") + std::to_string(pressed.key));
        if (pressed.key == 'Z' || pressed.key == 'E')
            giveUp(boxes());
        if (id != ID_lstHeads)
            program_->type(id, VK_END, true); // a letter would replace what is selected
        program_->type(id, pressed.key, pressed.ctrl);
    }

    void strike(WORD key)
    {
        note("strike", std::to_string(key));
        SetForegroundWindow(program_->window());
        Program::strike(key);
    }

    void click()
    {
        constexpr int kIds[] = {ID_lstHeads, ID_lstHeads, ID_lstHeads, ID_chkSort, ID_txtType, ID_lblDate,
            ID_ucStatusLeft, ID_ucStatusRight, ID_fraSplitter};
        const int picked = pick(static_cast<int>(std::size(kIds)) + 1);
        const int id = picked == static_cast<int>(std::size(kIds)) ? shownBox() : kIds[picked];
        const RECT place = program_->place(id);
        if (!program_->isShown(id) || place.right - place.left < 4 || place.bottom - place.top < 4)
            return;
        const bool right = pick(5) == 0;
        note(right ? "right click" : "click", std::to_string(id));
        const int y = id == ID_lstHeads ? pick(std::min(200, static_cast<int>(place.bottom - place.top)))
                                        : (place.bottom - place.top) / 2;
        program_->click(id, (place.right - place.left) / 2, y, right);
        if (right)
            awaitMenu();
    }

    // The items of the bar behind its three menus, by the keys of the bar.
    void toolItem()
    {
        const int item = 3 + pick(10);
        note("tool item", std::to_string(item));
        program_->type(shownBox(), VK_END, true);
        Program::strike(VK_MENU);
        for (int i = 0; i < item; ++i)
            Program::strike(VK_RIGHT);
        Program::strike(VK_RETURN);
        eventually([&] { return !program_->menuIsOpen(); }, 500);
    }

    void menu()
    {
        note("menu");
        program_->type(shownBox(), VK_END, true);
        Program::strike(VK_MENU);
        for (int i = pick(3); i > 0; --i)
            Program::strike(VK_RIGHT);
        for (int i = pick(6); i >= 0; --i)
            Program::strike(VK_DOWN);
        awaitMenu();
    }

    // The letters of a word that is typed into a menu would choose from it.
    void awaitMenu()
    {
        eventually([&] { return program_->menuIsOpen() || program_->boxIsOpen(); }, 500);
    }

    void search()
    {
        note("search");
        if (pick(2) == 0)
            program_->setText(ID_txtKey, u"");
        else
            program_->type(ID_txtKey, 'W');
        if (pick(2) == 0)
            program_->type(ID_txtKey, pick(2) == 0 ? VK_RETURN : VK_ESCAPE);
    }

    void close()
    {
        note("close");
        PostMessageW(program_->window(), WM_CLOSE, 0, 0);
    }

    // Another process posts F5; or the power goes, and the next start imports a folder.
    void handIn()
    {
        if (pick(4) != 0) {
            note("hand over");
            PostMessageW(program_->window(), WM_KEYDOWN, VK_F5, 1);
            return;
        }
        note("kill and import");
        const std::wstring texts = folder_.file(L"texts");
        CreateDirectoryW(texts.c_str(), nullptr);
        for (int i = 0; i < kImported; ++i)
            folder_.write(L"texts\\" + std::to_wstring(i) + L".txt", "text " + std::to_string(i));
        const std::u16string last = boxes();
        program_->kill();
        giveUpWhatIsOnlyIn(last);
        giveUpTitlesOfTwins();
        start(L"\"" + texts + L"\"");
    }

    // The session ends, whatever the program answers.
    void end()
    {
        note("end of session");
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(program_->window(), WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 20000, &answer);
        program_->kill();
        start(L"");
    }

    void answer()
    {
        const std::u16string question = program_->waitForBox();
        const std::vector<int> offered = program_->buttons();
        if (offered.empty())
            return; // just gone
        const bool byKey = pick(2) == 0;
        const int button =
            byKey ? offered[0] : offered[static_cast<std::size_t>(pick(static_cast<int>(offered.size())))];
        note("answer", std::to_string(button) + " to " + ascii(question.substr(0, 40)));
        const auto asks = [&](const char16_t* english, const char16_t* chinese) {
            return holds(question, say_(english, chinese));
        };
        if (button == IDNO && (asks(u"Save changes", u"是否保存") || asks(u"Save a new", u"是否保存")))
            giveUpWhatIsOnlyIn(boxes());
        if (button == IDNO && asks(u"Take it back", u"是否恢复"))
            giveUp(kept_.unsaved());
        if (button == IDYES && asks(u"sure to delete", u"确定删除"))
            giveUpSelected();
        if (button == IDYES && asks(u"drop table", u"中删除表"))
            giveUpTable(question);
        if (byKey)
            Program::strike(VK_RETURN);
        else
            program_->answer(button);
    }

    int shownBox() const { return program_->isShown(ID_txtShowWrap) ? ID_txtShowWrap : ID_txtShowNoWrap; }
    std::u16string boxes() const
    {
        return lowered(program_->text(ID_txtType) + u"\n" + program_->text(shownBox()));
    }
    static bool holds(const std::u16string& text, const std::u16string& word)
    {
        return text.find(word) != std::u16string::npos;
    }

    std::u16string stored() const
    {
        std::u16string all = kept_.unsaved();
        for (const StoredRecord& record : kept_.records())
            all += record.title + u"\n" + record.text + u"\n";
        return all;
    }

    void giveUp(const std::u16string& text)
    {
        std::erase_if(alive_, [&](const std::u16string& word) { return holds(text, word); });
    }

    void giveUpWhatIsOnlyIn(const std::u16string& text)
    {
        const std::u16string elsewhere = stored();
        std::erase_if(
            alive_, [&](const std::u16string& word) { return holds(text, word) && !holds(elsewhere, word); });
    }

    void giveUpTitlesOfTwins()
    {
        const std::vector<StoredRecord> records = kept_.records();
        std::map<std::u16string, int> count;
        for (const StoredRecord& record : records)
            ++count[record.text];
        for (const StoredRecord& record : records)
            if (count[record.text] > 1)
                giveUp(record.title);
    }

    void giveUpSelected()
    {
        std::set<int> ids;
        for (int entry = 0; entry < program_->count(ID_lstHeads); ++entry)
            if (program_->ask(ID_lstHeads, LB_GETSEL, static_cast<WPARAM>(entry)) > 0)
                ids.insert(
                    static_cast<int>(program_->ask(ID_lstHeads, LB_GETITEMDATA, static_cast<WPARAM>(entry))));
        giveUpWhatIsOnlyIn(boxes());
        for (const StoredRecord& record : kept_.records())
            if (ids.contains(record.id))
                giveUp(record.title + u"\n" + record.text);
    }

    void giveUpTable(const std::u16string& question)
    {
        giveUpWhatIsOnlyIn(boxes());
        for (const StoredRecord& record : kept_.records())
            if (holds(question, u" " + record.table + u" "))
                giveUp(record.title + u"\n" + record.text);
    }

    void look(int step)
    {
        eventually([&] { return !program_->isRunning() || quiet(); }, 30000);
        const bool answers =
            SendMessageTimeoutW(program_->window(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 10000, nullptr) != 0;
        if (!answers && IsWindow(program_->window()) == FALSE)
            eventually([&] { return !program_->isRunning(); }); // it is on its way out
        const std::string where =
            "step " + std::to_string(step) + ", panel: " + ascii(program_->text(ID_ucStatusLeft));
        if (!program_->isRunning()) {
            EXPECT_EQ(program_->close(), 0u) << where; // its exit code
            checkAll(where + " (ended)");
            start(L"");
            return;
        }
        EXPECT_LE(program_->questionsOpen(), 1) << where;
        EXPECT_TRUE(answers) << where << told();
        checkAll(where);
        trace_.push_back("  " + std::to_string(step) + ": " + std::to_string(boxes().size()) + " shown, " +
            ascii(program_->text(ID_ucStatusLeft)));
    }

    // The commands are over: it answers, and nothing is locked.
    bool quiet() const
    {
        return SendMessageTimeoutW(program_->window(), WM_NULL, 0, 0, SMTO_NORMAL, 2000, nullptr) != 0 &&
            (GetWindowLongW(program_->control(ID_txtShowWrap), GWL_STYLE) & ES_READONLY) == 0;
    }

    // A text that is on its way from one place to another while this looks is found at the second look.
    void checkAll(const std::string& where)
    {
        std::u16string present;
        eventually(
            [&] {
                present = boxes() + u"\n" + stored();
                return std::all_of(alive_.begin(), alive_.end(),
                    [&](const std::u16string& word) { return holds(present, word); });
            },
            2000);
        for (const std::u16string& word : alive_)
            EXPECT_TRUE(holds(present, word)) << "lost: " << ascii(word) << " at " << where << told() << "\n"
                                              << ascii(present);
    }

    std::string told() const
    {
        std::string steps = ", after";
        for (std::size_t i = trace_.size() - std::min(trace_.size(), kStepsTold); i < trace_.size(); ++i)
            steps += "\n" + trace_[i];
        return steps;
    }

    const ProgramFolder& folder_;
    Kept kept_;
    Say say_;
    std::mt19937 random_;
    std::unique_ptr<Program> program_;
    std::set<std::u16string> alive_;
    std::vector<std::string> trace_;
    std::map<std::string, int> count_; // what was done how often
    int words_ = 0;
};

class WalkTest : public ProgramTest { };

INSTANTIATE_TEST_SUITE_P(Languages, WalkTest, testing::Values(GetACP() == 936), languageOf);

TEST_P(WalkTest, LosesNothingThatWasTyped)
{
    const char* const wanted = std::getenv("VELLUMS_WALK");
    setClipboard(u"");
    Walker walker(
        folder, [this](const char16_t* english, const char16_t* chinese) { return say(english, chinese); });
    walker.go(wanted == nullptr ? kShortWalk : std::atoi(wanted));
}

} // namespace
} // namespace vellums::tests

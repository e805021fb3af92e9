// A random walk over the real window: keys, clicks, menu commands, closes, answers, searches that are due,
// imports, files handed in, text that comes at any moment. After every step each word that was ever typed is
// in the boxes, in the database, or was given up by an answer; there is never a question upon a question,
// and the window answers.
//
// Words are made once and never again, so that one look at the boxes and the database tells where each is.
// A word may go only in a step that answered No to a question about saving, Yes to one about deleting, or
// took back what had been typed last (undo); what a walk writes it writes behind what is there.
#include "tests/windows/programTest.h"
#include "tests/windows/windowProbe.h"
#include "ui/ids.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <set>

namespace vellums::tests {
namespace {

constexpr int kShortWalk = 150; // VELLUMS_WALK names a longer one

class Walker {
public:
    using Say = std::function<std::u16string(const char16_t* english, const char16_t* chinese)>;

    Walker(const ProgramFolder& folder, Say say, unsigned seed)
        : folder_(folder)
        , say_(std::move(say))
        , random_(seed)
    {
        start(L"");
    }

    void go(int steps)
    {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            mayLose_ = false;
            last_ = u"";
            act();
            trace_ += u"\n" + last_;
            look(step);
        }
    }

private:
    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    void start(const std::wstring& arguments)
    {
        program_ = std::make_unique<Program>(folder_.executable(), arguments);
        ASSERT_NE(program_->window(), nullptr);
    }

    std::u16string newWord()
    {
        std::u16string word = u"w";
        for (int number = ++words_; number != 0; number /= 26)
            word += static_cast<char16_t>(u'a' + number % 26);
        return word + u"w";
    }

    // Behind what is in the box, as typing does.
    void write(int id, const std::u16string& text)
    {
        const std::wstring put = wideOf(text);
        const int end = static_cast<int>(program_->text(id).size());
        program_->select(id, end, end);
        program_->ask(id, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(put.c_str()));
    }

    void typeWord()
    {
        const std::u16string word = newWord();
        const int id = pick(4) == 0 ? ID_txtType : shownBox();
        last_ = u"type " + word;
        write(id, word + u" ");
        if (program_->text(id).find(word) != std::u16string::npos)
            alive_.insert(word); // the box took it
    }

    void act()
    {
        if (questionsOpen(*program_) != 0) {
            answerOrDisturb();
            return;
        }
        switch (pick(12)) {
        case 0:
        case 1:
        case 2:
            typeWord();
            break;
        case 3:
        case 4:
        case 5:
            command();
            break;
        case 6:
            last_ = u"select";
            if (const int count = program_->count(ID_lstHeads); count > 0)
                program_->selectEntry(ID_lstHeads, pick(count));
            break;
        case 7:
            search();
            break;
        case 8:
            key();
            break;
        case 9:
            last_ = u"close";
            PostMessageW(program_->window(), WM_CLOSE, 0, 0);
            break;
        case 10:
            handIn();
            break;
        default:
            last_ = u"timer";
            program_->command(ID_mnu_InstantSrch);
            break;
        }
    }

    void command()
    {
        constexpr int kIds[] = {ID_mnu_top_PasteNew, ID_mnu_sqlman_Duplicate, ID_mnu_sqlman_Delete,
            ID_mnu_sqlman_Save, ID_mnu_sqlman_Save, ID_mnu_sqlman_Refresh, ID_mnu_Paste, ID_mnu_remdups,
            ID_mnu_dbops_Create, ID_mnu_shrinkdata, ID_mnu_setsticky, ID_mnu_nosticky, ID_mnu_chkwrap,
            ID_mnu_hidelst, ID_mnu_SortOnTitle, ID_mnu_txtops_Date, ID_mnu_find_Next, ID_mnu_find_Inline,
            ID_mnu_top_Title, ID_mnu_sizes_Larger, ID_mnu_sizes_Smaller, ID_mnu_ontop};
        const int id = kIds[pick(static_cast<int>(std::size(kIds)))];
        last_ = u"command " + narrow(std::to_wstring(id));
        if (pick(2) == 0)
            setClipboard(newWord()); // becomes a record once a command takes it; it is not typed text
        program_->command(id);
        if (pick(3) == 0) // at once the next one
            program_->command(kIds[pick(static_cast<int>(std::size(kIds)))]);
    }

    void search()
    {
        last_ = u"search";
        program_->setText(ID_txtKey, pick(2) == 0 ? u"" : u"w");
        if (pick(2) == 0)
            program_->press(ID_txtKey, pick(2) == 0 ? VK_RETURN : VK_ESCAPE);
    }

    void key()
    {
        constexpr WORD kKeys[] = {VK_ESCAPE, VK_TAB, VK_F3, VK_F5, VK_DOWN, VK_DELETE};
        const int id = pick(2) == 0 ? ID_lstHeads : shownBox();
        const WORD pressed = kKeys[pick(static_cast<int>(std::size(kKeys)))];
        last_ = u"key " + narrow(std::to_wstring(pressed));
        if (id != ID_lstHeads && pressed == VK_DELETE)
            return; // it would take away words by hand
        program_->press(id, pressed);
    }

    // Another process posts F5; or the program is killed as by a loss of power and starts with a folder.
    void handIn()
    {
        last_ = u"hand in";
        if (pick(4) != 0) {
            PostMessageW(program_->window(), WM_KEYDOWN, VK_F5, 1);
            return;
        }
        const std::wstring texts = folder_.file(L"texts");
        CreateDirectoryW(texts.c_str(), nullptr);
        for (int i = 0; i < 40; ++i)
            folder_.write(L"texts\\" + std::to_wstring(i) + L".txt", "text " + std::to_string(i));
        dropUnsaved();
        program_->kill();
        start(L"\"" + texts + L"\"");
    }

    // A kill takes what is in the boxes alone.
    void dropUnsaved()
    {
        const std::u16string stored = database();
        std::erase_if(
            alive_, [&](const std::u16string& word) { return stored.find(word) == std::u16string::npos; });
    }

    void answerOrDisturb()
    {
        if (pick(3) == 0) { // something else comes first
            if (pick(2) == 0)
                PostMessageW(program_->window(), WM_CLOSE, 0, 0);
            else
                command();
            return;
        }
        const int buttons[] = {IDYES, IDNO, IDCANCEL, IDOK};
        const int button = buttons[pick(4)];
        const std::u16string question = program_->waitForBox();
        const bool aboutSaving = question.find(say_(u"Save", u"是否保存")) != std::u16string::npos;
        last_ = u"answer " + narrow(std::to_wstring(button));
        // No gives up what the boxes hold, Yes to another question what it deletes.
        mayLose_ = button == (aboutSaving ? IDNO : IDYES);
        mayLoseBoxes_ = aboutSaving ? boxes() : u"";
        program_->answer(button);
    }

    int shownBox() const { return program_->isShown(ID_txtShowWrap) ? ID_txtShowWrap : ID_txtShowNoWrap; }
    std::u16string boxes() const { return program_->text(ID_txtType) + u"\n" + program_->text(shownBox()); }

    std::u16string database() const
    {
        const std::u16string file = narrow(folder_.file(L"Vellums.mdb"));
        std::u16string all;
        for (const char16_t* const column : {u"VLHEAD", u"VLTEXT"})
            for (const std::u16string& text : textsOf(file, column))
                all += text + u"\n";
        return all;
    }

    void look(int step)
    {
        eventually([&] { return !program_->isRunning() || quiet(); }, 20000);
        const bool answers =
            SendMessageTimeoutW(program_->window(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 10000, nullptr) != 0;
        if (!answers && IsWindow(program_->window()) == FALSE)
            eventually([&] { return !program_->isRunning(); }); // it is on its way out
        const std::string where = "step " + std::to_string(step) + ", " +
            std::string(last_.begin(), last_.end()) + ", panel: " + utf8(program_->text(ID_ucStatusLeft));
        if (!program_->isRunning()) {
            EXPECT_EQ(program_->close(), 0u) << where; // its exit code
            dropWhatMayGo(database());
            checkAll(database(), where + " (ended)");
            start(L"");
            return;
        }
        EXPECT_LE(questionsOpen(*program_), 1) << where;
        EXPECT_TRUE(answers) << where;
        const std::u16string present = boxes() + database();
        dropWhatMayGo(present);
        checkAll(present, where);
    }

    // The posted commands are over: two answers apart, nothing is locked.
    bool quiet() const
    {
        return SendMessageTimeoutW(program_->window(), WM_NULL, 0, 0, SMTO_NORMAL, 2000, nullptr) != 0 &&
            (GetWindowLongW(program_->control(ID_txtShowWrap), GWL_STYLE) & ES_READONLY) == 0;
    }

    void dropWhatMayGo(const std::u16string& present)
    {
        if (!mayLose_)
            return;
        std::erase_if(
            alive_, [&](const std::u16string& word) { return present.find(word) == std::u16string::npos; });
    }

    void checkAll(const std::u16string& present, const std::string& where)
    {
        for (const std::u16string& word : alive_)
            EXPECT_NE(present.find(word), std::u16string::npos)
                << "lost: " << utf8(word) << " at " << where << ", after" << utf8(trace_);
    }

    static std::string utf8(const std::u16string& text)
    {
        std::string out;
        for (const char16_t c : text)
            out += c < 128 ? static_cast<char>(c) : '?';
        return out;
    }

    const ProgramFolder& folder_;
    Say say_;
    std::mt19937 random_;
    std::unique_ptr<Program> program_;
    std::set<std::u16string> alive_;
    std::u16string last_;
    std::u16string trace_; // all steps
    std::u16string mayLoseBoxes_;
    bool mayLose_ = false;
    int words_ = 0;
};

class WalkTest : public ProgramTest { };

INSTANTIATE_TEST_SUITE_P(Languages, WalkTest, testing::Values(GetACP() == 936), languageOf);

TEST_P(WalkTest, LosesNothingThatWasTyped)
{
    const char* const wanted = std::getenv("VELLUMS_WALK");
    setClipboard(u"");
    Walker walker(
        folder, [this](const char16_t* english, const char16_t* chinese) { return say(english, chinese); },
        20261125);
    walker.go(wanted == nullptr ? kShortWalk : std::atoi(wanted));
}

} // namespace
} // namespace vellums::tests

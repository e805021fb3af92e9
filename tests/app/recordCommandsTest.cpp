#include "app/recordCommands.h"

#include "app/headingList.h"
#include "platform/clipboard.h"
#include "tests/support/memoryControls.h"
#include "tests/support/testNotebook.h"
#include "text/decimal.h"

#include <gmock/gmock.h>

#include <functional>
#include <utility>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::u16string>;

MATCHER_P(BeginsWith, beginning, "")
{
    return arg.rfind(beginning, 0) == 0;
}

MATCHER_P(Holds, part, "")
{
    return arg.find(part) != std::u16string::npos;
}

// Longer than a title may be, so that saving fails.
const std::u16string kTooLong(256, u'x');

// Three records: 3 "cherry" is the newest, then 2 "banana", 1 "apple". The bodies are "body of ...".
// The parameter: the interface is Chinese.
class RecordCommandsTest : public testing::TestWithParam<bool> {
protected:
    RecordCommandsTest()
        : commands_(*notes_, window_.ports(), moments_)
    {
        notes_->chinese = GetParam();
        platform::setClipboardText(u"");
        int year = 2001;
        for (const char16_t* const title : {u"apple", u"banana", u"cherry"}) {
            const auto added = addRecord(*notes_, {u"body of " + std::u16string(title), title, u""});
            EXPECT_TRUE(added);
            notes_.run(u"UPDATE [Notes] SET VLDATE='" + text::decimal(year++) + u"-1-1 10:00:00' WHERE ID=" +
                text::decimal(added ? added->id : 0));
        }
        for (const char16_t* const column : {u"VLHEAD", u"VLTEXT", u"VLLINK"})
            window_.mnu_AvailFields.set(window_.mnu_AvailFields.size(), {u"", column, true, false});
        commands_.start();
    }

    std::u16string say(std::u16string_view english, std::u16string_view chinese) const
    {
        return std::u16string(GetParam() ? chinese : english);
    }
    // The question about unsaved changes with its buttons.
    std::u16string saveQuestion(std::u16string_view buttons) const
    {
        return say(u"Save changes to the current snippet?", u"是否保存当前记录所作修改?") +
            std::u16string(buttons);
    }
    std::u16string lastShown() const { return notes_.shown().empty() ? u"" : notes_.shown().back(); }
    std::u16string bodyOf(std::int32_t id)
    {
        const Texts rows = notes_.rows(u"SELECT VLTEXT FROM [Notes] WHERE ID=" + text::decimal(id));
        return rows.empty() ? u"(gone)" : rows.front();
    }
    // What is on the screen: the titles of the list, the selected entries, the boxes.
    void expectScreen(const Texts& titles, const std::vector<int>& selected, const std::u16string& title,
        const std::u16string& body)
    {
        EXPECT_EQ(window_.lstHeads.texts(), titles);
        EXPECT_EQ(window_.lstHeads.selected(), selected);
        EXPECT_EQ(window_.txtType.text(), title);
        EXPECT_EQ(window_.txtShowWrap.text(), body);
    }
    // The list follows a switch of tables before the boxes do.
    bool dbQueryWithoutBoxes()
    {
        WindowPorts window = window_.ports();
        return dbQuery(*notes_, window, u"");
    }
    void choose(int entry)
    {
        window_.lstHeads.click({entry});
        commands_.selectHeading();
    }

    tests::TestNotebook notes_;
    tests::MemoryWindow window_;
    Moments moments_;
    RecordCommands commands_;
};

INSTANTIATE_TEST_SUITE_P(Languages, RecordCommandsTest, testing::Bool(),
    [](const auto& test) { return test.param ? "Chinese" : "English"; });

TEST_P(RecordCommandsTest, StartShowsTheNewestRecordAndTheCount)
{
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_EQ(window_.caption.text(), u"Vellums - <notes.mdb - Notes>");
    EXPECT_EQ(window_.lblDate.text(), u"2003-01-01 10:00:00");
    EXPECT_EQ(
        lastShown(), say(u"3 records found in notes.mdb - Notes.", u"搜索到 3 条记录 (notes.mdb - Notes)"));
    EXPECT_FALSE(commands_.current().hasUnsavedChanges());
}

TEST_P(RecordCommandsTest, MomentsComeInTheirOrder)
{
    Texts happened;
    moments_.tableOpened.add([&] { happened.push_back(u"opened"); });
    moments_.listFilled.add([&] { happened.push_back(u"filled " + lastShown()); });
    window_.txtKey.type(u"app");
    commands_.start();
    EXPECT_THAT(happened, ElementsAre(u"opened", Holds(std::u16string(u"1 "))));
    commands_.search();
    EXPECT_EQ(happened.size(), 2u) << "a search fills no digests";
    commands_.reload();
    EXPECT_EQ(happened.size(), 3u);
}

TEST_P(RecordCommandsTest, SearchCountsWhatItFinds)
{
    window_.txtKey.type(u" of*APPLE ");
    commands_.search();
    expectScreen({u"apple"}, {0}, u"apple", u"body of apple");
    EXPECT_EQ(
        lastShown(), say(u"1 record found in notes.mdb - Notes.", u"搜索到 1 条记录 (notes.mdb - Notes)"));
    window_.txtKey.type(u"it's nowhere");
    commands_.search();
    expectScreen({}, {}, u"", u"");
    EXPECT_LT(commands_.current().id(), 0);
    EXPECT_EQ(window_.lblDate.text(), u"");
    EXPECT_EQ(
        lastShown(), say(u"0 record found in notes.mdb - Notes.", u"搜索到 0 条记录 (notes.mdb - Notes)"));
}

TEST_P(RecordCommandsTest, SearchAsksAboutUnsavedChanges)
{
    window_.txtKey.type(u"banana");
    window_.txtShowWrap.type(u"changed once");
    window_.dialogs.answerNext(Answer::No);
    commands_.search();
    EXPECT_THAT(window_.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    expectScreen({u"banana"}, {0}, u"banana", u"body of banana");
    EXPECT_EQ(bodyOf(3), u"body of cherry");

    window_.txtType.type(u"banana split"); // a changed title counts, too
    window_.dialogs.answerNext(Answer::Yes);
    commands_.search();
    EXPECT_THAT(window_.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    expectScreen({u"banana split"}, {0}, u"banana split", u"body of banana");
    commands_.search();
    EXPECT_THAT(window_.dialogs.asked(), IsEmpty());
}

// Whatever replaces the text stops when the changes cannot be saved.
TEST_P(RecordCommandsTest, AFailedSaveStopsEverything)
{
    const std::pair<const char*, std::function<void()>> steps[] = {
        {"search", [&] { commands_.search(); }},
        {"reload", [&] { commands_.reload(); }},
        {"duplicate", [&] { commands_.duplicate(); }},
        {"paste new", [&] { commands_.pasteNew(); }},
        {"capture", [&] { commands_.capture(); }},
        {"another heading", [&] { choose(2); }},
        {"close", [&] { EXPECT_FALSE(commands_.mayClose()); }},
    };
    platform::setClipboardText(u"from the clipboard");
    window_.txtKey.type(u"apple");
    window_.txtType.type(kTooLong);
    window_.txtShowWrap.type(u"precious");
    for (const auto& [name, step] : steps) {
        SCOPED_TRACE(name);
        window_.dialogs.answerNext(Answer::Yes);
        step();
        expectScreen({u"cherry", u"banana", u"apple"}, {0}, kTooLong, u"precious");
        EXPECT_EQ(commands_.current().id(), 3);
        EXPECT_THAT(lastShown(), BeginsWith(std::u16string(u"modRecord - ")));
    }
    EXPECT_THAT(notes_.rows(u"SELECT COUNT(*) FROM [Notes]"), ElementsAre(u"3"));
    commands_.save();
    EXPECT_EQ(window_.txtShowWrap.text(), u"precious");
    EXPECT_TRUE(commands_.current().hasUnsavedChanges());
}

TEST_P(RecordCommandsTest, AFailedQueryLeavesListAndBoxes)
{
    notes_->dbTable = u"Missing";
    window_.txtKey.type(u"apple");
    commands_.search();
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_THAT(lastShown(), BeginsWith(std::u16string(u"dbQuery: ")));
    EXPECT_EQ(lastShown().back(), u')');

    notes_->dbTable = u"Notes";
    for (std::size_t i = 0; i < window_.mnu_AvailFields.size(); ++i)
        window_.mnu_AvailFields.set(i, {u"", window_.mnu_AvailFields.at(i).tag, false, false});
    commands_.search();
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_THAT(lastShown(), BeginsWith(std::u16string(u"dbQuery: ")));
}

TEST_P(RecordCommandsTest, AnotherHeadingAsksWithThreeAnswers)
{
    choose(1);
    expectScreen({u"cherry", u"banana", u"apple"}, {1}, u"banana", u"body of banana");
    EXPECT_THAT(window_.dialogs.asked(), IsEmpty());

    window_.txtShowWrap.type(u"changed");
    window_.dialogs.answerNext(Answer::Cancel);
    choose(2);
    EXPECT_THAT(window_.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No/Cancel)")));
    expectScreen({u"cherry", u"banana", u"apple"}, {1}, u"banana", u"changed");
    EXPECT_EQ(bodyOf(2), u"body of banana");

    window_.dialogs.answerNext(Answer::Yes);
    choose(2);
    expectScreen({u"cherry", u"banana", u"apple"}, {2}, u"apple", u"body of apple");
    EXPECT_EQ(bodyOf(2), u"changed");

    window_.txtShowWrap.type(u"changed again");
    window_.dialogs.answerNext(Answer::No);
    choose(0);
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_EQ(bodyOf(1), u"body of apple");
    choose(0);
    EXPECT_EQ(window_.dialogs.asked().size(), 2u);
}

TEST_P(RecordCommandsTest, AHeadingWhoseRecordIsGoneKeepsTheShownOne)
{
    notes_.run(u"DELETE FROM [Notes] WHERE ID=1");
    choose(2);
    EXPECT_THAT(lastShown(), BeginsWith(std::u16string(u"getRecText - 1 > ")));
    // The selected entry is the shown record: the next command must not meet another one.
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
}

TEST_P(RecordCommandsTest, SavingANewRecordBeforeAnotherHeadingKeepsTheChosenOne)
{
    commands_.current().clear();
    window_.lstHeads.select(-1);
    window_.txtShowWrap.type(u"typed in");
    window_.dialogs.answerNext(Answer::Yes);
    choose(1);
    expectScreen({u"typed in", u"cherry", u"banana", u"apple"}, {2}, u"banana", u"body of banana");
}

TEST_P(RecordCommandsTest, SaveKeepsTheSelectionAndRenamesTheHeading)
{
    choose(1);
    window_.txtType.type(u"it's\r\nyellow");
    window_.txtShowWrap.type(u"new   body  \r\n\r\n\r\n\r\nend\r\n");
    commands_.save();
    EXPECT_EQ(window_.lstHeads.texts(), (Texts{u"cherry", u"it'syellow", u"apple"}));
    EXPECT_THAT(window_.lstHeads.selected(), ElementsAre(1));
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD, VLTEXT FROM [Notes] WHERE ID=2"),
        ElementsAre(u"it'syellow|new body\r\n\r\nend"));
    EXPECT_FALSE(commands_.current().hasUnsavedChanges());
    EXPECT_THAT(window_.lblDate.text(), BeginsWith(std::u16string(u"20")));
    EXPECT_NE(window_.lblDate.text(), u"2002-01-01 10:00:00");
}

TEST_P(RecordCommandsTest, ANewRecordIsAddedWithItsHeadingSelected)
{
    commands_.current().clear();
    window_.txtShowWrap.type(u"first line\r\nsecond");
    commands_.save();
    expectScreen(
        {u"first line", u"cherry", u"banana", u"apple"}, {0}, u"first line", u"first line\r\nsecond");
    EXPECT_EQ(lastShown(), say(u"1 record added.", u"已添加 1 条记录"));
    EXPECT_EQ(commands_.current().id(), window_.lstHeads.datum(0));
    window_.txtShowWrap.type(u"changed");
    commands_.save();
    EXPECT_THAT(notes_.rows(u"SELECT COUNT(*) FROM [Notes]"), ElementsAre(u"4"));
    EXPECT_EQ(bodyOf(4), u"changed");
}

TEST_P(RecordCommandsTest, ARecordThatIsGoneIsAddedAgain)
{
    choose(1);
    notes_.run(u"UPDATE [Notes] SET VLLINK='C:\\a.txt' WHERE ID=2");
    commands_.current().load(2);
    EXPECT_EQ(window_.ucStatusRight.text(), u"C:\\a.txt");
    notes_.run(u"DELETE FROM [Notes] WHERE ID=2");
    window_.txtShowWrap.type(u"still here");
    commands_.save();
    EXPECT_EQ(commands_.current().id(), 4);
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD, VLTEXT, VLLINK FROM [Notes] WHERE ID=4"),
        ElementsAre(u"banana|still here|C:\\a.txt"));
    EXPECT_THAT(lastShown(), Holds(say(u"no longer existed", u"已不存在")));
    EXPECT_EQ(window_.lstHeads.datum(window_.lstHeads.selected().at(0)), 4);
    EXPECT_THAT(window_.lstHeads.data(), testing::Not(testing::Contains(2))) << "its old entry leads nowhere";
}

TEST_P(RecordCommandsTest, ARecordIsSavedWhereItCameFrom)
{
    notes_.run(u"CREATE TABLE [Other] (ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), VLDATE "
               u"DATETIME, VLLINK TEXT(255), VLMD5 TEXT(32))");
    notes_.run(u"INSERT INTO [Other] (VLHEAD, VLTEXT) VALUES ('other', 'body of other')");
    choose(2);
    ASSERT_EQ(commands_.current().id(), 1);
    notes_->dbTable = u"Other";
    ASSERT_TRUE(dbQueryWithoutBoxes());
    window_.txtType.type(u"renamed");
    window_.txtShowWrap.type(u"changed");
    commands_.save();
    EXPECT_EQ(bodyOf(1), u"changed");
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD, VLTEXT FROM [Other]"), ElementsAre(u"other|body of other"));
    EXPECT_EQ(window_.lstHeads.texts(), (Texts{u"other"})) << "its ID is another record's here";

    notes_.run(u"DELETE FROM [Notes] WHERE ID=1");
    window_.txtShowWrap.type(u"changed again");
    commands_.save();
    EXPECT_EQ(bodyOf(4), u"changed again");
    EXPECT_EQ(window_.lstHeads.texts(), (Texts{u"other"}));
}

TEST_P(RecordCommandsTest, PasteNewTakesTheClipboardFirst)
{
    platform::setClipboardText(u"from the clipboard\r\nmore");
    window_.chkSort.setCaption(u"C:\\it's.txt");
    commands_.pasteNew();
    expectScreen({u"from the clipboard", u"cherry", u"banana", u"apple"}, {0}, u"from the clipboard",
        u"from the clipboard\r\nmore");
    EXPECT_EQ(lastShown(), say(u"1 record created from the Clibboard.", u"已从剪粘板新增 1 条记录"));
    EXPECT_EQ(window_.ucStatusRight.text(), u"C:\\it's.txt");
    EXPECT_EQ(window_.chkSort.caption(), u"") << "taken once";

    platform::setClipboardText(u"");
    commands_.pasteNew();
    EXPECT_THAT(window_.dialogs.asked(), IsEmpty());
    expectScreen({u"", u"from the clipboard", u"cherry", u"banana", u"apple"}, {0}, u"", u"");
    EXPECT_EQ(lastShown(), say(u"1 record created.", u"已新建 1 条记录"));
    EXPECT_EQ(window_.ucStatusRight.text(), u"");
}

TEST_P(RecordCommandsTest, PasteNewAsksInItsOwnWordsForANewRecord)
{
    window_.txtShowWrap.type(u"changed");
    window_.dialogs.answerNext(Answer::No);
    commands_.pasteNew();
    EXPECT_THAT(window_.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));

    const std::u16string question = say(u"Save a new snippet? (Yes/No)", u"是否保存当前记录? (Yes/No)");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        const Texts before = notes_.rows(u"SELECT ID FROM [Notes]");
        commands_.current().clear();
        window_.txtShowWrap.type(u"typed in");
        window_.dialogs.answerNext(answer);
        commands_.pasteNew();
        EXPECT_THAT(window_.dialogs.asked(), ElementsAre(question));
        const std::size_t more = answer == Answer::Yes ? 2 : 1;
        EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Notes]").size(), before.size() + more);
    }
}

TEST_P(RecordCommandsTest, CaptureDoesNothingWithoutAText)
{
    window_.txtShowWrap.type(u"changed");
    commands_.capture();
    EXPECT_THAT(window_.dialogs.asked(), IsEmpty());
    EXPECT_EQ(window_.lstHeads.count(), 3);
    platform::setClipboardText(u"text");
    window_.dialogs.answerNext(Answer::Yes);
    commands_.capture();
    EXPECT_EQ(bodyOf(3), u"changed");
    EXPECT_EQ(window_.txtShowWrap.text(), u"text");
}

TEST_P(RecordCommandsTest, DuplicateIsListedWithItsSource)
{
    choose(1);
    commands_.duplicate();
    EXPECT_EQ(window_.lstHeads.texts(), (Texts{u"cherry", u"banana", u"banana", u"apple"}));
    EXPECT_THAT(notes_.rows(u"SELECT VLTEXT FROM [Notes] WHERE ID=4"), ElementsAre(u"body of banana"));
    window_.txtShowWrap.type(u"changed");
    window_.dialogs.answerNext(Answer::Yes);
    commands_.duplicate();
    EXPECT_THAT(notes_.rows(u"SELECT VLTEXT FROM [Notes] WHERE ID=5"), ElementsAre(u"changed"));
}

struct DeleteCase {
    const char* why;
    std::vector<int> selected;
    Texts left;
    int next; // the entry that is selected then; -1: none is left
};

const DeleteCase kDeletes[] = {
    {"the one that follows takes the place", {0}, {u"banana", u"apple"}, 0},
    {"of the last one the one before", {2}, {u"cherry", u"banana"}, 1},
    {"of several the place of the first", {0, 2}, {u"banana"}, 0},
    {"the place in the middle", {1}, {u"cherry", u"apple"}, 1},
    {"nothing is left", {0, 1, 2}, {}, -1},
};

TEST_P(RecordCommandsTest, DeleteAsksAndSelectsTheNeighbour)
{
    const std::u16string question =
        say(u"Are you sure to delete selected records?     (Yes/No)", u"确定删除选定的记录?    (Yes/No)");
    for (const DeleteCase& c : kDeletes) {
        SCOPED_TRACE(c.why);
        notes_.run(u"DELETE FROM [Notes]");
        for (const char16_t* const title : {u"apple", u"banana", u"cherry"})
            ASSERT_TRUE(addRecord(*notes_, {title, std::nullopt, u""}));
        commands_.reload();
        window_.lstHeads.click(c.selected);
        commands_.selectHeading();
        for (const Answer answer : {Answer::No, Answer::Yes}) {
            window_.dialogs.answerNext(answer);
            commands_.deleteSelected();
            EXPECT_THAT(window_.dialogs.asked(), ElementsAre(question));
            if (answer == Answer::No) {
                EXPECT_EQ(window_.lstHeads.count(), 3);
            }
        }
        const std::u16string text = c.next < 0 ? u"" : c.left[static_cast<std::size_t>(c.next)];
        const auto selected = c.next < 0 ? std::vector<int>() : std::vector<int>{c.next};
        expectScreen(c.left, selected, text, text);
        EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Notes]").size(), c.left.size());
        const std::u16string count = text::decimal(static_cast<int>(c.selected.size()));
        EXPECT_EQ(lastShown(), say(count + u" record(s) deleted.", u"已删除 " + count + u" 条记录"));
    }
}

TEST_P(RecordCommandsTest, EasyDeleteAsksNothing)
{
    window_.mnu_ezdel.setChecked(true);
    window_.txtShowWrap.type(u"changed, and deleted knowingly");
    commands_.deleteSelected();
    EXPECT_THAT(window_.dialogs.asked(), IsEmpty());
    expectScreen({u"banana", u"apple"}, {0}, u"banana", u"body of banana");
}

TEST_P(RecordCommandsTest, DeletingOthersKeepsUnsavedChanges)
{
    window_.mnu_ezdel.setChecked(true);
    window_.txtShowWrap.type(u"changed");
    window_.lstHeads.click({1, 2}); // the shown record is not among them
    window_.dialogs.answerNext(Answer::Yes);
    commands_.deleteSelected();
    EXPECT_THAT(window_.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    EXPECT_EQ(window_.lstHeads.texts(), (Texts{u"cherry"}));
    EXPECT_EQ(bodyOf(3), u"changed");

    window_.lstHeads.select(-1);
    commands_.deleteSelected();
    EXPECT_EQ(window_.lstHeads.count(), 1) << "nothing selected, nothing deleted";
}

TEST_P(RecordCommandsTest, ClosingAsksWithThreeAnswers)
{
    EXPECT_TRUE(commands_.mayClose());
    window_.txtShowWrap.type(u"changed");
    const std::pair<Answer, bool> cases[] = {
        {Answer::Cancel, false}, {Answer::No, true}, {Answer::Yes, true}};
    for (const auto& [answer, closes] : cases) {
        window_.dialogs.answerNext(answer);
        EXPECT_EQ(commands_.mayClose(), closes);
        EXPECT_THAT(window_.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No/Cancel)")));
        EXPECT_EQ(window_.txtShowWrap.text(), u"changed");
        EXPECT_EQ(bodyOf(3), answer == Answer::Yes ? u"changed" : u"body of cherry");
    }
}

} // namespace
} // namespace vellums

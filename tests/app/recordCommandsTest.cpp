#include "app/recordCommands.h"

#include "app/headingList.h"
#include "platform/clipboard.h"
#include "tests/support/windowNotebook.h"
#include "text/decimal.h"

#include <gmock/gmock.h>

#include <functional>
#include <utility>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::u16string>;

// Longer than a title may be, so that saving fails.
const std::u16string kTooLong(256, u'x');

// Three records: 3 "cherry" is the newest, then 2 "banana", 1 "apple". The parameter: the interface is
// Chinese.
class RecordCommandsTest : public testing::TestWithParam<bool>, protected tests::WindowNotebook {
protected:
    RecordCommandsTest()
        : WindowNotebook(GetParam())
    {
        platform::setClipboardText(u"");
        addFruits();
        offerFields();
        records.start();
    }

    std::u16string bodyOf(std::int32_t id)
    {
        const Texts rows = notes.rows(u"SELECT VLTEXT FROM [Notes] WHERE ID=" + text::decimal(id));
        return rows.empty() ? u"(gone)" : rows.front();
    }
    // What is on the screen: the titles of the list, the selected entries, the boxes.
    void expectScreen(const Texts& titles, const std::vector<int>& selected, const std::u16string& title,
        const std::u16string& body)
    {
        EXPECT_EQ(window.lstHeads.texts(), titles);
        EXPECT_EQ(window.lstHeads.selected(), selected);
        EXPECT_EQ(window.txtType.text(), title);
        EXPECT_EQ(window.txtShowWrap.text(), body);
    }
    // The list follows a switch of tables before the boxes do.
    bool dbQueryWithoutBoxes() { return dbQuery(*notes, ports.list, ports.search); }
    void choose(int entry)
    {
        window.lstHeads.click({entry});
        records.selectHeading();
    }
};

INSTANTIATE_TEST_SUITE_P(Languages, RecordCommandsTest, testing::Bool(),
    [](const auto& test) { return test.param ? "Chinese" : "English"; });

TEST_P(RecordCommandsTest, StartShowsTheNewestRecordAndTheCount)
{
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_EQ(window.caption.text(), u"Vellums - <notes.mdb - Notes>");
    EXPECT_EQ(window.lblDate.text(), u"2003-01-01 10:00:00");
    EXPECT_EQ(
        lastShown(), say(u"3 records found in notes.mdb - Notes.", u"搜索到 3 条记录 (notes.mdb - Notes)"));
    EXPECT_FALSE(records.current().hasUnsavedChanges());
}

TEST_P(RecordCommandsTest, MomentsComeInTheirOrder)
{
    Texts happened;
    moments.tableOpened.add([&] { happened.push_back(u"opened"); });
    moments.listFilled.add([&] { happened.push_back(u"filled " + lastShown()); });
    window.txtKey.type(u"app");
    records.start();
    EXPECT_THAT(happened,
        ElementsAre(u"opened",
            u"filled " +
                say(u"1 record found in notes.mdb - Notes.", u"搜索到 1 条记录 (notes.mdb - Notes)")));
    records.search();
    EXPECT_EQ(happened.size(), 2u) << "a search fills no digests";
    records.reload();
    EXPECT_EQ(happened.size(), 3u);
}

TEST_P(RecordCommandsTest, SearchCountsWhatItFinds)
{
    window.txtKey.type(u" of*APPLE ");
    records.search();
    expectScreen({u"apple"}, {0}, u"apple", u"body of apple");
    EXPECT_EQ(
        lastShown(), say(u"1 record found in notes.mdb - Notes.", u"搜索到 1 条记录 (notes.mdb - Notes)"));
    window.txtKey.type(u"it's nowhere");
    records.search();
    expectScreen({}, {}, u"", u"");
    EXPECT_LT(records.current().id(), 0);
    EXPECT_EQ(window.lblDate.text(), u"");
    EXPECT_EQ(
        lastShown(), say(u"0 record found in notes.mdb - Notes.", u"搜索到 0 条记录 (notes.mdb - Notes)"));
}

TEST_P(RecordCommandsTest, SearchAsksAboutUnsavedChanges)
{
    window.txtKey.type(u"banana");
    window.txtShowWrap.type(u"changed once");
    window.dialogs.answerNext(Answer::No);
    records.search();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    expectScreen({u"banana"}, {0}, u"banana", u"body of banana");
    EXPECT_EQ(bodyOf(3), u"body of cherry");

    window.txtType.type(u"banana split"); // a changed title counts, too
    window.dialogs.answerNext(Answer::Yes);
    records.search();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    expectScreen({u"banana split"}, {0}, u"banana split", u"body of banana");
    records.search();
    EXPECT_THAT(window.dialogs.asked(), IsEmpty());
}

// Whatever replaces the text stops when the changes cannot be saved.
TEST_P(RecordCommandsTest, AFailedSaveStopsEverything)
{
    const std::pair<const char*, std::function<void()>> steps[] = {
        {"search", [&] { records.search(); }},
        {"reload", [&] { records.reload(); }},
        {"duplicate", [&] { records.duplicate(); }},
        {"paste new", [&] { records.pasteNew(); }},
        {"capture", [&] { records.capture(); }},
        {"another heading", [&] { choose(2); }},
        {"close", [&] { EXPECT_FALSE(records.mayClose()); }},
    };
    platform::setClipboardText(u"from the clipboard");
    window.txtKey.type(u"apple");
    window.txtType.type(kTooLong);
    window.txtShowWrap.type(u"precious");
    for (const auto& [name, step] : steps) {
        SCOPED_TRACE(name);
        window.dialogs.answerNext(Answer::Yes);
        step();
        expectScreen({u"cherry", u"banana", u"apple"}, {0}, kTooLong, u"precious");
        EXPECT_EQ(records.current().id(), 3);
        EXPECT_TRUE(lastShown().starts_with(u"modRecord - "));
    }
    EXPECT_THAT(notes.rows(u"SELECT COUNT(*) FROM [Notes]"), ElementsAre(u"3"));
    records.save();
    EXPECT_EQ(window.txtShowWrap.text(), u"precious");
    EXPECT_TRUE(records.current().hasUnsavedChanges());
}

TEST_P(RecordCommandsTest, AFailedQueryLeavesListAndBoxes)
{
    notes->dbTable = u"Missing";
    window.txtKey.type(u"apple");
    records.search();
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_TRUE(lastShown().starts_with(u"dbQuery: "));
    EXPECT_EQ(lastShown().back(), u')');

    notes->dbTable = u"Notes";
    for (std::size_t i = 0; i < window.mnu_AvailFields.size(); ++i)
        window.mnu_AvailFields.set(i, {u"", window.mnu_AvailFields.at(i).tag, false, false});
    records.search();
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_TRUE(lastShown().starts_with(u"dbQuery: "));
}

TEST_P(RecordCommandsTest, AnotherHeadingAsksWithThreeAnswers)
{
    choose(1);
    expectScreen({u"cherry", u"banana", u"apple"}, {1}, u"banana", u"body of banana");
    EXPECT_THAT(window.dialogs.asked(), IsEmpty());

    window.txtShowWrap.type(u"changed");
    window.dialogs.answerNext(Answer::Cancel);
    choose(2);
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No/Cancel)")));
    expectScreen({u"cherry", u"banana", u"apple"}, {1}, u"banana", u"changed");
    EXPECT_EQ(bodyOf(2), u"body of banana");

    window.dialogs.answerNext(Answer::Yes);
    choose(2);
    expectScreen({u"cherry", u"banana", u"apple"}, {2}, u"apple", u"body of apple");
    EXPECT_EQ(bodyOf(2), u"changed");

    window.txtShowWrap.type(u"changed again");
    window.dialogs.answerNext(Answer::No);
    choose(0);
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
    EXPECT_EQ(bodyOf(1), u"body of apple");
    choose(0);
    EXPECT_EQ(window.dialogs.asked().size(), 2u);
}

TEST_P(RecordCommandsTest, AHeadingWhoseRecordIsGoneKeepsTheShownOne)
{
    notes.run(u"DELETE FROM [Notes] WHERE ID=1");
    choose(2);
    EXPECT_TRUE(lastShown().starts_with(u"getRecText - 1 > "));
    // The selected entry is the shown record: the next command must not meet another one.
    expectScreen({u"cherry", u"banana", u"apple"}, {0}, u"cherry", u"body of cherry");
}

TEST_P(RecordCommandsTest, SavingANewRecordBeforeAnotherHeadingKeepsTheChosenOne)
{
    records.current().clear();
    window.lstHeads.select(-1);
    window.txtShowWrap.type(u"typed in");
    window.dialogs.answerNext(Answer::Yes);
    choose(1);
    expectScreen({u"typed in", u"cherry", u"banana", u"apple"}, {2}, u"banana", u"body of banana");
}

TEST_P(RecordCommandsTest, SaveKeepsTheSelectionAndRenamesTheHeading)
{
    choose(1);
    window.txtType.type(u"it's\r\nyellow");
    window.txtShowWrap.type(u"new   body  \r\n\r\n\r\n\r\nend\r\n");
    records.save();
    EXPECT_EQ(window.lstHeads.texts(), (Texts{u"cherry", u"it'syellow", u"apple"}));
    EXPECT_THAT(window.lstHeads.selected(), ElementsAre(1));
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD, VLTEXT FROM [Notes] WHERE ID=2"),
        ElementsAre(u"it'syellow|new body\r\n\r\nend"));
    EXPECT_FALSE(records.current().hasUnsavedChanges());
    EXPECT_TRUE(window.lblDate.text().starts_with(u"20"));
    EXPECT_NE(window.lblDate.text(), u"2002-01-01 10:00:00");
}

TEST_P(RecordCommandsTest, ANewRecordIsAddedWithItsHeadingSelected)
{
    records.current().clear();
    window.txtShowWrap.type(u"first line\r\nsecond");
    records.save();
    expectScreen(
        {u"first line", u"cherry", u"banana", u"apple"}, {0}, u"first line", u"first line\r\nsecond");
    EXPECT_EQ(lastShown(), say(u"1 record added.", u"已添加 1 条记录"));
    EXPECT_EQ(records.current().id(), window.lstHeads.datum(0));
    window.txtShowWrap.type(u"changed");
    records.save();
    EXPECT_THAT(notes.rows(u"SELECT COUNT(*) FROM [Notes]"), ElementsAre(u"4"));
    EXPECT_EQ(bodyOf(4), u"changed");
}

TEST_P(RecordCommandsTest, ARecordThatIsGoneIsAddedAgain)
{
    choose(1);
    notes.run(u"UPDATE [Notes] SET VLLINK='C:\\a.txt' WHERE ID=2");
    records.current().load(2);
    EXPECT_EQ(window.ucStatusRight.text(), u"C:\\a.txt");
    notes.run(u"DELETE FROM [Notes] WHERE ID=2");
    window.txtShowWrap.type(u"still here");
    records.save();
    EXPECT_EQ(records.current().id(), 4);
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD, VLTEXT, VLLINK FROM [Notes] WHERE ID=4"),
        ElementsAre(u"banana|still here|C:\\a.txt"));
    EXPECT_NE(lastShown().find(say(u"no longer existed", u"已不存在")), std::u16string::npos);
    EXPECT_EQ(window.lstHeads.datum(window.lstHeads.selected().at(0)), 4);
    EXPECT_THAT(window.lstHeads.data(), testing::Not(testing::Contains(2))) << "its old entry leads nowhere";
}

TEST_P(RecordCommandsTest, ARecordIsSavedWhereItCameFrom)
{
    notes.run(u"CREATE TABLE [Other] (ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), VLDATE "
              u"DATETIME, VLLINK TEXT(255), VLMD5 TEXT(32))");
    notes.run(u"INSERT INTO [Other] (VLHEAD, VLTEXT) VALUES ('other', 'body of other')");
    choose(2);
    ASSERT_EQ(records.current().id(), 1);
    notes->dbTable = u"Other";
    ASSERT_TRUE(dbQueryWithoutBoxes());
    window.txtType.type(u"renamed");
    window.txtShowWrap.type(u"changed");
    records.save();
    EXPECT_EQ(bodyOf(1), u"changed");
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD, VLTEXT FROM [Other]"), ElementsAre(u"other|body of other"));
    EXPECT_EQ(window.lstHeads.texts(), (Texts{u"other"})) << "its ID is another record's here";

    notes.run(u"DELETE FROM [Notes] WHERE ID=1");
    window.txtShowWrap.type(u"changed again");
    records.save();
    EXPECT_EQ(bodyOf(4), u"changed again");
    EXPECT_EQ(window.lstHeads.texts(), (Texts{u"other"}));
}

TEST_P(RecordCommandsTest, PasteNewTakesTheClipboardFirst)
{
    platform::setClipboardText(u"from the clipboard\r\nmore");
    window.chkSort.setCaption(u"C:\\it's.txt");
    records.pasteNew();
    expectScreen({u"from the clipboard", u"cherry", u"banana", u"apple"}, {0}, u"from the clipboard",
        u"from the clipboard\r\nmore");
    EXPECT_EQ(lastShown(), say(u"1 record created from the Clibboard.", u"已从剪粘板新增 1 条记录"));
    EXPECT_EQ(window.ucStatusRight.text(), u"C:\\it's.txt");
    EXPECT_EQ(window.chkSort.caption(), u"") << "taken once";

    platform::setClipboardText(u"");
    records.pasteNew();
    EXPECT_THAT(window.dialogs.asked(), IsEmpty());
    expectScreen({u"", u"from the clipboard", u"cherry", u"banana", u"apple"}, {0}, u"", u"");
    EXPECT_EQ(lastShown(), say(u"1 record created.", u"已新建 1 条记录"));
    EXPECT_EQ(window.ucStatusRight.text(), u"");
}

TEST_P(RecordCommandsTest, PasteNewAsksInItsOwnWordsForANewRecord)
{
    window.txtShowWrap.type(u"changed");
    window.dialogs.answerNext(Answer::No);
    records.pasteNew();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));

    const std::u16string question = say(u"Save a new snippet? (Yes/No)", u"是否保存当前记录? (Yes/No)");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        const Texts before = notes.rows(u"SELECT ID FROM [Notes]");
        records.current().clear();
        window.txtShowWrap.type(u"typed in");
        window.dialogs.answerNext(answer);
        records.pasteNew();
        EXPECT_THAT(window.dialogs.asked(), ElementsAre(question));
        const std::size_t more = answer == Answer::Yes ? 2 : 1;
        EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes]").size(), before.size() + more);
    }
}

TEST_P(RecordCommandsTest, CaptureDoesNothingWithoutAText)
{
    window.txtShowWrap.type(u"changed");
    records.capture();
    EXPECT_THAT(window.dialogs.asked(), IsEmpty());
    EXPECT_EQ(window.lstHeads.count(), 3);
    platform::setClipboardText(u"text");
    window.dialogs.answerNext(Answer::Yes);
    records.capture();
    EXPECT_EQ(bodyOf(3), u"changed");
    EXPECT_EQ(window.txtShowWrap.text(), u"text");
}

TEST_P(RecordCommandsTest, DuplicateIsListedWithItsSource)
{
    choose(1);
    records.duplicate();
    EXPECT_EQ(window.lstHeads.texts(), (Texts{u"cherry", u"banana", u"banana", u"apple"}));
    EXPECT_THAT(notes.rows(u"SELECT VLTEXT FROM [Notes] WHERE ID=4"), ElementsAre(u"body of banana"));
    window.txtShowWrap.type(u"changed");
    window.dialogs.answerNext(Answer::Yes);
    records.duplicate();
    EXPECT_THAT(notes.rows(u"SELECT VLTEXT FROM [Notes] WHERE ID=5"), ElementsAre(u"changed"));
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
        notes.run(u"DELETE FROM [Notes]");
        for (const char16_t* const title : {u"apple", u"banana", u"cherry"})
            ASSERT_TRUE(addRecord(*notes, {title, u"", u""}));
        records.reload();
        window.lstHeads.click(c.selected);
        records.selectHeading();
        for (const Answer answer : {Answer::No, Answer::Yes}) {
            window.dialogs.answerNext(answer);
            records.deleteSelected();
            EXPECT_THAT(window.dialogs.asked(), ElementsAre(question));
            if (answer == Answer::No) {
                EXPECT_EQ(window.lstHeads.count(), 3);
            }
        }
        const std::u16string text = c.next < 0 ? u"" : c.left[static_cast<std::size_t>(c.next)];
        const auto selected = c.next < 0 ? std::vector<int>() : std::vector<int>{c.next};
        expectScreen(c.left, selected, text, text);
        EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes]").size(), c.left.size());
        const std::u16string count = text::decimal(static_cast<int>(c.selected.size()));
        EXPECT_EQ(lastShown(), say(count + u" record(s) deleted.", u"已删除 " + count + u" 条记录"));
    }
}

TEST_P(RecordCommandsTest, EasyDeleteAsksNothing)
{
    window.mnu_ezdel.setChecked(true);
    window.txtShowWrap.type(u"changed, and deleted knowingly");
    records.deleteSelected();
    EXPECT_THAT(window.dialogs.asked(), IsEmpty());
    expectScreen({u"banana", u"apple"}, {0}, u"banana", u"body of banana");
}

TEST_P(RecordCommandsTest, DeletingOthersKeepsUnsavedChanges)
{
    window.mnu_ezdel.setChecked(true);
    window.txtShowWrap.type(u"changed");
    window.lstHeads.click({1, 2}); // the shown record is not among them
    window.dialogs.answerNext(Answer::Yes);
    records.deleteSelected();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    EXPECT_EQ(window.lstHeads.texts(), (Texts{u"cherry"}));
    EXPECT_EQ(bodyOf(3), u"changed");

    window.lstHeads.select(-1);
    records.deleteSelected();
    EXPECT_EQ(window.lstHeads.count(), 1) << "nothing selected, nothing deleted";
}

TEST_P(RecordCommandsTest, ClosingAsksWithThreeAnswers)
{
    EXPECT_TRUE(records.mayClose());
    window.txtShowWrap.type(u"changed");
    const std::pair<Answer, bool> cases[] = {
        {Answer::Cancel, false}, {Answer::No, true}, {Answer::Yes, true}};
    for (const auto& [answer, closes] : cases) {
        window.dialogs.answerNext(answer);
        EXPECT_EQ(records.mayClose(), closes);
        EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No/Cancel)")));
        EXPECT_EQ(window.txtShowWrap.text(), u"changed");
        EXPECT_EQ(bodyOf(3), answer == Answer::Yes ? u"changed" : u"body of cherry");
    }
}

} // namespace
} // namespace vellums

#include "app/listCommands.h"

#include "platform/files.h"
#include "store/records/records.h"
#include "tests/support/failingProvider.h"
#include "tests/support/windowNotebook.h"
#include "text/pieces.h"

#include <gmock/gmock.h>

#include <numeric>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Records 1 "apple", 2 "banana", 3 "cherry", the newest first in the list; the tables Notes, Other (a
// snippet table) and Plain (none). The parameter: the interface is Chinese.
class ListCommandsTest : public testing::TestWithParam<bool>, protected tests::WindowNotebook {
protected:
    ListCommandsTest()
        : WindowNotebook(GetParam())
    {
        notes.run(u"SELECT * INTO [Other] FROM [Notes]");
        notes.run(u"CREATE TABLE [Plain] (ID COUNTER, A MEMO)");
        addFruits();
        offerFields();
        records.start();
        commands_.rebuildMenu();
    }
    void clickOn(const std::vector<int>& entries)
    {
        window.lstHeads.click(entries);
        records.selectHeading();
    }

    tests::MemoryMenuItems mnu_avtables_;
    tests::MemorySwitch mnu_moverec_;
    ListCommands commands_{*notes, window.progress, window.dialogs, records, {mnu_avtables_, mnu_moverec_}};
};

INSTANTIATE_TEST_SUITE_P(Languages, ListCommandsTest, testing::Bool(),
    [](const auto& test) { return test.param ? "Chinese" : "English"; });

TEST_P(ListCommandsTest, TheMenuOffersTheOtherSnippetTables)
{
    ASSERT_EQ(mnu_avtables_.size(), 1u);
    EXPECT_EQ(mnu_avtables_.at(0).caption, u"Other");
    EXPECT_TRUE(mnu_avtables_.at(0).visible);
    EXPECT_TRUE(mnu_moverec_.enabled());
    notes.run(u"SELECT * INTO [R&D - 2] FROM [Notes] WHERE 1=2");
    commands_.rebuildMenu();
    ASSERT_EQ(mnu_avtables_.size(), 2u);
    EXPECT_EQ(mnu_avtables_.at(1).tag, u"R&D - 2");
    notes.run(u"DROP TABLE [R&D - 2]");
    notes.run(u"DROP TABLE [Other]");
    commands_.rebuildMenu();
    EXPECT_FALSE(mnu_avtables_.at(0).visible);
    EXPECT_FALSE(mnu_avtables_.at(1).visible);
    EXPECT_FALSE(mnu_moverec_.enabled());
    clickOn({0});
    commands_.moveTo(0); // a hidden one is no target
    commands_.moveTo(7);
    EXPECT_EQ(window.lstHeads.count(), 3);
}

TEST_P(ListCommandsTest, StickingBringsToTheTopAndBack)
{
    clickOn({2});
    commands_.stick();
    EXPECT_THAT(window.lstHeads.texts(), ElementsAre(u"apple", u"cherry", u"banana"));
    EXPECT_THAT(window.lstHeads.selected(), ElementsAre(0)) << "the shown record stays selected";
    EXPECT_EQ(records.current().id(), 1);

    window.txtType.type(u"apple pie"); // a later save keeps the stamp
    records.save();
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD FROM [Notes] WHERE LEN(VLTYPE)=14"), ElementsAre(u"apple pie"));

    commands_.unstick();
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE<>''"), IsEmpty());
    records.save(); // and does not bring it back
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE<>''"), IsEmpty());
    EXPECT_THAT(window.dialogs.asked(), IsEmpty());
}

TEST_P(ListCommandsTest, UnstickingGivesTheDateOfTheSource)
{
    const std::u16string source = notes.folder().write(u"it's.txt", "text");
    notes.run(u"UPDATE [Notes] SET VLLINK='" + text::replaceAll(source, u"'", u"''") +
        u"', VLTYPE='20200101000000' WHERE ID=1");
    records.reload();
    EXPECT_EQ(records.current().id(), 1);
    commands_.unstick();
    EXPECT_EQ(records.current().id(), 1);
    EXPECT_EQ(window.lblDate.text(), dateText(platform::fileModified(source)));
}

TEST_P(ListCommandsTest, UnsavedChangesAreAskedAboutFirst)
{
    clickOn({0});
    window.txtShowWrap.type(u"changed");
    window.dialogs.answerNext(Answer::Yes);
    commands_.moveTo(0);
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion(u" (Yes/No)")));
    EXPECT_THAT(notes.rows(u"SELECT VLTEXT FROM [Other]"), ElementsAre(u"changed"));

    window.txtType.type(std::u16string(256, u'x')); // cannot be saved
    for (const bool stick : {true, false}) {
        window.dialogs.answerNext(Answer::Yes);
        stick ? commands_.stick() : commands_.copyTo(0);
        EXPECT_EQ(lastShown().substr(0, 12), u"modRecord - ");
    }
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE<>''"), IsEmpty());
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Other]").size(), 1u);
    EXPECT_EQ(window.txtType.text().size(), 256u);
}

TEST_P(ListCommandsTest, MovingTakesRecordsOutOfTheListAndSaysHowMany)
{
    clickOn({0, 1});
    commands_.moveTo(0);
    EXPECT_EQ(lastShown(), say(u"2 record(s) moved to Other", u"2 条记录已移动至 Other"));
    EXPECT_THAT(window.lstHeads.texts(), ElementsAre(u"apple"));
    EXPECT_EQ(window.txtShowWrap.text(), u"body of apple");
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD, VLTEXT FROM [Other] WHERE VLDATE>45000 ORDER BY ID"),
        ElementsAre(u"cherry|body of cherry", u"banana|body of banana"));
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Notes]"), ElementsAre(u"1"));
    commands_.moveTo(0);
    EXPECT_EQ(window.lstHeads.count(), 0);
    EXPECT_LT(records.current().id(), 0);
    EXPECT_EQ(window.txtShowWrap.text(), u"");
    commands_.moveTo(0); // nothing is selected
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Other]").size(), 3u);
}

TEST_P(ListCommandsTest, CopyingLeavesTheRecords)
{
    clickOn({1, 2});
    commands_.copyTo(0);
    EXPECT_EQ(lastShown(), say(u"2 record(s) copied to Other", u"2 条记录已复制至 Other"));
    EXPECT_EQ(window.lstHeads.count(), 3);
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Other]").size(), 2u);
}

TEST_P(ListCommandsTest, OnlyWhatWasCopiedIsDeleted)
{
    clickOn({0});
    notes.run(u"DROP TABLE [Other]"); // by another program
    commands_.moveTo(0);
    EXPECT_TRUE(notes.outcome().starts_with(say(u"Failed to copy records. ", u"记录复制失败。 ")));
    EXPECT_EQ(lastShown().back(), u')') << "the reason ends with its number";
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes]").size(), 3u);

    // The second record does not fit into the target.
    notes.run(
        u"CREATE TABLE [Other] (ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(1), VLDATE DATETIME, "
        u"VLLINK TEXT(255), VLMD5 TEXT(32))");
    notes.run(u"UPDATE [Notes] SET VLTYPE='20200101000000' WHERE ID=2");
    clickOn({0, 1, 2});
    commands_.moveTo(0);
    EXPECT_TRUE(notes.outcome().starts_with(say(u"Failed to copy records. ", u"记录复制失败。 ")));
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD FROM [Other]"), ElementsAre(u"cherry"));
    EXPECT_THAT(notes.rows(u"SELECT VLHEAD FROM [Notes] ORDER BY ID"), ElementsAre(u"apple", u"banana"));
    EXPECT_THAT(window.lstHeads.texts(), ElementsAre(u"banana", u"apple"));
}

TEST_P(ListCommandsTest, WhatCannotBeDeletedIsTold)
{
    tests::FailingProvider provider;
    notes->provider = &provider;
    provider.refuses = [](std::u16string_view sql, int) { return sql.starts_with(u"DELETE FROM [Notes]"); };
    clickOn({0});
    commands_.moveTo(0);
    EXPECT_EQ(notes.outcome(),
        say(u"Failed to delete source records. ", u"源记录删除失败。 ") + u"Refused. (-2147467259)");
    EXPECT_EQ(window.lstHeads.count(), 3);
}

// What the shown record remembers follows the table also when not every record could be changed, so that
// its next save does not write the old stamp back.
TEST_P(ListCommandsTest, AfterAPartlyFailedStickASaveKeepsTheStamp)
{
    tests::FailingProvider provider;
    notes->provider = &provider;
    const auto stamp = [&] { return notes.rows(u"SELECT VLTYPE FROM [Notes] WHERE ID=3").front(); };
    clickOn({0, 1});
    EXPECT_EQ(records.current().id(), 2);
    clickOn({0});
    window.lstHeads.click({0, 1});
    provider.refuses = [](std::u16string_view sql, int) {
        return sql.starts_with(u"UPDATE") && sql.ends_with(u"ID=2");
    };
    commands_.stick();
    EXPECT_EQ(notes.outcome(), u"setStickyRecs - Refused. (-2147467259)");
    EXPECT_EQ(records.current().id(), 3);
    EXPECT_EQ(stamp().size(), 14u);
    window.txtType.type(u"changed");
    records.save();
    EXPECT_EQ(stamp().size(), 14u);

    // The list cannot be filled again either: the marks alone are read, and the boxes keep their text.
    window.lstHeads.click({0, 1, 2});
    provider.refuses = [](std::u16string_view sql, int) {
        return (sql.starts_with(u"UPDATE") && sql.ends_with(u"ID=2")) || sql.starts_with(u"SELECT TOP");
    };
    window.txtShowWrap.type(u"not saved yet");
    window.dialogs.answerNext(Answer::No);
    commands_.unstick();
    EXPECT_EQ(stamp(), u"");
    EXPECT_EQ(window.txtShowWrap.text(), u"not saved yet");
    provider.refuses = {};
    records.save();
    EXPECT_EQ(stamp(), u"");
}

TEST_P(ListCommandsTest, ManyRecordsAreNotTouchedWithoutACopyUnlessTheUserSaysSo)
{
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(addRecord(*notes, {u"x", u"x", u""}));
    records.reload();
    notes.folder().makeFolder(u"notes.mdb.bak");
    std::vector<int> all(11);
    std::iota(all.begin(), all.end(), 0);
    const auto question = [&] {
        const std::vector<std::u16string> asked = window.dialogs.asked();
        return asked.size() == 1 && asked[0].starts_with(say(u"No safety copy", u"无法备份")) &&
            asked[0].ends_with(u" (No/Yes)");
    };
    notes.outcome();
    clickOn(all);
    window.mnu_ezdel.setChecked(true);
    const auto refuse = [&](const std::function<void()>& command) {
        window.dialogs.answerNext(Answer::No);
        command();
        EXPECT_TRUE(question());
        EXPECT_EQ(notes.outcome(), u"");
        EXPECT_EQ(window.lstHeads.selected().size(), 11u);
    };
    refuse([&] { records.deleteSelected(); });
    refuse([&] { commands_.moveTo(0); });
    refuse([&] { commands_.stick(); });
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE=''").size(), 11u);
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Other]"), IsEmpty());

    window.dialogs.answerNext(Answer::Yes);
    commands_.moveTo(0);
    EXPECT_TRUE(question());
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Other]").size(), 11u);
    EXPECT_FALSE(window.progress.isRunning());
}

TEST_P(ListCommandsTest, AStoppedDeletionTakesOnlyWhatIsGoneOutOfTheList)
{
    clickOn({0, 1, 2});
    window.mnu_ezdel.setChecked(true);
    window.progress.stopAt(2);
    records.deleteSelected();
    EXPECT_THAT(window.lstHeads.texts(), ElementsAre(u"apple"));
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes]").size(), 1u);
    EXPECT_EQ(notes.outcome(), say(u"2 record(s) deleted.", u"已删除 2 条记录"));
    EXPECT_EQ(records.current().id(), 1) << "the shown record is still there";
}

TEST_P(ListCommandsTest, ARecordThatIsGoneIsNeitherMovedNorCounted)
{
    clickOn({0, 1});
    notes.run(u"DELETE FROM [Notes] WHERE ID=2");
    commands_.moveTo(0);
    EXPECT_EQ(lastShown(), say(u"1 record(s) moved to Other", u"1 条记录已移动至 Other"));
}

} // namespace
} // namespace vellums

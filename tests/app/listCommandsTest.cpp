#include "app/listCommands.h"

#include "platform/clipboard.h"
#include "platform/files.h"
#include "store/records.h"
#include "tests/support/failingProvider.h"
#include "tests/support/memoryControls.h"
#include "tests/support/testNotebook.h"
#include "text/decimal.h"
#include "text/pieces.h"

#include <gmock/gmock.h>

#include <numeric>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Records 1 "apple", 2 "banana", 3 "cherry", the newest first in the list; the tables Notes, Other (a
// snippet table) and Plain (none). The parameter: the interface is Chinese.
class ListCommandsTest : public testing::TestWithParam<bool> {
protected:
    ListCommandsTest()
        : records_(*notes_, window_.ports(), moments_)
        , commands_(*notes_, window_.ports(), records_, {mnu_avtables_, mnu_moverec_})
    {
        notes_->chinese = GetParam();
        notes_.run(u"SELECT * INTO [Other] FROM [Notes]");
        notes_.run(u"CREATE TABLE [Plain] (ID COUNTER, A MEMO)");
        int year = 2001;
        for (const char16_t* const title : {u"apple", u"banana", u"cherry"}) {
            EXPECT_TRUE(addRecord(*notes_, {u"body of " + std::u16string(title), title, u""}));
            notes_.run(u"UPDATE [Notes] SET VLDATE='" + text::decimal(year) + u"-1-1' WHERE ID=" +
                text::decimal(year - 2000));
            ++year;
        }
        for (const char16_t* const column : {u"VLHEAD", u"VLTEXT", u"VLLINK"})
            window_.mnu_AvailFields.set(window_.mnu_AvailFields.size(), {u"", column, true, false});
        records_.start();
        commands_.rebuildMenu();
    }

    std::u16string say(std::u16string_view english, std::u16string_view chinese) const
    {
        return std::u16string(GetParam() ? chinese : english);
    }
    std::u16string lastShown() const { return notes_.shown().empty() ? u"" : notes_.shown().back(); }
    void clickOn(const std::vector<int>& entries)
    {
        window_.lstHeads.click(entries);
        records_.selectHeading();
    }

    tests::TestNotebook notes_;
    tests::MemoryWindow window_;
    tests::MemoryMenuItems mnu_avtables_;
    tests::MemorySwitch mnu_moverec_;
    Moments moments_;
    RecordCommands records_;
    ListCommands commands_;
};

INSTANTIATE_TEST_SUITE_P(Languages, ListCommandsTest, testing::Bool(),
    [](const auto& test) { return test.param ? "Chinese" : "English"; });

TEST_P(ListCommandsTest, TheMenuOffersTheOtherSnippetTables)
{
    ASSERT_EQ(mnu_avtables_.size(), 1u);
    EXPECT_EQ(mnu_avtables_.at(0).caption, u"Other");
    EXPECT_TRUE(mnu_avtables_.at(0).visible);
    EXPECT_TRUE(mnu_moverec_.enabled());
    notes_.run(u"SELECT * INTO [R&D - 2] FROM [Notes] WHERE 1=2");
    commands_.rebuildMenu();
    ASSERT_EQ(mnu_avtables_.size(), 2u);
    EXPECT_EQ(mnu_avtables_.at(1).tag, u"R&D - 2");
    notes_.run(u"DROP TABLE [R&D - 2]");
    notes_.run(u"DROP TABLE [Other]");
    commands_.rebuildMenu();
    EXPECT_FALSE(mnu_avtables_.at(0).visible);
    EXPECT_FALSE(mnu_avtables_.at(1).visible);
    EXPECT_FALSE(mnu_moverec_.enabled());
    clickOn({0});
    commands_.moveTo(0); // a hidden one is no target
    commands_.moveTo(7);
    EXPECT_EQ(window_.lstHeads.count(), 3);
}

TEST_P(ListCommandsTest, StickingBringsToTheTopAndBack)
{
    clickOn({2});
    commands_.stick();
    EXPECT_THAT(window_.lstHeads.texts(), ElementsAre(u"apple", u"cherry", u"banana"));
    EXPECT_THAT(window_.lstHeads.selected(), ElementsAre(0)) << "the shown record stays selected";
    EXPECT_EQ(records_.current().id(), 1);

    window_.txtType.type(u"apple pie"); // a later save keeps the stamp
    records_.save();
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Notes] WHERE LEN(VLTYPE)=14"), ElementsAre(u"apple pie"));

    commands_.unstick();
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE<>''"), IsEmpty());
    records_.save(); // and does not bring it back
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE<>''"), IsEmpty());
    EXPECT_THAT(window_.dialogs.asked(), IsEmpty());
}

TEST_P(ListCommandsTest, UnstickingGivesTheDateOfTheSource)
{
    const std::u16string source = notes_.folder().write(u"it's.txt", "text");
    notes_.run(u"UPDATE [Notes] SET VLLINK='" + text::replaceAll(source, u"'", u"''") +
        u"', VLTYPE='20200101000000' WHERE ID=1");
    records_.reload();
    EXPECT_EQ(records_.current().id(), 1);
    commands_.unstick();
    EXPECT_EQ(records_.current().id(), 1);
    EXPECT_EQ(window_.lblDate.text(), dateText(platform::fileModified(source)));
}

TEST_P(ListCommandsTest, UnsavedChangesAreAskedAboutFirst)
{
    const std::u16string question =
        say(u"Save changes to the current snippet?", u"是否保存当前记录所作修改?");
    clickOn({0});
    window_.txtShowWrap.type(u"changed");
    window_.dialogs.answerNext(Answer::Yes);
    commands_.moveTo(0);
    EXPECT_THAT(window_.dialogs.asked(), ElementsAre(question + u" (Yes/No)"));
    EXPECT_THAT(notes_.rows(u"SELECT VLTEXT FROM [Other]"), ElementsAre(u"changed"));

    window_.txtType.type(std::u16string(256, u'x')); // cannot be saved
    for (const bool stick : {true, false}) {
        window_.dialogs.answerNext(Answer::Yes);
        stick ? commands_.stick() : commands_.copyTo(0);
        EXPECT_EQ(lastShown().substr(0, 12), u"modRecord - ");
    }
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE<>''"), IsEmpty());
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Other]").size(), 1u);
    EXPECT_EQ(window_.txtType.text().size(), 256u);
}

TEST_P(ListCommandsTest, MovingTakesRecordsOutOfTheListAndSaysHowMany)
{
    clickOn({0, 1});
    commands_.moveTo(0);
    EXPECT_EQ(lastShown(), say(u"2 record(s) moved to Other", u"2 条记录已移动至 Other"));
    EXPECT_THAT(window_.lstHeads.texts(), ElementsAre(u"apple"));
    EXPECT_EQ(window_.txtShowWrap.text(), u"body of apple");
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD, VLTEXT FROM [Other] WHERE VLDATE>45000 ORDER BY ID"),
        ElementsAre(u"cherry|body of cherry", u"banana|body of banana"));
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [Notes]"), ElementsAre(u"1"));
    commands_.moveTo(0);
    EXPECT_EQ(window_.lstHeads.count(), 0);
    EXPECT_LT(records_.current().id(), 0);
    EXPECT_EQ(window_.txtShowWrap.text(), u"");
    commands_.moveTo(0); // nothing is selected
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Other]").size(), 3u);
}

TEST_P(ListCommandsTest, CopyingLeavesTheRecords)
{
    clickOn({1, 2});
    commands_.copyTo(0);
    EXPECT_EQ(lastShown(), say(u"2 record(s) copied to Other", u"2 条记录已复制至 Other"));
    EXPECT_EQ(window_.lstHeads.count(), 3);
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Other]").size(), 2u);
}

TEST_P(ListCommandsTest, OnlyWhatWasCopiedIsDeleted)
{
    clickOn({0});
    notes_.run(u"DROP TABLE [Other]"); // by another program
    commands_.moveTo(0);
    EXPECT_TRUE(notes_.outcome().starts_with(say(u"Failed to copy records. ", u"记录复制失败。 ")));
    EXPECT_EQ(lastShown().back(), u')') << "the reason ends with its number";
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Notes]").size(), 3u);

    // The second record does not fit into the target.
    notes_.run(
        u"CREATE TABLE [Other] (ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(1), VLDATE DATETIME, "
        u"VLLINK TEXT(255), VLMD5 TEXT(32))");
    notes_.run(u"UPDATE [Notes] SET VLTYPE='20200101000000' WHERE ID=2");
    clickOn({0, 1, 2});
    commands_.moveTo(0);
    EXPECT_TRUE(notes_.outcome().starts_with(say(u"Failed to copy records. ", u"记录复制失败。 ")));
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Other]"), ElementsAre(u"cherry"));
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Notes] ORDER BY ID"), ElementsAre(u"apple", u"banana"));
    EXPECT_THAT(window_.lstHeads.texts(), ElementsAre(u"banana", u"apple"));
}

TEST_P(ListCommandsTest, WhatCannotBeDeletedIsTold)
{
    tests::FailingProvider provider;
    notes_->provider = &provider;
    provider.refuses = [](std::u16string_view sql, int) { return sql.starts_with(u"DELETE FROM [Notes]"); };
    clickOn({0});
    commands_.moveTo(0);
    EXPECT_EQ(notes_.outcome(),
        say(u"Failed to delete source records. ", u"源记录删除失败。 ") + u"Refused. (-2147467259)");
    EXPECT_EQ(window_.lstHeads.count(), 3);
}

// What the shown record remembers follows the table also when not every record could be changed, so that
// its next save does not write the old stamp back.
TEST_P(ListCommandsTest, AfterAPartlyFailedStickASaveKeepsTheStamp)
{
    tests::FailingProvider provider;
    notes_->provider = &provider;
    const auto stamp = [&] { return notes_.rows(u"SELECT VLTYPE FROM [Notes] WHERE ID=3").front(); };
    clickOn({0, 1});
    EXPECT_EQ(records_.current().id(), 2);
    clickOn({0});
    window_.lstHeads.click({0, 1});
    provider.refuses = [](std::u16string_view sql, int) {
        return sql.starts_with(u"UPDATE") && sql.ends_with(u"ID=2");
    };
    commands_.stick();
    EXPECT_EQ(notes_.outcome(), u"setStickyRecs - Refused. (-2147467259)");
    EXPECT_EQ(records_.current().id(), 3);
    EXPECT_EQ(stamp().size(), 14u);
    window_.txtType.type(u"changed");
    records_.save();
    EXPECT_EQ(stamp().size(), 14u);

    // The list cannot be filled again either: the marks alone are read, and the boxes keep their text.
    window_.lstHeads.click({0, 1, 2});
    provider.refuses = [](std::u16string_view sql, int) {
        return (sql.starts_with(u"UPDATE") && sql.ends_with(u"ID=2")) || sql.starts_with(u"SELECT TOP");
    };
    window_.txtShowWrap.type(u"not saved yet");
    window_.dialogs.answerNext(Answer::No);
    commands_.unstick();
    EXPECT_EQ(stamp(), u"");
    EXPECT_EQ(window_.txtShowWrap.text(), u"not saved yet");
    provider.refuses = {};
    records_.save();
    EXPECT_EQ(stamp(), u"");
}

TEST_P(ListCommandsTest, ManyRecordsAreNotTouchedWithoutACopyUnlessTheUserSaysSo)
{
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(addRecord(*notes_, {u"x", u"x", u""}));
    records_.reload();
    notes_.folder().makeFolder(u"notes.mdb.bak");
    std::vector<int> all(11);
    std::iota(all.begin(), all.end(), 0);
    const auto question = [&] {
        const std::vector<std::u16string> asked = window_.dialogs.asked();
        return asked.size() == 1 && asked[0].starts_with(say(u"No safety copy", u"无法备份")) &&
            asked[0].ends_with(u" (No/Yes)");
    };
    notes_.outcome();
    clickOn(all);
    window_.mnu_ezdel.setChecked(true);
    const auto refuse = [&](const std::function<void()>& command) {
        window_.dialogs.answerNext(Answer::No);
        command();
        EXPECT_TRUE(question());
        EXPECT_EQ(notes_.outcome(), u"");
        EXPECT_EQ(window_.lstHeads.selected().size(), 11u);
    };
    refuse([&] { records_.deleteSelected(); });
    refuse([&] { commands_.moveTo(0); });
    refuse([&] { commands_.stick(); });
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE=''").size(), 11u);
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [Other]"), IsEmpty());

    window_.dialogs.answerNext(Answer::Yes);
    commands_.moveTo(0);
    EXPECT_TRUE(question());
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Other]").size(), 11u);
    EXPECT_FALSE(window_.progress.isRunning());
}

TEST_P(ListCommandsTest, AStoppedDeletionTakesOnlyWhatIsGoneOutOfTheList)
{
    clickOn({0, 1, 2});
    window_.mnu_ezdel.setChecked(true);
    window_.progress.stopAt(2);
    records_.deleteSelected();
    EXPECT_THAT(window_.lstHeads.texts(), ElementsAre(u"apple"));
    EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Notes]").size(), 1u);
    EXPECT_EQ(notes_.outcome(), say(u"2 record(s) deleted.", u"已删除 2 条记录"));
    EXPECT_EQ(records_.current().id(), 1) << "the shown record is still there";
}

TEST_P(ListCommandsTest, ARecordThatIsGoneIsNeitherMovedNorCounted)
{
    clickOn({0, 1});
    notes_.run(u"DELETE FROM [Notes] WHERE ID=2");
    commands_.moveTo(0);
    EXPECT_EQ(lastShown(), say(u"1 record(s) moved to Other", u"1 条记录已移动至 Other"));
}

} // namespace
} // namespace vellums

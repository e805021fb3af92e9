// Maintenance as the window starts it: through the gate.
#include "maint/maintenanceCommands.h"

#include "store/records/records.h"
#include "tests/support/windowNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;

class MaintenanceCommandsTest : public testing::Test, protected tests::WindowNotebook {
protected:
    MaintenanceCommandsTest()
    {
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(addRecord(*notes, {u"the same body", u"title", u""}));
        notes.run(u"UPDATE [Notes] SET VLDATE='2001-1-1' WHERE ID=2");
        offerFields();
        records.start();
    }
    void removeDuplicates()
    {
        gate.run([&](const Turn&) { commands.removeDuplicates(); });
    }
    std::vector<std::u16string> bodies() { return notes.rows(u"SELECT ID, VLTEXT FROM [Notes] ORDER BY ID"); }

    MaintenanceCommands commands{*notes, window.progress, window.dialogs, records};
};

TEST_F(MaintenanceCommandsTest, RemoveDuplicatesAndShowWhatIsLeft)
{
    removeDuplicates();
    EXPECT_THAT(bodies(), ElementsAre(u"2|the same body"));
    EXPECT_EQ(gateShown.back(), u"2 duplicates removed from total 3 records (66.67%).");
    EXPECT_THAT(window.lstHeads.data(), ElementsAre(2));
    EXPECT_EQ(records.current().id(), 2);
}

// Unsaved text is saved first, and then it is no duplicate any more.
TEST_F(MaintenanceCommandsTest, AskAboutUnsavedTextFirst)
{
    window.txtType.type(std::u16string(300, u'x')); // cannot be saved
    window.dialogs.answerNext(Answer::Yes);
    removeDuplicates();
    EXPECT_EQ(bodies().size(), 3u) << "nothing begins";

    window.txtType.type(u"title");
    window.txtShowWrap.type(u"another body");
    window.dialogs.answerNext(Answer::Yes);
    removeDuplicates();
    EXPECT_THAT(notes.rows(u"SELECT VLTEXT FROM [Notes]"),
        testing::UnorderedElementsAre(u"another body", u"the same body"));
}

TEST_F(MaintenanceCommandsTest, AStopKeepsTheRestAndTheNextRunRemovesIt)
{
    window.progress.stopAt(1);
    removeDuplicates();
    EXPECT_EQ(bodies().size(), 2u);
    EXPECT_EQ(window.lstHeads.count(), 2);
    window.progress.stopAt(0);
    removeDuplicates();
    EXPECT_THAT(bodies(), ElementsAre(u"2|the same body"));
    EXPECT_FALSE(window.progress.isRunning());
}

} // namespace
} // namespace vellums

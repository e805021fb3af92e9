// Imports as the window starts them: through the gate, with progress, stopped by a close.
#include "io/importCommands.h"

#include "tests/support/windowNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::u16string>;

class ImportCommandsTest : public testing::Test, protected tests::WindowNotebook {
protected:
    ImportCommandsTest()
    {
        for (const char16_t* const name : {u"in/a.txt", u"in/b.txt", u"in/c.txt"})
            notes.folder().write(name, std::string(1, static_cast<char>(name[3])));
        offerFields();
        records.start();
    }
    void import(const Texts& paths)
    {
        gate.run([&](const Turn&) { commands.importPaths(paths); });
    }
    std::u16string in(const char16_t* name) { return notes.folder().file(u"in/" + std::u16string(name)); }
    Texts titles() { return notes.rows(u"SELECT VLHEAD FROM [Notes] ORDER BY ID"); }

    ImportCommands commands{*notes, window.progress, window.dialogs, records};
};

TEST_F(ImportCommandsTest, TakeFilesAndFoldersAndShowThem)
{
    notes.folder().write(u"in/large.txt", std::string(524289, 'x')); // passed over without a question
    import({in(u"c.txt"), in(u"missing.txt"), notes.folder().file(u"in")});
    EXPECT_EQ(titles().size(), 3u) << "the duplicate of c goes";
    EXPECT_EQ(window.lstHeads.count(), 3);
    EXPECT_EQ(gateShown.back(), u"1 duplicate removed from total 4 records (25.00%).");
    EXPECT_THAT(window.progress.works(), ElementsAre(u"Importing"));
}

// The window is closed while files come in: the import ends after the file at hand, the close asks about
// what was typed meanwhile, and when the user stays, everything can go on.
TEST_F(ImportCommandsTest, ACloseThatIsCancelledLeavesTheNextImportToBegin)
{
    bool closed = false;
    window.progress.onStep = [&](std::size_t done, std::size_t) {
        if (done != 1 || closed)
            return;
        closed = true;
        window.txtShowWrap.type(u"typed meanwhile");
        EXPECT_FALSE(gate.run([](const Turn&) { ADD_FAILURE() << "another command"; }));
        gate.runOrWait(Waiting::Close, [&](const Turn&) { EXPECT_FALSE(records.mayClose()); });
    };
    window.progress.stopAt(2);
    import({in(u"a.txt"), in(u"b.txt")});
    EXPECT_TRUE(closed);
    EXPECT_THAT(titles(), ElementsAre(u"a"));
    EXPECT_EQ(gateShown.back(), u"1 record imported.");

    window.dialogs.answerNext(Answer::Cancel);
    gate.serve();
    EXPECT_EQ(window.dialogs.asked().size(), 1u);
    EXPECT_EQ(window.txtShowWrap.text(), u"typed meanwhile");

    window.progress.stopAt(0);
    window.dialogs.answerNext(Answer::Yes);
    import({in(u"b.txt"), in(u"c.txt")});
    EXPECT_EQ(gateShown.back(), u"2 records imported.");
    EXPECT_THAT(notes.rows(u"SELECT VLTEXT FROM [Notes] ORDER BY ID"),
        ElementsAre(u"a", u"typed meanwhile", u"b", u"c"));
    EXPECT_EQ(window.lstHeads.count(), 4);
    EXPECT_FALSE(gate.isBusy());
}

TEST_F(ImportCommandsTest, BeginNothingWhereUnsavedTextCannotBeSaved)
{
    window.txtType.type(std::u16string(300, u'x')); // longer than a title may be
    window.dialogs.answerNext(Answer::Yes);
    import({in(u"a.txt")});
    EXPECT_THAT(titles(), testing::IsEmpty());
    EXPECT_EQ(window.txtType.text().size(), 300u);
    EXPECT_EQ(gateShown.size(), 1u);
}

TEST_F(ImportCommandsTest, OfAFolderAreAskedAbout)
{
    const std::u16string folder = notes.folder().file(u"in");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        window.dialogs.chooseNext(folder);
        window.dialogs.answerNext(answer);
        gate.run([&](const Turn&) { commands.importFolder(); });
        EXPECT_EQ(titles().size(), answer == Answer::Yes ? 3u : 0u);
    }
    window.dialogs.chooseNext(u"");
    gate.run([&](const Turn&) { commands.importFolder(); });
    EXPECT_EQ(titles().size(), 3u);
}

} // namespace
} // namespace vellums

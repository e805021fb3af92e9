// One command at a time: what comes while a question stands or long work runs.
#include "app/gate.h"

#include "platform/clipboard.h"
#include "platform/files.h"
#include "tests/support/heldClipboard.h"
#include "tests/support/windowNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::u16string>;

class GateTest : public testing::Test {
protected:
    // What a command does that is only to be seen running.
    Gate::Command running(const char16_t* name)
    {
        return [this, name](const Turn&) { ran.push_back(name); };
    }

    tests::ShownLines told;
    Notebook notebook{told};
    Outcome outcome;
    Texts shown;
    int woken = 0;
    Texts ran;
    Gate gate{notebook, outcome,
        {[this](const std::u16string& line) { shown.push_back(line); }, [this] { ++woken; }}};
};

TEST_F(GateTest, LetsOneCommandInAndDropsWhatComesMeanwhile)
{
    EXPECT_TRUE(gate.run([&](const Turn&) {
        EXPECT_TRUE(gate.isBusy());
        EXPECT_FALSE(gate.run(running(u"inner")));
    }));
    EXPECT_FALSE(gate.isBusy());
    gate.serve();
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(woken, 0);
}

TEST_F(GateTest, WhatMustNotBeLostWaitsInItsOrderOnceOfAKind)
{
    gate.run([&](const Turn&) {
        gate.runOrWait(Waiting::Close, running(u"close"));
        gate.runOrWait(Waiting::Search, running(u"old search"));
        gate.runOrWait(Waiting::HandOver, running(u"hand-over"));
        gate.runOrWait(Waiting::Search, running(u"search"));
        gate.serve(); // somebody calls it while the command still runs
        EXPECT_THAT(ran, IsEmpty());
    });
    EXPECT_THAT(ran, IsEmpty()) << "not from within the command that has just ended";
    EXPECT_EQ(woken, 1);
    gate.serve();
    EXPECT_THAT(ran, ElementsAre(u"search", u"hand-over", u"close"));
    gate.runOrWait(Waiting::Search, running(u"at once"));
    EXPECT_EQ(ran.back(), u"at once");
}

// The window is told to serve by a message; others of the window may be treated before it.
TEST_F(GateTest, WhatComesBeforeTheWaitingIsServedKeepsOrderAndKind)
{
    gate.run([&](const Turn&) {
        gate.runOrWait(Waiting::Close, running(u"close"));
        gate.runOrWait(Waiting::HandOver, running(u"hand-over"));
    });
    gate.runOrWait(Waiting::Close, running(u"second close"));
    EXPECT_THAT(ran, ElementsAre(u"hand-over", u"second close"));
    gate.serve();
    EXPECT_EQ(ran.size(), 2u);
}

TEST_F(GateTest, AnOpenMenuHoldsCommandsBack)
{
    gate.hold();
    gate.runOrWait(Waiting::Search, running(u"search"));
    EXPECT_FALSE(gate.run(running(u"other")));
    EXPECT_THAT(ran, IsEmpty());
    gate.release();
    EXPECT_EQ(woken, 1);
    gate.serve();
    EXPECT_THAT(ran, ElementsAre(u"search"));
}

TEST_F(GateTest, NothingBeginsOnceItIsShut)
{
    gate.run([&](const Turn&) {
        gate.runOrWait(Waiting::Heading, running(u"heading"));
        gate.shut();
    });
    gate.serve();
    EXPECT_FALSE(gate.run(running(u"late")));
    EXPECT_THAT(ran, IsEmpty());
}

// A failure stays, whatever succeeds after it; the same failure twice is shown twice.
TEST_F(GateTest, SaysOneThingForACommand)
{
    const auto fails = [&](const Turn&) {
        outcome.failed(u"disk full");
        outcome.done(u"3 records deleted");
        outcome.failed(u"something else");
        outcome.found(u"12 records found");
    };
    gate.run(fails);
    gate.run(fails);
    gate.run([&](const Turn&) {
        outcome.found(u"12 records found");
        outcome.done(u"1 record saved");
        outcome.found(u"13 records found");
    });
    gate.run([&](const Turn&) { outcome.found(u"13 records found"); });
    gate.run([&](const Turn&) { // the same reason, once by itself and once named
        outcome.failed(u"No such table (3078)");
        outcome.failed(u"dbQuery: No such table (3078)");
    });
    gate.run([&](const Turn&) { // two records, one reason
        outcome.failed(u"refused");
        outcome.failed(u"refused");
    });
    gate.run([](const Turn&) {});
    EXPECT_THAT(shown,
        ElementsAre(u"disk full (and 1 more)", u"disk full (and 1 more)", u"1 record saved",
            u"13 records found", u"dbQuery: No such table (3078)", u"refused (and 1 more)"));
}

TEST_F(GateTest, WhatIsThrownEndsAsALine)
{
    gate.run([](const Turn&) { throw ProviderError(u"No such table", 3078); });
    gate.run([](const Turn&) { throw std::bad_alloc(); });
    gate.run([](const Turn&) { throw platform::FileError{platform::FileFault::DiskFull, 28}; });
    gate.run([](const Turn&) { throw 1; });
    ASSERT_EQ(shown.size(), 4u);
    EXPECT_EQ(shown[0], u"No such table (3078)");
    EXPECT_TRUE(shown[1].starts_with(u"There is not enough memory"));
    EXPECT_TRUE(shown[2].ends_with(u"(28)"));
    EXPECT_FALSE(gate.isBusy());
    notebook.chinese = true;
    gate.run([](const Turn&) { throw std::bad_alloc(); });
    EXPECT_TRUE(shown.back().starts_with(u"内存不足"));
}

// Three notes, "cherry" shown; everything comes through a gate, and things happen while questions stand.
class Reentered : public testing::Test, protected tests::WindowNotebook {
protected:
    Reentered()
    {
        platform::setClipboardText(u"");
        addFruits();
        offerFields();
        commands.make(*notes, ports, moments);
        run(&RecordCommands::start);
    }
    void run(void (RecordCommands::*command)())
    {
        gate.run([&](const Turn& turn) { (commands(turn).*command)(); });
    }
    Texts bodies() { return notes.rows(u"SELECT VLTEXT FROM [Notes] ORDER BY ID"); }

    Gated<RecordCommands> commands;
};

using RecordCommand = void (RecordCommands::*)();
const RecordCommand kRecordCommands[] = {&RecordCommands::search, &RecordCommands::reload,
    &RecordCommands::selectHeading, &RecordCommands::pasteNew, &RecordCommands::capture,
    &RecordCommands::duplicate, &RecordCommands::deleteSelected, &RecordCommands::save};

// Whatever command comes while the question of whichever other stands: the first one ends as if it had been
// alone. Without the gate each pair here loses a text or a record.
TEST_F(Reentered, NoCommandBeginsWhileAQuestionStands)
{
    const RecordCommand asking[] = {&RecordCommands::search, &RecordCommands::reload,
        &RecordCommands::pasteNew, &RecordCommands::capture, &RecordCommands::duplicate};
    window.mnu_ezdel.setChecked(true);
    for (const RecordCommand first : asking) {
        for (const RecordCommand second : kRecordCommands) {
            window.txtShowWrap.type(u"typed");
            platform::setClipboardText(u"captured");
            const Texts before = bodies();
            const Texts titles = window.lstHeads.texts();
            window.dialogs.meanwhile = [&] {
                window.lstHeads.click({1});
                run(second);
                EXPECT_EQ(bodies(), before);
                EXPECT_EQ(window.lstHeads.texts(), titles);
                EXPECT_EQ(window.txtShowWrap.text(), u"typed");
            };
            window.dialogs.answerNext(Answer::No);
            run(first);
            window.dialogs.meanwhile = {};
            EXPECT_EQ(window.dialogs.asked().size(), 1u);
            EXPECT_EQ(window.lstHeads.selected().size(), 1u);
        }
    }
}

// The list is filled anew below the question: those records go that were selected when it was asked.
TEST_F(Reentered, DeleteTakesTheRecordsOfItsQuestion)
{
    window.lstHeads.click({0}); // cherry
    window.dialogs.answerNext(Answer::Yes);
    window.dialogs.meanwhile = [&] {
        window.lstHeads.fill({{u"apple", 1}, {u"banana", 2}, {u"cherry", 3}});
        window.lstHeads.click({0});
    };
    run(&RecordCommands::deleteSelected);
    EXPECT_THAT(bodies(), ElementsAre(u"body of apple", u"body of banana"));
    EXPECT_EQ(gateShown.back(), u"1 record(s) deleted.");
}

// No gives up what was there when the question was asked, not what came after.
TEST_F(Reentered, TextThatComesWhileAQuestionStandsIsAskedAbout)
{
    window.txtShowWrap.type(u"first");
    int questions = 0;
    window.dialogs.meanwhile = [&] {
        if (++questions == 1)
            window.txtShowWrap.type(u"second");
    };
    window.dialogs.answerNext(Answer::No);
    window.dialogs.answerNext(Answer::Yes);
    run(&RecordCommands::search);
    EXPECT_THAT(bodies(), testing::Contains(u"second"));
    EXPECT_EQ(window.dialogs.asked().size(), 2u);
}

// The list that is filled at the end of a long command leaves alone what nobody was asked about.
TEST_F(Reentered, ARefreshKeepsTextTypedMeanwhile)
{
    gate.run([&](const Turn& turn) {
        notes.run(u"DELETE FROM [Notes] WHERE ID=2");
        window.txtShowWrap.type(u"typed during the import");
        window.txtType.type(u"its title");
        commands(turn).refresh();
    });
    EXPECT_EQ(window.txtShowWrap.text(), u"typed during the import");
    EXPECT_THAT(window.lstHeads.texts(), ElementsAre(u"cherry", u"apple"));
    EXPECT_THAT(window.lstHeads.selected(), ElementsAre(0));
    run(&RecordCommands::save);
    EXPECT_THAT(bodies(), ElementsAre(u"body of apple", u"typed during the import"));
    EXPECT_THAT(window.lstHeads.texts(), ElementsAre(u"its title", u"apple"));
}

// An instant search that is interrupted comes again; a No, given by a key, is not asked for twice.
TEST_F(Reentered, AnInterruptedSearchAsksOnce)
{
    window.txtShowWrap.type(u"given up");
    window.txtKey.type(u"app");
    window.dialogs.answerNext(Answer::No);
    const auto search = [&](bool interrupted) {
        gate.run([&](const Turn& turn) {
            EXPECT_EQ(commands(turn).searchUnless([&] { return interrupted; }), !interrupted);
        });
    };
    search(true);
    EXPECT_EQ(window.txtShowWrap.text(), u"given up") << "the list was not filled";
    search(false);
    EXPECT_EQ(window.dialogs.asked().size(), 1u);
    EXPECT_EQ(window.txtShowWrap.text(), u"body of apple");
    // Typed again it is another text.
    window.txtShowWrap.type(u"given up");
    window.dialogs.answerNext(Answer::Yes);
    search(false);
    EXPECT_THAT(bodies(), testing::Contains(u"given up"));
}

TEST_F(Reentered, AClipboardThatIsHeldIsNotAnEmptyOne)
{
    platform::setClipboardText(u"clip");
    {
        const tests::HeldClipboard held;
        for (const RecordCommand command : {&RecordCommands::pasteNew, &RecordCommands::capture}) {
            gateShown.clear();
            run(command);
            EXPECT_THAT(gateShown, ElementsAre(u"Another program holds the clipboard; please try again."));
        }
    }
    EXPECT_EQ(bodies().size(), 3u);
    run(&RecordCommands::pasteNew);
    EXPECT_THAT(bodies(), testing::Contains(u"clip"));
}

} // namespace
} // namespace vellums

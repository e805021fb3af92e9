#include "app/tableCommands.h"

#include "app/start/settings.h"
#include "platform/codePage.h"
#include "platform/files.h"
#include "store/connectionString.h"
#include "store/databases/schema.h"
#include "store/records/records.h"
#include "tests/support/windowNotebook.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Texts = std::vector<std::u16string>;

const std::u16string kYesNo = u" (Yes/No)";

// notes.mdb with the tables Notes (records 1 "first", 2 "second") and Other (record 1 "in other"), open at
// Notes. The parameter: the interface is Chinese.
class TableCommandsTest : public testing::TestWithParam<bool>, protected tests::WindowNotebook {
protected:
    TableCommandsTest()
        : WindowNotebook(GetParam())
    {
        notes.run(u"SELECT * INTO [Other] FROM [Notes]");
        notes.run(u"CREATE TABLE [Plain] (ID COUNTER, A MEMO)");
        add(u"Notes", u"first");
        add(u"Notes", u"second");
        add(u"Other", u"in other");
        moments.tableOpened.add([this] {
            ++opened_;
            offerFields();
        });
        moments.listFilled.add([this] { ++filled_; });
        records.start();
        commands_.rebuildMenu();
    }

    void add(const std::u16string& table, const std::u16string& title)
    {
        EXPECT_GT(addRecord(*notes->connect(), table, {u"body of " + title, title, u""}).id, 0);
    }
    std::u16string saveQuestion() const { return WindowNotebook::saveQuestion(kYesNo); }
    std::u16string dropQuestion(const std::u16string& table, const std::u16string& file = u"notes.mdb") const
    {
        return say(u"Are you sure to drop table " + table + u" from " + file + u"?",
                   u"确实要从数据库 " + file + u" 中删除表 " + table + u" 吗?") +
            kYesNo;
    }
    std::u16string setting(std::u16string_view key) const
    {
        return getPrefValue(notes.folder().file(u"Vellums.ini"), kOptionsSection, key, u"(none)");
    }
    // The entries that are seen, the checked one with a "+" in front.
    Texts menu() const
    {
        Texts entries;
        for (std::size_t i = 0; i < mnu_availdb_.size(); ++i)
            if (mnu_availdb_.at(i).visible)
                entries.push_back((mnu_availdb_.at(i).checked ? u"+" : u"") + mnu_availdb_.at(i).caption);
        return entries;
    }
    void pick(const std::u16string& caption)
    {
        for (std::size_t i = 0; i < mnu_availdb_.size(); ++i)
            if (mnu_availdb_.at(i).caption == caption)
                return commands_.switchTo(i);
        ADD_FAILURE() << "no entry " << text::toUtf8(caption);
    }
    void expectOpen(const std::u16string& file, const std::u16string& table, const Texts& titles)
    {
        EXPECT_EQ(notes->dbTable, table);
        EXPECT_EQ(getConnPart(*notes, notes->dbConn, ConnPart::FileName), file);
        EXPECT_EQ(window.caption.text(), u"Vellums - <" + file + u" - " + table + u">");
        EXPECT_EQ(window.lstHeads.texts(), titles);
        EXPECT_EQ(records.current().id() > 0, !titles.empty());
    }
    std::u16string found(int count, const std::u16string& file, const std::u16string& table) const
    {
        const std::u16string number = text::decimal(count);
        return say(
            number + (count > 1 ? u" records" : u" record") + u" found in " + file + u" - " + table + u".",
            u"搜索到 " + number + u" 条记录 (" + file + u" - " + table + u")");
    }

    tests::MemoryMenuItems mnu_availdb_;
    tests::MemorySwitch mnu_switchto_;
    tests::MemoryNameDialog frmInput_;
    TableCommands commands_{*notes, ports.list, window.mnu_AvailFields, records,
        {mnu_availdb_, mnu_switchto_, frmInput_, window.dialogs}};
    int opened_ = 0; // moments that happened
    int filled_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Languages, TableCommandsTest, testing::Bool(),
    [](const auto& test) { return test.param ? "Chinese" : "English"; });

TEST_P(TableCommandsTest, TheMenuOffersSnippetTablesOfAccessFiles)
{
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - Notes", u"notes.mdb - Other"));
    EXPECT_EQ(mnu_availdb_.at(0).tag, notes.file());
    EXPECT_TRUE(mnu_availdb_.at(0).enabled);
    EXPECT_TRUE(mnu_switchto_.enabled());

    notes.folder().write(u"Thumbs.db", "no database");
    notes.folder().write(u"broken.mdb", tests::bytesOf(notes.file()).substr(0, 5000));
    notes.folder().write(u"copy.xdb", tests::bytesOf(notes.file()));
    notes->provider->createDatabase(notes.folder().file(u"日记 - 1.accdb"), u"a - b");
    commands_.rebuildMenu();
    EXPECT_THAT(
        menu(), UnorderedElementsAre(u"+notes.mdb - Notes", u"notes.mdb - Other", u"日记 - 1.accdb - a - b"));
    pick(u"日记 - 1.accdb - a - b");
    expectOpen(u"日记 - 1.accdb", u"a - b", {});

    const tests::TemporaryFolder empty;
    notes->dbParent = empty.path();
    commands_.rebuildMenu();
    EXPECT_FALSE(mnu_switchto_.enabled());
}

TEST_P(TableCommandsTest, SwitchingOpensTheTableAndStoresIt)
{
    notes->provider->createDatabase(notes.folder().file(u"more.accdb"), u"More");
    commands_.rebuildMenu();
    pick(u"notes.mdb - Notes"); // it is open
    EXPECT_EQ(opened_, 1);
    EXPECT_EQ(setting(u"dbTable"), u"(none)");

    pick(u"notes.mdb - Other");
    expectOpen(u"notes.mdb", u"Other", {u"in other"});
    EXPECT_EQ(window.txtShowWrap.text(), u"body of in other");
    EXPECT_EQ(lastShown(), found(1, u"notes.mdb", u"Other"));
    EXPECT_THAT(menu(), testing::Contains(u"+notes.mdb - Other"));
    EXPECT_EQ(opened_, 2);
    EXPECT_EQ(filled_, 2);

    pick(u"more.accdb - More");
    expectOpen(u"more.accdb", u"More", {});
    EXPECT_EQ(window.txtShowWrap.text(), u"");
    EXPECT_EQ(setting(u"dbTable"), u"More");
    EXPECT_EQ(setting(u"dbParent"), notes->dbParent);
    EXPECT_EQ(setting(u"dbConn"), connectionStringFor(*notes, u"more.accdb")) << "the bare name";
    EXPECT_THAT(menu(), testing::Contains(u"+more.accdb - More"));
    EXPECT_THAT(menu(), testing::Contains(u"notes.mdb - Other"));
}

TEST_P(TableCommandsTest, SwitchingAsksBeforeAnythingChanges)
{
    window.txtShowWrap.type(u"changed");
    window.dialogs.answerNext(Answer::No);
    pick(u"notes.mdb - Other");
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion()));
    expectOpen(u"notes.mdb", u"Other", {u"in other"});
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Notes] WHERE VLTEXT='changed'"), IsEmpty());

    window.txtShowWrap.type(u"changed in other");
    window.dialogs.answerNext(Answer::Yes);
    pick(u"notes.mdb - Notes");
    EXPECT_THAT(notes.rows(u"SELECT VLTEXT FROM [Other]"), ElementsAre(u"changed in other"));
    expectOpen(u"notes.mdb", u"Notes", {u"second", u"first"});

    window.txtType.type(std::u16string(256, u'x')); // cannot be saved
    window.dialogs.answerNext(Answer::Yes);
    pick(u"notes.mdb - Other");
    EXPECT_EQ(notes->dbTable, u"Notes");
    EXPECT_EQ(setting(u"dbTable"), u"Notes");
    EXPECT_EQ(window.txtType.text().size(), 256u);
    EXPECT_EQ(lastShown().substr(0, 12), u"modRecord - ");
}

TEST_P(TableCommandsTest, WhatVanishedMeanwhileIsSaidAndTheRestStays)
{
    notes->provider->createDatabase(notes.folder().file(u"more.mdb"), u"More");
    commands_.rebuildMenu();
    platform::removeFile(notes.folder().file(u"more.mdb"));
    pick(u"more.mdb - More");
    EXPECT_EQ(lastShown().substr(0, 9), u"dbQuery: ");
    expectOpen(u"notes.mdb", u"Notes", {u"second", u"first"});
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - Notes", u"notes.mdb - Other"));
    EXPECT_EQ(setting(u"dbConn"), u"(none)");

    notes.run(u"DROP TABLE [Other]");
    pick(u"notes.mdb - Other");
    EXPECT_EQ(lastShown().substr(0, 9), u"dbQuery: ");
    expectOpen(u"notes.mdb", u"Notes", {u"second", u"first"});
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - Notes"));
}

TEST_P(TableCommandsTest, SearchFieldsOfAWiderTableAreNotSearched)
{
    window.mnu_AvailFields.set(3, {u"", u"ELSEWHERE", true, false}); // no column of Other
    pick(u"notes.mdb - Other");
    expectOpen(u"notes.mdb", u"Other", {u"in other"});
}

TEST_P(TableCommandsTest, TheFormAsksInItsLanguage)
{
    frmInput_.answerNext(u"");
    frmInput_.answerNext(u"");
    commands_.newDatabase();
    commands_.newTable();
    ASSERT_EQ(frmInput_.shown().size(), 2u);
    const NameForm& database = frmInput_.shown()[0];
    const NameForm& table = frmInput_.shown()[1];
    EXPECT_EQ(database.caption, say(u"New Database", u"数据库名称"));
    EXPECT_EQ(database.label, say(u"New database file name:", u"请指定数据库名称:"));
    EXPECT_EQ(table.caption, say(u"New Table", u"数据表名称"));
    EXPECT_EQ(table.label, say(u"New table name:", u"请指定数据表名称:"));
    EXPECT_EQ(database.accept, say(u"&OK", u"确定(&O)"));
    EXPECT_EQ(database.cancel, say(u"&Cancel", u"取消(&C)"));
    for (const NameForm& form : frmInput_.shown()) {
        EXPECT_EQ(form.text.size(), 10u);
        EXPECT_EQ(form.text.find_first_not_of(u"0123456789"), std::u16string::npos);
    }
    EXPECT_EQ(notes.shown().size(), 1u) << "cancelled";
}

TEST_P(TableCommandsTest, ANewDatabaseIsOpened)
{
    const std::u16string created = say(u"New database file created: ", u"数据库文件新建成功: ");
    const struct {
        const char16_t* name;
        std::u16string file;
        std::u16string table;
    } cases[] = {{u"diary", u"diary.mdb", u"diary"}, {u"b.MDB", u"b.MDB", u"b"},
        {u".x", u".x.mdb", say(u"Memo", u"笔记")}, {u" 50% it's ", u"50% it's.mdb", u"50% it's"},
        {u"c.accdb", u"c.accdb.mdb", u"c"}};
    for (const auto& c : cases) {
        frmInput_.answerNext(c.name);
        commands_.newDatabase();
        expectOpen(c.file, c.table, {});
        EXPECT_EQ(lastShown(), created + c.file);
        EXPECT_THAT(menu(), testing::Contains(u"+" + c.file + u" - " + c.table));
        EXPECT_EQ(setting(u"dbConn"), connectionStringFor(*notes, c.file));
        EXPECT_EQ(setting(u"dbTable"), platform::throughAnsi(c.table)); // the file is in the ANSI code page
        add(c.table, u"works");
    }
}

TEST_P(TableCommandsTest, ANewDatabaseThatCannotBeLeavesEverything)
{
    const Texts before = menu();
    for (const char16_t* const name : {u"notes", u"notes.mdb", u"a/b", u"a:b", u"[x]", u"   ", u"nul"}) {
        frmInput_.answerNext(name);
        commands_.newDatabase();
        EXPECT_EQ(lastShown().substr(0, 13), u"dbCreateNew: ");
        expectOpen(u"notes.mdb", u"Notes", {u"second", u"first"});
    }
    EXPECT_EQ(menu(), before);
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes]").size(), 2u);

    frmInput_.answerNext(u"fine");
    window.txtType.type(std::u16string(256, u'x')); // cannot be saved
    window.dialogs.answerNext(Answer::Yes);
    commands_.newDatabase();
    EXPECT_FALSE(platform::fileExists(notes.folder().file(u"fine.mdb")));
    EXPECT_EQ(lastShown().substr(0, 12), u"modRecord - ");
}

TEST_P(TableCommandsTest, ANewTableIsOffered)
{
    frmInput_.answerNext(u"Third");
    window.txtShowWrap.type(u"unsaved"); // it stays on the screen
    commands_.newTable();
    EXPECT_EQ(lastShown(), say(u"New table created: Third", u"数据表新建成功: Third"));
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - Notes", u"notes.mdb - Other", u"notes.mdb - Third"));
    EXPECT_EQ(window.txtShowWrap.text(), u"unsaved");
    EXPECT_THAT(notes.rows(u"SELECT ID FROM [Third]"), IsEmpty());

    const std::u16string failed = say(u"Failed to create new table: ", u"新增数据表失败, ");
    for (const char16_t* const name : {u"third", u"Plain", u"Notes"}) {
        frmInput_.answerNext(name);
        commands_.newTable();
        EXPECT_EQ(lastShown(), failed + say(u"named table already existed. ", u"同名表已存在 "));
    }
    frmInput_.answerNext(u"x] FROM [Other");
    commands_.newTable();
    EXPECT_EQ(lastShown().substr(0, failed.size() + 1), failed + u"'");
    EXPECT_EQ(menu().size(), 3u);
}

TEST_P(TableCommandsTest, ARenamedTableStaysOpenUnderItsNewName)
{
    frmInput_.answerNext(u"Diary");
    window.txtShowWrap.type(u"saved before");
    window.dialogs.answerNext(Answer::Yes);
    commands_.renameTable();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(saveQuestion()));
    expectOpen(u"notes.mdb", u"Diary", {u"second", u"first"});
    EXPECT_EQ(window.txtShowWrap.text(), u"saved before");
    EXPECT_EQ(setting(u"dbTable"), u"Diary");
    EXPECT_THAT(menu(), UnorderedElementsAre(u"+notes.mdb - Diary", u"notes.mdb - Other"));

    frmInput_.answerNext(u"");
    commands_.renameTable();
    frmInput_.answerNext(u"Other");
    commands_.renameTable();
    EXPECT_EQ(lastShown(),
        say(u"Failed to create new table: named table already existed. ", u"新增数据表失败, 同名表已存在 "));
    expectOpen(u"notes.mdb", u"Diary", {u"second", u"first"});

    frmInput_.answerNext(u"Fine");
    window.txtType.type(std::u16string(256, u'x')); // cannot be saved
    window.dialogs.answerNext(Answer::Yes);
    commands_.renameTable();
    EXPECT_EQ(notes->dbTable, u"Diary");
    EXPECT_THAT(menu(), UnorderedElementsAre(u"+notes.mdb - Diary", u"notes.mdb - Other"));
}

TEST_P(TableCommandsTest, DroppingOpensTheFirstTableThatIsLeft)
{
    window.dialogs.answerNext(Answer::No);
    commands_.dropTable();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(dropQuestion(u"Notes")));
    expectOpen(u"notes.mdb", u"Notes", {u"second", u"first"});

    window.txtShowWrap.type(u"unsaved");
    window.dialogs.answerNext(Answer::Yes);
    window.dialogs.answerNext(Answer::No);
    commands_.dropTable();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(dropQuestion(u"Notes"), saveQuestion()));
    expectOpen(u"notes.mdb", u"Other", {u"in other"});
    EXPECT_EQ(lastShown(), found(1, u"notes.mdb", u"Other"));
    EXPECT_EQ(setting(u"dbTable"), u"Other");
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - Other"));
}

TEST_P(TableCommandsTest, AfterTheLastTableAFreshOneIsOffered)
{
    notes.run(u"DROP TABLE [Other]");
    const std::u16string fresh = say(u"Memo", u"笔记");
    const std::u16string left =
        say(u"No snippet table is left in notes.mdb.", u"数据库 notes.mdb 中已没有摘录表");
    const std::u16string offer = left + say(u" Create the new table Memo?", u", 是否新建表 笔记?") + kYesNo;
    window.dialogs.answerNext(Answer::Yes);
    window.dialogs.answerNext(Answer::No);
    commands_.dropTable();
    EXPECT_THAT(window.dialogs.asked(), ElementsAre(dropQuestion(u"Notes"), offer));
    EXPECT_EQ(lastShown(), left);
    expectOpen(u"notes.mdb", u"-", {});
    EXPECT_EQ(setting(u"dbTable"), u"") << "the first table there is serves at the next start";
    EXPECT_THAT(menu(), IsEmpty());
    EXPECT_FALSE(mnu_switchto_.enabled());

    frmInput_.answerNext(u"Again");
    commands_.newTable();
    expectOpen(u"notes.mdb", u"Again", {});
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - Again"));

    notes.run(u"CREATE TABLE [" + fresh + u"] (A MEMO)"); // no snippet table
    window.dialogs.answerNext(Answer::Yes);
    window.dialogs.answerNext(Answer::Yes);
    commands_.dropTable();
    expectOpen(u"notes.mdb", fresh + u"2", {});
    EXPECT_TRUE(isSnippetTable(*notes, notes->dbConn, fresh + u"2"));
    EXPECT_THAT(menu(), ElementsAre(u"+notes.mdb - " + fresh + u"2"));
}

TEST_P(TableCommandsTest, ATableThatCannotBeDroppedStays)
{
    const Texts before = menu();
    notes.folder().setReadOnly(u"notes.mdb", true);
    window.dialogs.answerNext(Answer::Yes);
    commands_.dropTable();
    notes.folder().setReadOnly(u"notes.mdb", false);
    EXPECT_EQ(lastShown().substr(0, 12), u"dropTable - ");
    expectOpen(u"notes.mdb", u"Notes", {u"second", u"first"});
    EXPECT_EQ(menu(), before);

    window.txtType.type(std::u16string(256, u'x')); // cannot be saved
    window.dialogs.answerNext(Answer::Yes);
    window.dialogs.answerNext(Answer::Yes);
    commands_.dropTable();
    EXPECT_EQ(notes.rows(u"SELECT ID FROM [Notes]").size(), 2u);
}

} // namespace
} // namespace vellums

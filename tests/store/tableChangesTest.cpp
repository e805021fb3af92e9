#include "store/databases/tableChanges.h"

#include "store/connectionString.h"
#include "store/databases/modCreateDB.h"
#include "store/databases/schema.h"
#include "store/embedded/embeddedProvider.h"
#include "store/records/records.h"
#include "tests/support/shortWait.h"
#include "tests/support/testNotebook.h"

#include <gmock/gmock.h>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Language {
    const char* name;
    const char16_t* file;
    bool chinese;
};

class TableChanges : public testing::TestWithParam<Language> {
protected:
    TableChanges()
        : notes_(GetParam().file)
    {
        notes_->chinese = GetParam().chinese;
    }
    std::u16string notCreated(std::u16string_view english, std::u16string_view chinese = u"")
    {
        return notes_->say(u"Failed to create new table: ", u"新增数据表失败, ") +
            notes_->say(english, chinese.empty() ? english : chinese);
    }
    std::vector<std::u16string> tables() { return snippetTables(*notes_->connect()); }
    std::u16string lastShown() const { return notes_.shown().empty() ? u"" : notes_.shown().back(); }
    void add(std::u16string_view title)
    {
        ASSERT_TRUE(addRecord(*notes_, {u"body", std::u16string(title), u""}));
    }

    tests::TestNotebook notes_;
};

INSTANTIATE_TEST_SUITE_P(Languages, TableChanges,
    testing::Values(Language{"English", u"notes.mdb", false}, Language{"Chinese", u"notes.accdb", true}),
    [](const auto& test) { return test.param.name; });

TEST_P(TableChanges, AJournalOfSomethingElseIsTold)
{
    const EmbeddedProvider embedded; // ADO knows none
    notes_->provider = &embedded;
    notes_.folder().write(std::u16string(GetParam().file) + u"-journal", "somebody's notes");
    add(u"one");
    add(u"two");
    ASSERT_EQ(notes_.shown().size(), 1u);
    EXPECT_TRUE(notes_.shown()[0].ends_with(u"-journal-unused1"));
    EXPECT_EQ(notes_.outcome(), notes_.shown()[0]);
}

TEST_P(TableChanges, ANewTableIsASnippetTableWithoutRecords)
{
    add(u"one");
    EXPECT_TRUE(newTable(*notes_, u"50% 'it' - new "));
    EXPECT_THAT(tables(), ElementsAre(u"Notes", u"50% 'it' - new"));
    notes_->dbTable = u"50% 'it' - new";
    add(u"first");
    EXPECT_THAT(notes_.rows(u"SELECT ID, VLHEAD FROM [50% 'it' - new]"), ElementsAre(u"1|first"));
    EXPECT_TRUE(newSnippetTable(*notes_, u"Fresh"));
    EXPECT_THAT(tables(), ElementsAre(u"Notes", u"50% 'it' - new", u"Fresh"));
    EXPECT_THAT(notes_.shown(), IsEmpty());
}

TEST_P(TableChanges, NamesThatNoTableMayHaveAreRefused)
{
    add(u"one");
    const std::u16string names[] = {u"", u"   ", u" leading", u"a]b", u"x] FROM [Notes", u"[x", u"a.b",
        u"a!b", u"a`b", u"line\nbreak", std::u16string(300, u'n'), u"MSysNotes", u"USysNotes", u"~hidden"};
    for (const std::u16string& name : names) {
        EXPECT_FALSE(newTable(*notes_, name));
        EXPECT_EQ(lastShown().substr(0, notCreated(u"'").size()), notCreated(u"'"));
        EXPECT_FALSE(newSnippetTable(*notes_, name));
        EXPECT_FALSE(renameTable(*notes_, name));
        EXPECT_EQ(lastShown().substr(0, notCreated(u"'").size()), notCreated(u"'"));
    }
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Notes]"), ElementsAre(u"one"));
    EXPECT_THAT(tables(), ElementsAre(u"Notes"));
}

TEST_P(TableChanges, ANameThatIsTakenIsSaidToBe)
{
    ASSERT_TRUE(newTable(*notes_, u"Other"));
    add(u"one");
    for (const char16_t* const name : {u"Other", u"OTHER"}) {
        EXPECT_FALSE(newTable(*notes_, name));
        EXPECT_EQ(lastShown(), notCreated(u"named table already existed. ", u"同名表已存在 "));
        EXPECT_FALSE(renameTable(*notes_, name));
        EXPECT_EQ(lastShown(), notCreated(u"named table already existed. ", u"同名表已存在 "));
    }
    EXPECT_FALSE(newTable(*notes_, u"Notes"));
    EXPECT_EQ(lastShown(), notCreated(u"named table already existed. ", u"同名表已存在 "));
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Notes]"), ElementsAre(u"one"));
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Other]"), IsEmpty());
}

TEST_P(TableChanges, RenamingKeepsRecordsWithTheirNumbers)
{
    add(u"one");
    add(u"two");
    notes_.run(u"DELETE FROM [Notes] WHERE ID=1");
    EXPECT_TRUE(renameTable(*notes_, u"Diary"));
    EXPECT_THAT(tables(), ElementsAre(u"Diary"));
    EXPECT_THAT(notes_.rows(u"SELECT ID, VLHEAD, VLTEXT FROM [Diary]"), ElementsAre(u"2|two|body"));
    notes_->dbTable = u"Diary";
    notes_.run(u"CREATE TABLE [Vellums 1] (A MEMO)"); // the name that it would pass through
    EXPECT_TRUE(renameTable(*notes_, u"DIARY")) << "letter case alone";
    notes_.run(u"DROP TABLE [Vellums 1]");
    EXPECT_THAT(tables(), ElementsAre(u"DIARY"));
    EXPECT_THAT(notes_.rows(u"SELECT ID FROM [diary]"), ElementsAre(u"2"));
    EXPECT_THAT(notes_.shown(), IsEmpty());
}

TEST_P(TableChanges, WhatIsMissingOrLockedIsSaid)
{
    add(u"one");
    const std::u16string missing = u"Missing";
    EXPECT_FALSE(dropTable(*notes_, missing));
    EXPECT_EQ(lastShown(), u"dropTable - Table 'Missing' does not exist. (-2147217865)");
    notes_->dbTable = missing;
    EXPECT_FALSE(newTable(*notes_, u"New"));
    EXPECT_EQ(lastShown(),
        notCreated(
            u"The database engine cannot find the input table or query 'Missing'. Make sure it exists and "
            u"that its name is spelled correctly."));
    EXPECT_FALSE(renameTable(*notes_, u"New"));
    notes_->dbTable = u"Notes";
    {
        // Whoever serves the notebook: another program of ours writes to the file.
        const tests::ShortWait wait;
        const auto other = EmbeddedProvider().open(expandedConnection(*notes_, notes_->dbConn));
        other->beginBatch();
        EXPECT_FALSE(dropTable(*notes_, u"Notes"));
        EXPECT_EQ(lastShown().substr(0, 12), u"dropTable - ");
        EXPECT_FALSE(renameTable(*notes_, u"NOTES"));
        EXPECT_EQ(lastShown().find(u"already"), std::u16string::npos);
    }
    notes_.folder().setReadOnly(GetParam().file, true);
    EXPECT_FALSE(newTable(*notes_, u"New"));
    EXPECT_FALSE(dropTable(*notes_, u"Notes"));
    EXPECT_TRUE(lastShown().starts_with(u"dropTable - Operation must use an updateable query. ("));
    notes_.folder().setReadOnly(GetParam().file, false);
    EXPECT_THAT(tables(), ElementsAre(u"Notes"));
    EXPECT_THAT(notes_.rows(u"SELECT VLHEAD FROM [Notes]"), ElementsAre(u"one"));
    EXPECT_TRUE(dropTable(*notes_, u"Notes"));
    EXPECT_THAT(tables(), IsEmpty());
}

TEST_P(TableChanges, FileNamesThatNoSystemTakesMakeNoDatabase)
{
    const std::u16string names[] = {u"a/b.mdb", u"a\\b.mdb", u"..", u"c:x.mdb", u"a?.mdb", u"a*.mdb",
        u"a\".mdb", u"a<b>.mdb", u"a|b.mdb", u"a\nb.mdb", u"   ", u"x.mdb ", u"x.mdb.", u"NUL.mdb",
        u"com1.mdb", std::u16string(300, u'n') + u".mdb", std::u16string(100, u'n') + u".mdb", u"[a].mdb",
        u"   .mdb", u"usysNotes.mdb", u"MSysX.mdb"};
    for (const std::u16string& name : names) {
        EXPECT_EQ(dbCreateNew(*notes_, name), u"");
        EXPECT_EQ(lastShown().substr(0, 14), u"dbCreateNew: '") << lastShown().size();
    }
    EXPECT_EQ(notes_.shown().size(), std::size(names));
    EXPECT_EQ(getDataBaseList(*notes_, {}), GetParam().file);
}

} // namespace
} // namespace vellums

#include "search/searchFields.h"

#include "app/gate.h"
#include "app/headingList.h"
#include "app/recordCommands.h"
#include "tests/support/failingProvider.h"
#include "tests/support/memoryControls.h"
#include "tests/support/testNotebook.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#include <iterator>
#include <utility>

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::u16string>;

constexpr std::u16string_view kFiveColumns =
    u"ID COUNTER, VLHEAD TEXT(255), VLTEXT MEMO, VLTYPE TEXT(255), VLDATE DATETIME";

class SearchFields : public testing::TestWithParam<const char16_t*> {
protected:
    SearchFields()
        : notes_(GetParam())
    {
    }

    bool rebuild(const std::u16string& table = u"Notes")
    {
        notes_->dbTable = table;
        return rebuildSearchFields(*notes_, window_.mnu_AvailFields, window_.lstHeads);
    }
    void makeTable(const std::u16string& name, std::u16string_view columns)
    {
        notes_.run(u"CREATE TABLE [" + name + u"] (" + std::u16string(columns) + u")");
    }
    // Each entry: its column, "+" when it is checked, its caption when it can be seen.
    Texts fields() const
    {
        Texts all;
        for (std::size_t i = 0; i < window_.mnu_AvailFields.size(); ++i) {
            const MenuItem& item = window_.mnu_AvailFields.at(i);
            all.push_back(item.tag + (item.checked ? u"+" : u"") + (item.visible ? item.caption : u""));
        }
        return all;
    }
    Texts found(const std::u16string& words)
    {
        window_.txtKey.setText(words);
        EXPECT_TRUE(dbQuery(*notes_, window_.ports().list, window_.ports().search));
        return window_.lstHeads.texts();
    }
    Texts columns(const std::u16string& table)
    {
        return notes_->connect()->query(u"SELECT * FROM [" + table + u"]")->columns();
    }

    tests::TestNotebook notes_;
    tests::MemoryWindow window_;
};

INSTANTIATE_TEST_SUITE_P(Formats, SearchFields, testing::Values(u"notes.mdb", u"notes.accdb"),
    [](const auto& test) { return test.param == std::u16string(u"notes.mdb") ? "mdb" : "accdb"; });

TEST_P(SearchFields, OfAFreshTableShowTheBodyAlone)
{
    EXPECT_TRUE(rebuild());
    EXPECT_THAT(fields(),
        ElementsAre(
            u"ID", u"VLHEAD+", u"VLTEXT+Full Text Search", u"VLTYPE", u"VLDATE", u"VLLINK+", u"VLMD5"));
    notes_->chinese = true;
    EXPECT_TRUE(rebuild());
    EXPECT_EQ(fields()[2], u"VLTEXT+全文搜索");
    EXPECT_EQ(window_.lstHeads.tag(), u"");
    EXPECT_THAT(notes_.shown(), IsEmpty());
}

TEST_P(SearchFields, WithoutTheBodyFindOnlyTitlesAndPaths)
{
    notes_.run(u"INSERT INTO [Notes] (VLHEAD, VLTEXT, VLDATE, VLLINK) VALUES ('title', 'words of the body', "
               u"'2001-1-1', 'C:\\source.txt')");
    ASSERT_TRUE(rebuild());
    EXPECT_THAT(found(u"BODY"), ElementsAre(u"title"));
    toggleSearchField(window_.mnu_AvailFields, 2);
    EXPECT_THAT(found(u"body"), IsEmpty());
    EXPECT_THAT(found(u"title"), ElementsAre(u"title"));
    EXPECT_THAT(found(u"source"), ElementsAre(u"title"));
    toggleSearchField(window_.mnu_AvailFields, 2);
    EXPECT_THAT(found(u"body"), ElementsAre(u"title"));
    toggleSearchField(window_.mnu_AvailFields, 2);
    ASSERT_TRUE(rebuild());
    EXPECT_THAT(found(u"body"), ElementsAre(u"title")) << "another table begins with all of them";
}

TEST_P(SearchFields, OldTablesGainTheirColumns)
{
    const Texts whole = {u"ID", u"VLHEAD", u"VLTEXT", u"VLTYPE", u"VLDATE", u"VLLINK", u"VLMD5"};
    const std::pair<std::u16string, std::u16string> tables[] = {{u"Five", std::u16string(kFiveColumns)},
        {u"Six", std::u16string(kFiveColumns) + u", VLLINK TEXT(255)"}};
    for (const auto& [name, columnsBefore] : tables) {
        SCOPED_TRACE(name == u"Five" ? "five columns" : "six columns");
        makeTable(name, columnsBefore);
        notes_.run(u"INSERT INTO [" + name + u"] (VLHEAD, VLTEXT) VALUES ('old', 'body')");
        window_.lstHeads.setTag(u"");
        EXPECT_TRUE(rebuild(name));
        EXPECT_EQ(columns(name), whole);
        EXPECT_EQ(window_.lstHeads.tag(), u"1") << "the digests are to be filled";
        EXPECT_EQ(fields()[5], u"VLLINK+");
        EXPECT_EQ(fields()[6], u"VLMD5");
        EXPECT_THAT(
            notes_.rows(u"SELECT * FROM [" + name + u"]"), ElementsAre(u"1|old|body|NULL|NULL|NULL|NULL"));
        EXPECT_THAT(found(u"body"), ElementsAre(u"old"));
        notes_.run(u"UPDATE [" + name + u"] SET VLMD5='" + std::u16string(32, u'f') + u"'");
        EXPECT_THROW(notes_.run(u"UPDATE [" + name + u"] SET VLMD5='" + std::u16string(33, u'f') + u"'"),
            ProviderError);
        window_.lstHeads.setTag(u"");
        EXPECT_TRUE(rebuild(name));
        EXPECT_EQ(window_.lstHeads.tag(), u"") << "only the first time";
    }
    EXPECT_THAT(notes_.shown(), IsEmpty());
}

TEST_P(SearchFields, OtherTablesAreLeftAsTheyAre)
{
    const std::pair<std::u16string, Texts> tables[] = {
        {u"A TEXT(50), B TEXT(50)", {u"A", u"B"}},
        {u"VLHEAD TEXT(255), ID COUNTER, VLTEXT MEMO, VLTYPE TEXT(255), VLDATE DATETIME",
            {u"VLHEAD", u"ID", u"VLTEXT", u"VLTYPE", u"VLDATE"}},
        {std::u16string(kFiveColumns) + u", VLMD5 TEXT(32)",
            {u"ID", u"VLHEAD", u"VLTEXT", u"VLTYPE", u"VLDATE", u"VLMD5"}},
    };
    for (std::size_t i = 0; i < std::size(tables); ++i) {
        const std::u16string name = u"Other" + std::u16string(1, static_cast<char16_t>(u'1' + i));
        makeTable(name, tables[i].first);
        const std::size_t lines = notes_.shown().size();
        EXPECT_TRUE(rebuild(name));
        EXPECT_EQ(columns(name), tables[i].second);
        EXPECT_EQ(notes_.shown().size(), lines + 1);
        EXPECT_EQ(window_.lstHeads.tag(), u"");
    }
}

TEST_P(SearchFields, OfANarrowerTableHideTheRest)
{
    ASSERT_TRUE(rebuild());
    makeTable(u"Narrow", u"VLHEAD TEXT(50), B TEXT(50)");
    EXPECT_TRUE(rebuild(u"Narrow"));
    for (std::size_t i = 0; i < window_.mnu_AvailFields.size(); ++i)
        EXPECT_FALSE(window_.mnu_AvailFields.at(i).visible) << i;
    EXPECT_TRUE(window_.mnu_AvailFields.at(2).checked) << "its old state";
}

TEST_P(SearchFields, KeepWhatWasSetWhenTheTableCannotBeRead)
{
    ASSERT_TRUE(rebuild());
    const Texts before = fields();
    EXPECT_FALSE(rebuild(u"Missing"));
    EXPECT_EQ(fields(), before);
    ASSERT_EQ(notes_.shown().size(), 1u);
    EXPECT_EQ(notes_.shown()[0].back(), u')');
    EXPECT_EQ(notes_.shown()[0].find(u"dbQuery"), std::u16string::npos);
}

// A table of an old version that cannot be given its columns: the count of records is no answer to that.
TEST_P(SearchFields, AFailedUpgradeIsNotHiddenByTheCount)
{
    makeTable(u"Old", kFiveColumns);
    notes_.run(u"INSERT INTO [Old] (VLHEAD, VLDATE) VALUES ('title', 1)");
    notes_->dbTable = u"Old";
    tests::FailingProvider provider;
    provider.refuses = [](std::u16string_view sql, int) { return sql.starts_with(u"ALTER"); };
    notes_->provider = &provider;
    Moments moments;
    moments.tableOpened.add([&] { rebuildSearchFields(*notes_, window_.mnu_AvailFields, window_.lstHeads); });
    RecordCommands records(*notes_, window_.ports(), moments);
    Texts shown;
    Gate gate(
        *notes_, notes_.collected(), {[&](const std::u16string& line) { shown.push_back(line); }, [] {}});
    gate.run([&](const Turn&) { records.start(); });
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_TRUE(shown[0].starts_with(u"The field VLLINK could not be added")) << text::toUtf8(shown[0]);
    EXPECT_THAT(window_.lstHeads.texts(), ElementsAre(u"title"));
    EXPECT_EQ(columns(u"Old").size(), 5u);
}

TEST_P(SearchFields, OfAnOldTableInAReadOnlyFileSayWhy)
{
    makeTable(u"Five", kFiveColumns);
    notes_.folder().setReadOnly(GetParam(), true);
    EXPECT_FALSE(rebuild(u"Five"));
    notes_.folder().setReadOnly(GetParam(), false);
    EXPECT_EQ(columns(u"Five").size(), 5u);
    EXPECT_EQ(fields()[2], u"VLTEXT+Full Text Search");
    EXPECT_EQ(notes_.shown().size(), 1u);
    EXPECT_EQ(window_.lstHeads.tag(), u"");
}

} // namespace
} // namespace vellums

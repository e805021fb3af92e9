// CREATE INDEX and DROP INDEX: what stands in the definition and in the tree, what is refused, what is given
// back. The checker compares every entry with the rows.
#include "jet/catalogue/catalogue.h"
#include "jet/database.h"
#include "jet/index/bTree.h"
#include "jet/table/indexKeys.h"
#include "platform/files.h"
#include "tests/jet/fixturesFolder.h"
#include "tests/support/bareFile.h"
#include "tests/support/smallMemory.h"
#include "tests/support/soundFile.h"
#include "tests/support/temporaryFolder.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

using tests::expectSound;
using text::decimal;
using text::toUtf8;

std::string errorOf(Database& database, std::u16string_view sql)
{
    try {
        database.run(sql);
        return "(none)";
    } catch (const Error& error) {
        return std::to_string(error.native) + " " + toUtf8(error.description);
    }
}

TableDefinition definitionOf(const std::u16string& path, const std::u16string& name)
{
    PageFile file(path, OpenMode::Read);
    return readTableDefinition(file, static_cast<PageNo>(Catalogue(file).find(name).value().id));
}

std::vector<std::u16string> indexNames(const TableDefinition& definition)
{
    std::vector<std::u16string> names;
    for (const LogicalIndex& index : definition.logicalIndexes)
        names.push_back(index.name);
    return names;
}

// The definition without what differs from place to place: its own head, where maps and roots lie, counters.
Bytes comparable(TableDefinition definition)
{
    definition.ownedMap = definition.freeMap = {};
    for (Column& column : definition.columns)
        column.ownedMap = column.freeMap = {};
    for (PhysicalIndex& index : definition.physicalIndexes) {
        index.usageMap = {};
        index.root = 0;
    }
    storePlaces(definition);
    for (const std::size_t counter : definition.counterOffsets)
        store<std::uint32_t>(definition.joined, counter + 4, 0);
    return {definition.joined.begin() + 8, definition.joined.end()};
}

class IndexStatements : public testing::TestWithParam<FileFormat> {
protected:
    IndexStatements()
        : memory_(GetParam() == FileFormat::Jet4 ? 12 : 200, GetParam() != FileFormat::Jet4)
        , path_(folder_.file(u"notes.mdb"))
    {
        createDatabase(path_, GetParam(), 45000);
        db_ = std::make_unique<Database>(path_);
    }
    ~IndexStatements() override { expectSound(path_); }

    void run(const std::u16string& sql) { db_->run(sql); }
    std::string refusal(const std::u16string& sql) { return errorOf(*db_, sql).substr(0, 5); }
    TableDefinition definition(const std::u16string& name = u"T") { return definitionOf(path_, name); }

    // Entries and pages of a tree, by the name of its index; the pages that its map names are among them.
    std::pair<std::size_t, std::size_t> treeSize(const std::u16string& index)
    {
        PageFile file(path_, OpenMode::Read);
        const TableDefinition table = definition();
        for (const LogicalIndex& name : table.logicalIndexes)
            if (name.name == index) {
                const auto report =
                    BTree(file, treeOf(table, table.physicalIndexes[name.physical])).inspect();
                return {report.entries.size(), report.pages.size()};
            }
        return {};
    }

    tests::SmallMemory memory_;
    tests::TemporaryFolder folder_;
    std::u16string path_;
    std::unique_ptr<Database> db_;
};

INSTANTIATE_TEST_SUITE_P(BothFormats, IndexStatements, testing::Values(FileFormat::Jet4, FileFormat::Ace12),
    [](const auto& which) { return which.param == FileFormat::Jet4 ? "Mdb" : "Accdb"; });

TEST_P(IndexStatements, MakeTheDefinitionThatTheTableWouldHaveBeenMadeWith)
{
    run(u"CREATE TABLE [A] (K LONG, M MEMO, D DATETIME, CONSTRAINT Zz UNIQUE (D DESC, K), "
        u"CONSTRAINT aB UNIQUE (M), CONSTRAINT Pk PRIMARY KEY (K))");
    run(u"CREATE TABLE [B] (K LONG, M MEMO, D DATETIME)");
    const Bytes bare = comparable(definition(u"B"));
    run(u"CREATE UNIQUE INDEX [Zz] ON [B] (D DESC, K ASC)");
    run(u"CREATE UNIQUE INDEX aB ON B (m)");
    run(u"CREATE INDEX Pk ON B (K) WITH PRIMARY");
    EXPECT_EQ(comparable(definition(u"B")), comparable(definition(u"A")));
    EXPECT_EQ(indexNames(definition(u"B")), (std::vector<std::u16string>{u"aB", u"Pk", u"Zz"}));
    run(u"CREATE INDEX N1 ON B (D) WITH IGNORE NULL");
    run(u"CREATE UNIQUE INDEX N2 ON B (D) WITH DISALLOW NULL");
    EXPECT_EQ(definition(u"B").physicalIndexes[3].flags, 0x82);
    EXPECT_EQ(definition(u"B").physicalIndexes[4].flags, 0x89);
    for (const char16_t* const name : {u"ZZ", u"N1", u"Pk"})
        run(std::u16string(u"DROP INDEX ") + name + u" ON B");
    EXPECT_EQ(indexNames(definition(u"B")), (std::vector<std::u16string>{u"aB", u"N2"}));
    EXPECT_EQ(definition(u"B").logicalIndexes[0].physical, 0u);
    EXPECT_EQ(definition(u"B").logicalIndexes[1].physical, 1u);
    run(u"CREATE INDEX Again ON B (D)");
    EXPECT_EQ(definition(u"B").logicalIndexes[1].number, 0u) << "the smallest that is free";
    for (const char16_t* const name : {u"aB", u"Again", u"N2"})
        run(std::u16string(u"DROP INDEX ") + name + u" ON B");
    EXPECT_EQ(comparable(definition(u"B")), bare);
}

TEST_P(IndexStatements, HoldEveryRowAndFollowTheirChanges)
{
    run(u"CREATE TABLE [T] (N LONG, S VARCHAR(200), M MEMO)");
    db_->beginBatch();
    for (int i = 0; i < 600; ++i)
        run(u"INSERT INTO [T] VALUES (" + decimal(i * 7 % 600) + u", '" +
            std::u16string(static_cast<std::size_t>(i % 5 * 30), static_cast<char16_t>(u'a' + i % 26)) +
            u"', " + (i % 3 == 0 ? u"NULL" : u"'" + std::u16string(i % 3 == 1 ? 40 : 3000, u'm') + u"'") +
            u")");
    run(u"UPDATE [T] SET S='" + std::u16string(180, u'z') + u"' WHERE N<200"); // many move
    db_->endBatch();
    run(u"CREATE UNIQUE INDEX ByN ON [T] (N)");
    run(u"CREATE INDEX ByText ON [T] (S DESC, M)");
    run(u"CREATE INDEX Sparse ON [T] (M) WITH IGNORE NULL");
    EXPECT_EQ(treeSize(u"ByN").first, 600u);
    EXPECT_EQ(treeSize(u"ByText").first, 600u);
    EXPECT_GT(treeSize(u"ByText").second, 3u);
    EXPECT_EQ(treeSize(u"Sparse").first, 400u);
    const TableDefinition made = definition();
    EXPECT_EQ(load<std::uint32_t>(made.joined, made.counterOffsets[0] + 4), 600u);
    expectSound(path_);
    {
        PageFile file(path_, OpenMode::Read);
        const Table table = Catalogue(file).open(Catalogue(file).find(u"T").value());
        const auto found = table.findLong(0, 7);
        ASSERT_TRUE(found && found->size() == 1);
        EXPECT_EQ(table.rowAt(found->front()).value(0), Value(7));
    }
    EXPECT_EQ(refusal(u"INSERT INTO [T] (N) VALUES (599)"), "3022 ");
    run(u"INSERT INTO [T] (N, S) VALUES (600, 'new')");
    run(u"UPDATE [T] SET N=N+1000, M='now' WHERE N BETWEEN 100 AND 300");
    run(u"DELETE FROM [T] WHERE N>1250");
    EXPECT_EQ(treeSize(u"ByN").first, 551u);
    expectSound(path_);
    run(u"DROP INDEX ByN ON [T]");
    run(u"INSERT INTO [T] (N) VALUES (600)");
    EXPECT_EQ(treeSize(u"ByText").first, 552u);
    EXPECT_EQ(refusal(u"CREATE UNIQUE INDEX ByN ON [T] (N)"), "3022 ");
}

TEST_P(IndexStatements, KnowWhatMayBeNullOrRepeat)
{
    run(u"CREATE TABLE [T] (A LONG, B VARCHAR(9))");
    run(u"INSERT INTO [T] VALUES (NULL, NULL)");
    run(u"INSERT INTO [T] VALUES (NULL, NULL)");
    run(u"INSERT INTO [T] VALUES (1, 'Tax')");
    run(u"CREATE UNIQUE INDEX Nulls ON [T] (A, B DESC)");
    EXPECT_EQ(treeSize(u"Nulls").first, 3u);
    run(u"INSERT INTO [T] VALUES (NULL, 'TAX')");
    EXPECT_EQ(refusal(u"CREATE INDEX X ON [T] (A) WITH PRIMARY"), "3314 ");
    EXPECT_EQ(errorOf(*db_, u"CREATE INDEX X ON [T] (B, A) WITH DISALLOW NULL").substr(0, 20),
        "3314 The field 'T.B'");
    EXPECT_EQ(refusal(u"CREATE UNIQUE INDEX X ON [T] (B)"), "3022 ") << "case does not count";
    run(u"DELETE FROM [T] WHERE A IS NULL");
    run(u"CREATE INDEX X ON [T] (B) WITH DISALLOW NULL");
    EXPECT_EQ(refusal(u"INSERT INTO [T] (A) VALUES (2)"), "3314 ");
    EXPECT_EQ(refusal(u"INSERT INTO [T] VALUES (2, 'tax')"), "(none") << "it is not unique";
}

TEST_P(IndexStatements, WhatIsRefusedLeavesTheFileAsItWas)
{
    run(u"CREATE TABLE [T] (K LONG PRIMARY KEY, S VARCHAR(9), O IMAGE)");
    run(u"CREATE INDEX [One] ON [T] (S)");
    std::u16string eleven = u"K";
    for (int i = 0; i < 10; ++i)
        eleven += u", S";
    const std::string before = tests::bytesOf(path_);
    const std::pair<std::u16string, std::string> refused[] = {
        {u"CREATE INDEX ONE ON [T] (K)", "3284 Table 'T' already has an index named 'ONE'."},
        {u"CREATE INDEX X ON [T] (K) WITH PRIMARY", "3283 Primary key already exists."},
        {u"CREATE INDEX X ON [T] (Missing)", "3409 "},
        {u"CREATE INDEX X ON [T] (O)", "3409 "},
        {u"CREATE INDEX X ON [T] (S, s)", "3409 "},
        {u"CREATE INDEX X ON [T] (" + eleven + u")", "3286 "},
        {u"CREATE INDEX [a.b] ON [T] (K)", "3125 "},
        {u"CREATE INDEX X ON [Missing] (K)", "3078 "},
        {u"CREATE INDEX X ON [MSysObjects] (Name)", "0 "},
        {u"CREATE INDEX X ON [T] K", "3291 "},
        {u"DROP INDEX X ON [T]", "3372 No such index 'X' on table 'T'."},
        {u"DROP INDEX One ON [Missing]", "3376 Table 'Missing' does not exist."},
        {u"DROP INDEX Id ON [MSysObjects]", "0 "},
        {u"DROP INDEX One", "3295 "},
    };
    for (const auto& [sql, error] : refused) {
        EXPECT_EQ(errorOf(*db_, sql).substr(0, error.size()), error) << toUtf8(sql);
        EXPECT_EQ(tests::bytesOf(path_), before) << toUtf8(sql);
    }
}

// The definition and the maps grow over one page; all of it is given back.
TEST_P(IndexStatements, ComeAndGoWithoutTheFileGrowing)
{
    std::u16string wide = u"CREATE TABLE [T] (N LONG";
    for (int i = 0; i < 20; ++i)
        wide += u", M" + decimal(i) + u" MEMO";
    run(wide + u")");
    for (int i = 0; i < 500; ++i)
        run(u"INSERT INTO [T] (N) VALUES (" + decimal(i) + u")");
    const Bytes bare = comparable(definition());
    std::uint64_t size = 0;
    for (int round = 0; round < 10; ++round) {
        db_->beginBatch();
        for (int i = 0; i < 32; ++i)
            run(u"CREATE INDEX [A long name for an index, number " + decimal(i) + u"] ON [T] (N)");
        EXPECT_EQ(refusal(u"CREATE INDEX [One too many] ON [T] (N)"), "3626 ");
        db_->endBatch();
        if (round == 0)
            expectSound(path_);
        EXPECT_EQ(definition().pages.size(), 2u);
        EXPECT_NE(definition().physicalIndexes[31].usageMap.page, definition().ownedMap.page);
        for (int i = 0; i < 32; ++i)
            run(u"DROP INDEX [A long name for an index, number " + decimal((i * 5 + round) % 32) +
                u"] ON [T]");
        if (round == 1)
            size = platform::fileSize(path_).value();
        EXPECT_TRUE(comparable(definition()) == bare);
    }
    EXPECT_EQ(platform::fileSize(path_).value(), size);
}

// Other programs let names share a tree, above all those of relationships.
TEST_P(IndexStatements, LeaveATreeThatHasAnotherName)
{
    run(u"CREATE TABLE [T] (N LONG, M LONG)");
    run(u"CREATE INDEX M ON [T] (M)");
    run(u"CREATE UNIQUE INDEX N1 ON [T] (N)");
    run(u"INSERT INTO [T] VALUES (1, 1)");
    {
        const PageNo page = definition().page;
        PageFile file(path_, OpenMode::Write);
        TableDefinition table = readTableDefinition(file, page);
        const DefinitionParts parts = partsOf(table);
        LogicalIndex second = table.logicalIndexes[1];
        second.name = u"N2";
        second.number = 2;
        Bytes name;
        appendName(name, second.name);
        Bytes record;
        appendLogicalRecord(record, second);
        insertBytes(table.joined, skipNames(table.joined, parts.indexNames, 2), name);
        insertBytes(table.joined, parts.indexNames, record);
        store<std::uint32_t>(table.joined, kJet4.definition.logicalIndexes, 3);
        writeDefinitionBytes(file, table);
        file.commit();
    }
    expectSound(path_);
    run(u"DROP INDEX N1 ON [T]");
    expectSound(path_);
    EXPECT_EQ(refusal(u"INSERT INTO [T] VALUES (1, 2)"), "3022 ");
    run(u"DROP INDEX M ON [T]");
    EXPECT_EQ(refusal(u"INSERT INTO [T] VALUES (1, 2)"), "3022 ");
    run(u"DROP INDEX N2 ON [T]");
    EXPECT_TRUE(definition().physicalIndexes.empty());
}

// Every table of other programs' files gets an index or is refused; every index goes or is refused.
TEST(ForeignTables, GetIndexesAndLoseThem)
{
    int made = 0;
    int dropped = 0;
    int related = 0;
    int refused = 0;
    for (const char* name : {"adox_jet4.mdb", "bigIndexTestV2000.mdb", "compIndexTestV2010.accdb",
             "calcFieldTestV2010.accdb", "delColTestV2000.mdb", "fixedTextTestV2010.accdb",
             "indexTestV2000.mdb", "indexTestV2010.accdb", "overflowTestV2000.mdb", "test2V2000.mdb",
             "testIndexPropertiesV2010.accdb", "testPromotionV2000.mdb", "testV2010.accdb"}) {
        SCOPED_TRACE(name);
        const std::string original = tests::fixtureBytes(name);
        if (original.empty())
            continue;
        const tests::TemporaryFolder folder;
        const std::u16string path = folder.write(u"copy.mdb", original);
        Database database(path);
        for (const TableInfo& table : database.tables()) {
            if (table.kind != TableKind::Table)
                continue;
            const TableDefinition before = definitionOf(path, table.name);
            SCOPED_TRACE(toUtf8(table.name));
            if (errorOf(database,
                    u"CREATE INDEX [new one] ON [" + table.name + u"] ([" + before.columns[0].name +
                        u"] DESC)") == "(none)") {
                ++made;
                expectSound(path);
                EXPECT_EQ(errorOf(database, u"DROP INDEX [NEW ONE] ON [" + table.name + u"]"), "(none)");
                expectSound(path);
                EXPECT_EQ(comparable(definitionOf(path, table.name)), comparable(before));
            }
            for (const std::u16string& index : indexNames(before)) {
                const std::string whole = tests::bytesOf(path);
                const std::string answer =
                    errorOf(database, u"DROP INDEX [" + index + u"] ON [" + table.name + u"]");
                if (answer == "(none)") {
                    ++dropped;
                    expectSound(path);
                } else {
                    ++(answer.substr(0, 5) == "3281 " ? related : refused);
                    EXPECT_EQ(tests::bytesOf(path), whole);
                }
            }
        }
    }
    if (made + dropped + related + refused == 0)
        GTEST_SKIP() << "no fixtures";
    EXPECT_EQ(made, 17);
    EXPECT_EQ(dropped, 34);
    EXPECT_EQ(related, 12);
    EXPECT_EQ(refused, 9);
}

} // namespace
} // namespace vellums::jet

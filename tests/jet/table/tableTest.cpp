#include "jet/table/table.h"

#include "jet/catalogue/blankDatabase.h"
#include "jet/catalogue/catalogue.h"
#include "jet/table/valueCodec.h"
#include "jet/upkeep/checker.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace vellums::jet {
namespace {

constexpr std::size_t kId = 0;
constexpr std::size_t kTitle = 1;
constexpr std::size_t kBody = 2;
constexpr std::size_t kNumber = 3;

ColumnSpec spec(std::u16string name, ColumnType type, std::uint16_t length = 0)
{
    ColumnSpec column;
    column.name = std::move(name);
    column.type = type;
    column.length = length;
    return column;
}

class TableTest : public testing::TestWithParam<FileFormat> {
protected:
    TableTest()
    {
        createDatabase(path, GetParam(), 45000);
        PageFile file(path, OpenMode::Write);
        TableSpec notes;
        notes.name = u"Notes";
        notes.columns = {spec(u"ID", ColumnType::Long), spec(u"Title", ColumnType::Text, 255),
            spec(u"Body", ColumnType::Memo), spec(u"Number", ColumnType::Long)};
        notes.columns[0].autoNumber = true;
        IndexSpec byId;
        byId.name = u"ById";
        byId.columns = {{u"ID", true}};
        byId.unique = true;
        IndexSpec byNumber;
        byNumber.name = u"ByNumber";
        byNumber.columns = {{u"Number", false}};
        IndexSpec byTitle;
        byTitle.name = u"ByTitle";
        byTitle.columns = {{u"Title", true}, {u"Number", true}};
        notes.indexes = {byId, byNumber, byTitle};
        Catalogue(file).createTable(notes);
        file.commit();
    }
    // Runs the work on the table and commits it; then the checker walks the whole file.
    template <typename Work>
    void change(Work&& work)
    {
        {
            PageFile file(path, OpenMode::Write);
            const Catalogue catalogue(file);
            Table table = catalogue.open(*catalogue.find(u"Notes"));
            work(table);
            file.commit();
        }
        PageFile file(path, OpenMode::Read);
        for (const std::u16string& fault : checkFile(file))
            ADD_FAILURE() << std::string(fault.begin(), fault.end());
    }
    // ID to title, body and number, as a new reader finds them.
    std::map<std::int32_t, std::vector<Value>> content() const
    {
        PageFile file(path, OpenMode::Read);
        const Catalogue catalogue(file);
        const Table table = catalogue.open(*catalogue.find(u"Notes"));
        std::map<std::int32_t, std::vector<Value>> rows;
        table.forEachRow([&](const Row& row) {
            rows[std::get<std::int32_t>(row.value(kId))] = {
                row.value(kTitle), row.value(kBody), row.value(kNumber)};
            return true;
        });
        return rows;
    }
    static RowRef place(const Table& table, std::int32_t id) { return table.findLong(kId, id)->front(); }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"table.db");
};

// Where the stored form of a long text changes.
const std::size_t kBodySizes[] = {
    0, 1, 2, 32, 33, 1024, 1025, 2037, 2038, 2039, 4071, 4072, 4073, 8144, 50000};

std::u16string textOfSize(std::size_t size, std::uint32_t seed)
{
    std::u16string text(size, seed % 3 == 0 ? u'記' : u'a');
    for (std::size_t i = 0; i < size; i += 7)
        text[i] = static_cast<char16_t>(u'b' + (seed + i) % 20);
    return text;
}

// Rows that grow, shrink, move, return and go, with long values of every form, against a map.
TEST_P(TableTest, HoldsWhatAMapHoldsThroughAnyMixtureOfChanges)
{
    for (const unsigned seed : {1u, 2u, 3u}) {
        std::mt19937 generator(seed);
        const auto random = [&](std::size_t below) { return static_cast<std::size_t>(generator() % below); };
        std::map<std::int32_t, std::vector<Value>> model = content();
        for (int round = 0; round < 8; ++round) {
            change([&](Table& table) {
                for (int i = 0; i < 60; ++i) {
                    const auto salt = static_cast<std::uint32_t>(generator());
                    std::vector<Value> values(3);
                    if (random(8) != 0)
                        values[0] = textOfSize(random(256), salt);
                    if (random(8) != 0)
                        values[1] =
                            textOfSize(kBodySizes[random(random(6) == 0 ? std::size(kBodySizes) : 6)], salt);
                    if (random(4) != 0)
                        values[2] = static_cast<std::int32_t>(salt) % 50;
                    const std::size_t action = model.empty() ? 0 : random(round < 6 ? 3 : 5);
                    if (action == 0) {
                        const std::int32_t id =
                            table.insert({{kTitle, values[0]}, {kBody, values[1]}, {kNumber, values[2]}});
                        model[id] = values;
                        continue;
                    }
                    const auto chosen =
                        std::next(model.begin(), static_cast<std::ptrdiff_t>(random(model.size())));
                    if (action <= 2) {
                        const std::size_t column = random(3);
                        table.update(place(table, chosen->first), {{kTitle + column, values[column]}});
                        chosen->second[column] = values[column];
                    } else {
                        table.erase(place(table, chosen->first));
                        model.erase(chosen);
                    }
                }
            });
            ASSERT_EQ(content(), model) << "seed " << seed << " round " << round;
        }
    }
}

TEST_P(TableTest, ReplacesLongTextsOfEachFormByEachOther)
{
    std::int32_t id = 0;
    change([&](Table& table) { id = table.insert({{kTitle, std::u16string(u"t")}}); });
    for (const std::size_t before : kBodySizes) {
        change([&](Table& table) {
            for (const std::size_t after : kBodySizes) {
                table.update(place(table, id), {{kBody, textOfSize(before, 3)}});
                table.update(place(table, id), {{kBody, textOfSize(after, 4)}});
            }
            table.update(place(table, id), {{kBody, textOfSize(before, 5)}});
        });
        EXPECT_EQ(content()[id][1], Value(textOfSize(before, 5))) << before;
    }
}

// The pages of long texts are told from others by their mark, their rows from those that moved or are gone.
TEST_P(TableTest, ReadsNoLongTextFromWhatIsNone)
{
    change([&](Table& table) { table.insert({{kBody, textOfSize(3000, 1)}}); });
    for (const bool mark : {true, false}) {
        PageFile file(path, OpenMode::Write); // not committed
        const Catalogue catalogue(file);
        const Table table = catalogue.open(*catalogue.find(u"Notes"));
        for (PageNo page = 0; page < file.pageCount(); ++page) {
            const PageView seen = file.read(page);
            if (seen[0] != std::byte{1} || load<std::uint32_t>(seen, 4) != 0x4C41564C)
                continue;
            file.write(page)[mark ? 4 : 15] ^= std::byte{0x80}; // the first row's flags
        }
        EXPECT_THROW(table.forEachRow([&](const Row& row) { return !isNull(row.value(kBody)); }), Error);
    }
}

// What is deleted is used again: filling and emptying a table twice costs the file nothing more.
TEST_P(TableTest, UsesFreedPagesAgain)
{
    std::uint64_t afterFirst = 0;
    for (int time = 0; time < 3; ++time) {
        change([&](Table& table) {
            for (std::uint32_t i = 0; i < 300; ++i)
                table.insert({{kTitle, textOfSize(100, i)}, {kBody, textOfSize(kBodySizes[i % 15], i)},
                    {kNumber, static_cast<std::int32_t>(i)}});
        });
        change([&](Table& table) {
            std::vector<RowRef> homes;
            table.forEachRow([&](const Row& row) {
                homes.push_back(row.home());
                return true;
            });
            for (const RowRef home : homes)
                table.erase(home);
        });
        const std::uint64_t size = *platform::fileSize(path);
        if (time == 0)
            afterFirst = size;
        EXPECT_EQ(size, afterFirst) << "time " << time;
    }
    EXPECT_TRUE(content().empty());
}

// Other programs choose an index by the number of its different keys.
TEST_P(TableTest, CountsTheDifferentKeysOfEachIndex)
{
    change([&](Table& table) {
        for (const std::int32_t number : {5, 6, 5})
            table.insert({{kTitle, std::u16string(u"t")}, {kNumber, number}});
    });
    PageFile file(path, OpenMode::Read);
    const auto page = static_cast<PageNo>(Catalogue(file).find(u"Notes")->id);
    const TableDefinition definition = readTableDefinition(file, page);
    std::vector<std::uint32_t> different;
    for (const std::size_t offset : definition.counterOffsets)
        different.push_back(load<std::uint32_t>(definition.joined, offset + 4));
    EXPECT_EQ(different, (std::vector<std::uint32_t>{3, 2, 2}));
}

// What other programs write and this engine does not, made by hand: a calculated text lies behind sixteen
// bytes and its length, a text may be of fixed length.
TEST_P(TableTest, ReadsCalculatedAndFixedTexts)
{
    change([&](Table& table) {
        const std::u16string header(8, u'\x4E00');
        table.insert({{kTitle, header + std::u16string({2, 0, u'\x4E8C', u'x'})}, {kNumber, 0x00420041}});
        table.insert({{kTitle, std::u16string(u"short")}, {kNumber, 0}});
    });
    PageFile file(path, OpenMode::Write); // not committed
    const Catalogue catalogue(file);
    const CatalogueEntry notes = *catalogue.find(u"Notes");
    const TableDefinition definition = catalogue.open(notes).definition();
    const std::size_t columns = definition.counterOffsets.back() + kIndexCounter;
    const MutableBytes page = file.write(definition.page);
    page[columns + kTitle * kColumnRecord + 16] |= std::byte{0xC0};
    page[columns + kNumber * kColumnRecord] = static_cast<std::byte>(ColumnType::Text);
    const Table table = catalogue.open(notes);
    const auto texts = [](const Row& row, std::size_t column) {
        Bytes scratch;
        const std::u16string text = toText(row.text(column, scratch));
        EXPECT_EQ(row.value(column), Value(text));
        return text;
    };
    const Row whole = table.rowAt(place(table, 1));
    EXPECT_EQ(texts(whole, kTitle), u"\x4E8C");
    EXPECT_EQ(texts(whole, kNumber), u"AB");
    EXPECT_EQ(texts(table.rowAt(place(table, 2)), kTitle), u"");
}

// What the logical index says counts, not only the flags of the tree: a primary key is unique and required, a
// foreign key with a partner keeps the table from being changed.
TEST_P(TableTest, ObeysTheRolesOfIndexes)
{
    change([&](Table& table) { table.insert({{kTitle, std::u16string(u"t")}, {kNumber, 5}}); });
    const auto refused = [&](std::uint8_t role, std::int32_t partner, const std::vector<Assignment>& row) {
        PageFile file(path, OpenMode::Write); // not committed
        const Catalogue catalogue(file);
        const CatalogueEntry notes = *catalogue.find(u"Notes");
        const TableDefinition definition = catalogue.open(notes).definition();
        std::size_t logical = definition.counterOffsets.back() + kIndexCounter;
        for (const Column& column : definition.columns)
            logical += kColumnRecord + 2 + 2 * column.name.size();
        logical += 52 * definition.physicalIndexes.size();
        while (load<std::uint32_t>(definition.joined, logical + 8) != 1) // the tree of ByNumber
            logical += 28;
        const MutableBytes record = file.write(definition.page).subspan(logical, 28);
        record[23] = static_cast<std::byte>(role);
        store<std::int32_t>(record, 13, partner);
        try {
            Table table = catalogue.open(notes);
            table.requireWritable();
            table.insert(row);
            return 0;
        } catch (const Error& e) {
            return e.native == 0 ? -1 : e.native;
        }
    };
    const std::vector<Assignment> five = {{kNumber, 5}};
    const std::vector<Assignment> none = {{kTitle, std::u16string(u"u")}};
    EXPECT_EQ(refused(0, -1, five), 0);
    EXPECT_EQ(refused(1, -1, five), 3022);
    EXPECT_EQ(refused(1, -1, none), 3314);
    EXPECT_EQ(refused(2, -1, five), 0);
    EXPECT_EQ(refused(2, 0, five), -1);
}

// A column of a type that is only read keeps the whole table from being changed.
TEST_P(TableTest, ChangesNoTableWithTypesThatAreOnlyRead)
{
    for (const unsigned type : {0x00u, 0x0Du, 0x0Eu, 0x11u, 0x12u, 0x14u, 0x20u}) {
        PageFile file(path, OpenMode::Write); // not committed
        const Catalogue catalogue(file);
        const CatalogueEntry notes = *catalogue.find(u"Notes");
        const TableDefinition definition = readTableDefinition(file, static_cast<PageNo>(notes.id));
        const std::size_t number = definition.counterOffsets.back() + 12 + kNumber * 25; // its record
        ASSERT_EQ(file.read(definition.page)[number], std::byte{4});
        file.write(definition.page)[number] = static_cast<std::byte>(type);
        try {
            catalogue.open(notes).requireWritable();
            ADD_FAILURE() << "accepted: " << type;
        } catch (const Error& e) {
            EXPECT_NE(e.description.find(u"type that is only read"), std::u16string::npos) << type;
        }
    }
}

// The place of a long value is no fixed one: there would be no bytes for it.
TEST_P(TableTest, ChangesNoTableWithLongValuesOfFixedLength)
{
    PageFile file(path, OpenMode::Write); // not committed
    const Catalogue catalogue(file);
    const CatalogueEntry notes = *catalogue.find(u"Notes");
    const TableDefinition definition = catalogue.open(notes).definition();
    const std::size_t columns = definition.counterOffsets.back() + kIndexCounter;
    file.write(definition.page)[columns + kBody * kColumnRecord + 15] |= std::byte{1};
    Table table = catalogue.open(notes);
    EXPECT_THROW(table.requireWritable(), Error);
    EXPECT_THROW(table.insert({{kBody, textOfSize(30, 1)}}), Error);
}

// Nothing is written when a value does not fit.
TEST_P(TableTest, RefusesWhatDoesNotFitBeforeAnythingIsWritten)
{
    change([&](Table& table) {
        table.insert({{kId, 5}, {kTitle, std::u16string(u"five")}});
        const auto refused = [&](const std::vector<Assignment>& row, int native) {
            try {
                table.insert(row);
                ADD_FAILURE() << "accepted, wanted " << native;
            } catch (const Error& e) {
                EXPECT_EQ(e.native, native);
            }
        };
        refused({{kTitle, std::u16string(256, u'x')}}, 3163);
        refused({{kTitle, 7}}, 3464);
        refused({{kBody, Bytes(3)}}, 3464);
        refused({{kId, 5}}, 3022);
        EXPECT_EQ(table.insert({}), 6) << "an explicit number raises the counter, a refused row does not";
        table.update(place(table, 6), {{kId, 9}});
        EXPECT_EQ(table.insert({}), 10) << "nor is a number that was given later used again";
    });
    EXPECT_EQ(content().size(), 3u);
}

TEST_P(TableTest, OldRowsReadNullInAnAppendedColumn)
{
    change([&](Table& table) {
        for (int i = 0; i < 50; ++i)
            table.insert({{kTitle, textOfSize(50, 1)}, {kBody, textOfSize(3000, 2)}});
    });
    {
        PageFile file(path, OpenMode::Write);
        Catalogue catalogue(file);
        for (const auto& [name, type] : std::map<std::u16string, ColumnType>{{u"More", ColumnType::Memo},
                 {u"Amount", ColumnType::Currency}, {u"Link", ColumnType::Text},
                 {u"Flag", ColumnType::Boolean}})
            catalogue.addColumn(*catalogue.find(u"Notes"), spec(name, type, 32));
        file.commit();
    }
    change([&](Table& table) {
        const auto more = table.columnIndex(u"more");
        const auto amount = table.columnIndex(u"Amount");
        const auto link = table.columnIndex(u"Link");
        ASSERT_TRUE(more && amount && link);
        table.forEachRow([&](const Row& row) {
            EXPECT_TRUE(row.isNull(*more) && row.isNull(*amount) && row.isNull(*link));
            EXPECT_EQ(row.value(kBody), Value(textOfSize(3000, 2)));
            return true;
        });
        table.update(place(table, 7), {{*more, textOfSize(9000, 6)}, {*amount, Currency{12345}}});
        const Row changed = table.rowAt(place(table, 7));
        EXPECT_EQ(changed.value(*more), Value(textOfSize(9000, 6)));
        EXPECT_EQ(changed.value(*amount), Value(Currency{12345}));
        EXPECT_EQ(changed.value(kTitle), Value(textOfSize(50, 1)));
    });
}

INSTANTIATE_TEST_SUITE_P(InBothFormats, TableTest, testing::Values(FileFormat::Jet4, FileFormat::Ace12),
    [](const auto& test) { return test.param == FileFormat::Jet4 ? "Jet4" : "Ace12"; });

} // namespace
} // namespace vellums::jet

#include "jet/catalogue/catalogue.h"

#include "jet/catalogue/blankDatabase.h"
#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/upkeep/checker.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

// A new file, checked when the test is over.
class NewFile {
public:
    explicit NewFile(FileFormat format)
    {
        createDatabase(folder_.file(u"new.mdb"), format, 45000);
        file_.emplace(folder_.file(u"new.mdb"), OpenMode::Write);
    }
    ~NewFile()
    {
        for (const std::u16string& fault : checkFile(*file_))
            ADD_FAILURE() << std::string(fault.begin(), fault.end());
    }
    PageFile& file() { return *file_; }
    Catalogue catalogue() { return Catalogue(*file_); }

private:
    tests::TemporaryFolder folder_;
    std::optional<PageFile> file_;
};

TableSpec notes(const std::u16string& name)
{
    TableSpec spec{name,
        {{u"ID", ColumnType::Long}, {u"VLHEAD"}, {u"VLTEXT", ColumnType::Memo}, {u"VLTYPE"},
            {u"VLDATE", ColumnType::Date}, {u"VLLINK"}, {u"VLMD5", ColumnType::Text, 32}},
        {{u"VLIDX", {{u"ID"}}, true}}};
    spec.columns[0].autoNumber = true;
    return spec;
}

std::string hex(ByteView bytes)
{
    std::string text;
    for (const std::byte b : bytes) {
        text += "0123456789ABCDEF"[std::to_integer<unsigned>(b) >> 4];
        text += "0123456789ABCDEF"[std::to_integer<unsigned>(b) & 15];
    }
    return text;
}

TEST(CreateTable, WritesTheBytesThatOtherProgramsWrite)
{
    NewFile file(FileFormat::Jet4);
    EXPECT_EQ(file.catalogue().createTable(notes(u"Notes")), 19U);
    const Bytes joined = readTableDefinition(file.file(), 19).joined;
    EXPECT_EQ(joined.size(), 442U);
    EXPECT_EQ(hex(slice(joined, 0, 16)), "02013E0E00000000BA01000059060000");
    EXPECT_EQ(hex(slice(joined, 0x28, 23)), "4E07000500070001000000010000000014000001140000");
    EXPECT_EQ(hex(slice(joined, 0x4B, 50)),
        "0459060000000000000000090400000700000000000000"
        "0400"
        "0A59060000010000000100090400000201000000000000"
        "FE01");
    EXPECT_EQ(hex(slice(joined, 0xAF, 25)),
        "0859060000040003000400090400000300000000000400"
        "0800");
    EXPECT_EQ(hex(slice(joined, 0x152, 52)),
        "8307000000000"
        "1FFFF00FFFF00FFFF00FFFF00FFFF00FFFF00FFFF00FFFF00FFFF00"
        "041400001500000000000000810000000000");
    EXPECT_EQ(hex(slice(joined, 0x186, 28)),
        "590600000000000000000000"
        "00FFFFFFFF0000000004040000000000");
    EXPECT_EQ(hex(slice(joined, 0x1A2, 24)),
        "0A0056004C00490044005800020002140000031400"
        "00FFFF");

    const Table objects(file.file(), kObjectsPage, u"MSysObjects");
    const Row row = objectRow(objects, 19).value();
    EXPECT_EQ(row.bytes().size(), 85U);
    EXPECT_EQ(hex(slice(row.bytes(), 32, 12)), "4E006F00740065007300648B");
    EXPECT_EQ(hex(row.stored(columnOf(objects, u"LvProp")).value()), "990100400016000000000000");
    const Table permissions(file.file(), kPermissionsPage, u"MSysACEs");
    std::vector<std::string> granted;
    permissions.forEachRow([&](const Row& permission) {
        if (numberIn(permission, columnOf(permissions, u"ObjectId")) == 19)
            granted.push_back(hex(permission.bytes()));
        return true;
    });
    EXPECT_EQ(granted,
        (std::vector<std::string>{
            "040013000000FE000F00648B0C000A00010007", "040013000000FFFE0F00658B0C000A00010007"}));
}

TEST(CreateTable, TakesEveryTypeAndReadsItBack)
{
    for (const FileFormat format : {FileFormat::Jet4, FileFormat::Ace12}) {
        NewFile file(format);
        TableSpec spec;
        spec.name = u"笔记 Ä";
        for (const ColumnType type : {ColumnType::Boolean, ColumnType::Byte, ColumnType::Integer,
                 ColumnType::Long, ColumnType::Currency, ColumnType::Single, ColumnType::Double,
                 ColumnType::Date, ColumnType::Binary, ColumnType::Text, ColumnType::Ole, ColumnType::Memo,
                 ColumnType::Guid, ColumnType::Decimal})
            spec.columns.push_back(
                {u"c" + std::u16string(1, static_cast<char16_t>(u'a' + spec.columns.size())), type});
        spec.columns[3].autoNumber = true;
        spec.columns[7].required = true;
        spec.indexes = {
            {u"zz", {{u"cd"}}, false, true}, {u"Aa", {{u"cj", false}, {u"ch"}}}, {u"mm", {{u"ci"}}}};
        file.catalogue().createTable(spec);
        const CatalogueEntry entry = file.catalogue().find(u"笔记 ä  ").value();
        EXPECT_TRUE(entry.isUserTable());
        Table table = file.catalogue().open(entry);
        table.requireWritable();
        EXPECT_EQ(table.definition().logicalIndexes[0].name, u"Aa");
        EXPECT_EQ(table.definition().physicalIndexes[0].flags, 0x89);
        EXPECT_THROW(table.insert({{9, u"no date"}}), Error);
        EXPECT_EQ(table.insert({{0, true}, {7, Date{45000}}, {9, u""}, {11, std::u16string(9000, u'x')}}), 1);
        EXPECT_EQ(table.insert({{7, Date{45001}}, {8, Bytes(20)}, {9, u"Straße"}}), 2);
    }
}

// A definition of 11,996 bytes; 143 maps, 57 to a page.
TEST(CreateTable, SpreadsOverSeveralPages)
{
    NewFile file(FileFormat::Ace12);
    TableSpec spec;
    spec.name = u"Wide";
    for (int i = 0; i < 171; ++i) {
        const std::u16string number(1, static_cast<char16_t>(0x4E00 + i));
        spec.columns.push_back(
            {std::u16string(18, u'n') + number, i < 70 ? ColumnType::Memo : ColumnType::Text, 20});
    }
    spec.indexes = {{u"i", {{spec.columns[100].name}}}};
    file.catalogue().createTable(spec);
    Table table = file.catalogue().open(file.catalogue().find(u"wide").value());
    EXPECT_EQ(table.definition().pages.size(), 3U);
    EXPECT_EQ(table.definition().columns.size(), 171U);
    table.insert({{0, std::u16string(500, u'a')}, {69, std::u16string(5000, u'b')}, {100, u"k"}});
    EXPECT_EQ(table.definition().columns[69].ownedMap.page, table.definition().ownedMap.page + 2);
}

int refusal(NewFile& file, const TableSpec& spec)
{
    try {
        file.catalogue().createTable(spec);
    } catch (const Error& e) {
        return e.native == 0 ? -1 : e.native;
    }
    return 0;
}

TEST(CreateTable, RefusesWhatCannotBe)
{
    NewFile file(FileFormat::Jet4);
    file.catalogue().createTable(notes(u"Notes"));
    EXPECT_EQ(refusal(file, notes(std::u16string(64, u'n'))), 0);
    EXPECT_EQ(refusal(file, notes(u"it's ok")), 0);
    for (const char16_t* name : {u"notes  ", u"ＮＯＴＥＳ", u"Notes"})
        EXPECT_EQ(refusal(file, notes(name)), 3010);
    const std::u16string tooLong(65, u'n');
    for (const std::u16string& name : {std::u16string(u""), std::u16string(u"  "), std::u16string(u" a"),
             tooLong, std::u16string(u"a.b"), std::u16string(u"a!"), std::u16string(u"[a"),
             std::u16string(u"a]"), std::u16string(u"a`"), std::u16string(u"a\tb"), std::u16string(u"MSysX"),
             std::u16string(u"msys"), std::u16string(u"~a")})
        EXPECT_EQ(refusal(file, notes(name)), 3125);
    EXPECT_EQ(refusal(file, notes(u"emoji 😀")), -1) << "no key in General legacy";

    const auto changed = [&](auto&& change) {
        TableSpec spec = notes(u"Other");
        change(spec);
        return refusal(file, spec);
    };
    EXPECT_EQ(changed([](TableSpec& s) { s.columns.clear(); }), 3264);
    EXPECT_EQ(changed([](TableSpec& s) { s.columns[1].name = u"vltext"; }), 3191);
    EXPECT_EQ(changed([](TableSpec& s) { s.columns[1].name = u"a.b"; }), 3125);
    EXPECT_EQ(changed([](TableSpec& s) { s.columns[1].length = 256; }), 3319);
    EXPECT_EQ(changed([](TableSpec& s) { s.columns[1] = {u"N", ColumnType::Long, 0, true}; }), -1);
    EXPECT_EQ(changed([](TableSpec& s) { s.indexes[0].columns[0].column = u"nothing"; }), 3409);
    EXPECT_EQ(changed([](TableSpec& s) { s.indexes.push_back(s.indexes[0]); }), 3284);
    EXPECT_EQ(changed([](TableSpec& s) { s.columns.resize(256, {u"x"}); }), 3190);
    EXPECT_FALSE(file.catalogue().find(u"Other"));
}

TEST(AddColumn, KeepsRowsAndProperties)
{
    for (const FileFormat format : {FileFormat::Jet4, FileFormat::Ace12}) {
        NewFile file(format);
        TableSpec spec = notes(u"Old");
        spec.columns.resize(5);
        spec.columns[4].required = true;
        file.catalogue().createTable(spec);
        const CatalogueEntry entry = file.catalogue().find(u"OLD").value();
        Table before = file.catalogue().open(entry);
        before.insert({{1, u"head"}, {2, std::u16string(4000, u't')}, {4, Date{45000}}});
        file.catalogue().addColumn(entry, {u"VLLINK"});
        file.catalogue().addColumn(entry, {u"VLMD5", ColumnType::Text, 32});
        file.catalogue().addColumn(entry, {u"Body", ColumnType::Memo});
        EXPECT_THROW(file.catalogue().addColumn(entry, {u"vlmd5"}), Error);
        ColumnSpec required{u"Must"};
        required.required = true;
        EXPECT_THROW(file.catalogue().addColumn(entry, required), Error);

        Table table = file.catalogue().open(entry);
        ASSERT_EQ(table.definition().columns.size(), 8U);
        EXPECT_TRUE(table.rules()[4].required);
        EXPECT_EQ(table.definition().columns[6].length, 64);
        table.insert({{4, Date{45001}}, {5, u"link"}, {7, std::u16string(3000, u'b')}});
        std::vector<Value> links;
        table.forEachRow([&](const Row& row) {
            links.push_back(row.value(5));
            return true;
        });
        EXPECT_EQ(links, (std::vector<Value>{Null{}, u"link"}));
    }
}

TEST(Open, MakesATableWithUnreadablePropertiesReadOnly)
{
    NewFile file(FileFormat::Jet4);
    file.catalogue().createTable(notes(u"Notes"));
    Table objects(file.file(), kObjectsPage, u"MSysObjects");
    const CatalogueEntry entry = file.catalogue().find(u"Notes").value();
    const Value good = objects.rowAt(entry.row).value(columnOf(objects, u"LvProp"));
    objects.update(entry.row, {{columnOf(objects, u"LvProp"), Bytes(100)}});
    EXPECT_THROW(file.catalogue().open(entry).requireWritable(), Error);
    EXPECT_THROW(file.catalogue().addColumn(entry, {u"More"}), Error);
    objects.update(entry.row, {{columnOf(objects, u"LvProp"), good}});
    file.catalogue().open(entry).requireWritable();
}

TEST(Entries, TellUserTablesFromTheSystems)
{
    NewFile file(FileFormat::Ace12);
    file.catalogue().createTable(notes(u"Notes"));
    int user = 0;
    for (const CatalogueEntry& entry : file.catalogue().entries())
        user += entry.isUserTable() ? 1 : 0;
    EXPECT_EQ(user, 1);
    EXPECT_EQ(file.catalogue().entries().size(), 15U);
    EXPECT_FALSE(file.catalogue().find(u"Note"));
    EXPECT_FALSE(file.catalogue().find(u"MSysDb")) << "not among the tables";
}

} // namespace
} // namespace vellums::jet

// Real files of other programs: all of them open, are sound and hold the rows that other readers find.
#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/propertySet.h"
#include "jet/catalogue/systemRows.h"
#include "jet/upkeep/checker.h"
#include "tests/jet/fixturesFolder.h"
#include "tests/support/temporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

struct Fixture {
    const char* name;
    int tables;
    int rows;
};

// clang-format off
const Fixture kFixtures[] = {
    {"ASampleDatabase.accdb", 21, 430},
    {"adox_jet4.mdb", 4, 24},
    {"bigIndexTestV2000.mdb", 6, 77},
    {"bigIndexTestV2010.accdb", 22, 214},
    {"binIdxTestV2010.accdb", 22, 336},
    {"calcFieldTestV2010.accdb", 26, 250},
    {"compIndexTestV2000.mdb", 6, 582},
    {"compIndexTestV2010.accdb", 22, 712},
    {"complexDataTestV2010.accdb", 29, 280},
    {"delColTestV2000.mdb", 6, 79},
    {"delColTestV2010.accdb", 22, 217},
    {"delTestV2000.mdb", 7, 84},
    {"delTestV2010.accdb", 23, 220},
    {"fixedNumericTestV2000.mdb", 7, 86},
    {"fixedNumericTestV2010.accdb", 23, 221},
    {"fixedTextTestV2000.mdb", 6, 80},
    {"fixedTextTestV2010.accdb", 22, 212},
    {"indexCursorTestV2000.mdb", 7, 85},
    {"indexCursorTestV2010.accdb", 23, 223},
    {"indexTestV2000.mdb", 13, 182},
    {"indexTestV2010.accdb", 24, 251},
    {"nwind.mdb", 19, 7508},
    {"overflowTestV2000.mdb", 6, 87},
    {"overflowTestV2010.accdb", 22, 224},
    {"queryTestV2000.mdb", 8, 212},
    {"queryTestV2010.accdb", 24, 374},
    {"test2V2000.mdb", 6, 69},
    {"test2V2010.accdb", 22, 199},
    {"testEmoticonsV2010.accdb", 22, 311},
    {"testIndexPropertiesV2000.mdb", 12, 144},
    {"testIndexPropertiesV2010.accdb", 28, 296},
    {"testPromotionV2000.mdb", 10, 142},
    {"testPromotionV2010.accdb", 22, 215},
    {"testV2000.mdb", 9, 92},
    {"testV2010.accdb", 25, 233},
};
// clang-format on

std::string narrow(const std::u16string& text)
{
    return {text.begin(), text.end()};
}

class Fixtures : public testing::TestWithParam<Fixture> {
protected:
    void SetUp() override
    {
        path_ = tests::fixturePath(GetParam().name);
        if (!path_)
            GTEST_SKIP() << "no such file among the fixtures";
    }
    std::optional<std::u16string> path_;
};

TEST_P(Fixtures, AreSoundAndHoldTheirRows)
{
    PageFile file(*path_, OpenMode::Read);
    for (const std::u16string& fault : checkFile(file))
        ADD_FAILURE() << narrow(fault);
    const Catalogue catalogue(file);
    int tables = 0;
    int rows = 0;
    for (const CatalogueEntry& entry : catalogue.entries()) {
        if (entry.type != 1)
            continue;
        ++tables;
        catalogue.open(entry).forEachRow([&rows](const Row&) {
            ++rows;
            return true;
        });
    }
    EXPECT_EQ(tables, GetParam().tables);
    EXPECT_EQ(rows, GetParam().rows);
}

TEST_P(Fixtures, KeepTheirPropertiesThroughParsing)
{
    PageFile file(*path_, OpenMode::Read);
    if (!file.format().writable)
        GTEST_SKIP() << "its properties are not read";
    const Table objects(file, kObjectsPage, u"MSysObjects");
    objects.forEachRow([&](const Row& row) {
        const auto blob = bytesIn(row, columnOf(objects, u"LvProp"));
        const auto parsed = blob ? PropertySet::parse(*blob) : std::nullopt;
        EXPECT_EQ(parsed.has_value(), blob.has_value());
        if (parsed && blob) {
            EXPECT_EQ(parsed->encode(), *blob);
        }
        return true;
    });
}

std::string testName(const testing::TestParamInfo<Fixture>& fixture)
{
    std::string name = fixture.param.name;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, Fixtures, testing::ValuesIn(kFixtures), testName);

TEST(ForeignFiles, AreRefusedAndLeftAsTheyAre)
{
    int seen = 0;
    for (const char* name : {"db-enc.mdb", "db2007-enc.accdb"}) {
        const std::string bytes = tests::fixtureBytes(name);
        if (bytes.empty())
            continue;
        ++seen;
        const tests::TemporaryFolder folder;
        const std::u16string path = folder.write(u"copy.mdb", bytes);
        for (const OpenMode mode : {OpenMode::Read, OpenMode::Write})
            EXPECT_THROW(PageFile(path, mode), Error) << name;
        EXPECT_EQ(tests::bytesOf(path), bytes) << name;
    }
    if (seen == 0)
        GTEST_SKIP() << "no fixtures";
}

} // namespace
} // namespace vellums::jet

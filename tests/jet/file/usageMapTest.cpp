#include "jet/file/maps/usageMap.h"

#include "jet/file/dataPage.h"
#include "jet/file/maps/freePages.h"
#include "tests/support/bareFile.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace vellums::jet {
namespace {

constexpr PageNo kMapPage = 3;

class UsageMapTest : public testing::Test {
protected:
    // A file of that many pages, all in use, with an empty map in row 0 of page 3.
    void open(PageNo pages)
    {
        tests::writeBareFile(path, 4);
        {
            PageFile fresh(path, OpenMode::Write);
            appendRow(fresh.write(kMapPage), Bytes(69), 0);
            FreePages free(fresh);
            while (fresh.pageCount() < pages)
                free.allocate();
            fresh.commit();
        }
        file.emplace(path, OpenMode::Write);
    }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"map.mdb");
    std::optional<PageFile> file;
};

std::vector<PageNo> sorted(const std::set<PageNo>& set)
{
    return {set.begin(), set.end()};
}

// Sets that stay inline, that move their start, and that need the reference form.
TEST_F(UsageMapTest, HoldsAnySetOfPages)
{
    open(1500);
    for (unsigned seed = 1; seed <= 20; ++seed) {
        file->mark();
        std::mt19937 generator(seed);
        const auto random = [&] { return static_cast<PageNo>(generator()); };
        const PageNo low = 4 + random() % 600;
        const PageNo width = seed % 3 == 0 ? 1400 - low : 300 + random() % 220;
        std::set<PageNo> model;
        FreePages free(*file);
        UsageMap map(*file, {kMapPage, 0});
        for (int i = 0; i < 300; ++i) {
            const PageNo page = std::min<PageNo>(1499, low + random() % width);
            if (random() % 3 == 0) {
                map.remove(page);
                model.erase(page);
            } else {
                map.add(page, free);
                model.insert(page);
            }
            ASSERT_TRUE(map.contains(page) == model.contains(page)) << "seed " << seed;
        }
        EXPECT_EQ(map.pages(), sorted(model)) << "seed " << seed;
        for (PageNo below = 1499; below > 0; below -= std::min<PageNo>(below, 97)) {
            const auto next = model.lower_bound(below);
            EXPECT_EQ(map.highestBelow(below), next == model.begin() ? 0 : *std::prev(next))
                << "seed " << seed;
        }
        file->rollbackToMark();
    }
}

TEST_F(UsageMapTest, TakesTheReferenceFormOnlyWhenThePagesLieTooFarApart)
{
    open(1200);
    FreePages free(*file);
    UsageMap map(*file, {kMapPage, 0});
    map.add(600, free);
    map.add(1111, free); // 600 to 1111: the 512 pages of a fresh row
    EXPECT_TRUE(map.bitmapPages().empty());
    map.add(1112, free);
    ASSERT_EQ(map.bitmapPages().size(), 1u);
    EXPECT_FALSE(free.isFree(map.bitmapPages()[0]));
    EXPECT_EQ(map.pages(), (std::vector<PageNo>{600, 1111, 1112}));
}

// The global map grows row by row, and becomes one of pages when page 1 is full (about 32,000 pages).
TEST_F(UsageMapTest, GivesOutEachPageOnceHoweverLongTheFileGrows)
{
    open(4);
    FreePages free(*file);
    std::set<PageNo> given;
    for (int i = 0; i < 70000; ++i) {
        const PageNo page = free.allocate();
        ASSERT_TRUE(page >= 4 && given.insert(page).second) << page;
    }
    EXPECT_FALSE(free.bitmapPages().empty());
    for (const PageNo page : free.bitmapPages())
        EXPECT_FALSE(given.contains(page) || free.isFree(page));
    EXPECT_EQ(file->pageCount(), 4 + given.size() + free.bitmapPages().size()) << "and leaves out none";
    free.release(5, 0x09);
    free.release(60000, 0x09);
    EXPECT_TRUE(free.isFree(60000));
    EXPECT_EQ(free.allocate(), 5u);
    EXPECT_EQ(free.allocate(), 60000u);
    EXPECT_GT(free.allocate(), 69999u);
}

// Maps of other programs may name pages behind the end, and the global map may end before the file does.
TEST_F(UsageMapTest, KeepsToThePagesThatExistAndToTheMap)
{
    open(600);
    FreePages free(*file);
    UsageMap map(*file, {kMapPage, 0});
    map.add(599, free);
    map.add(600, free);
    EXPECT_EQ(map.pages(), std::vector<PageNo>{599});
    EXPECT_EQ(map.highestBelow(1000), 599u);

    const MutableBytes global = file->write(1);
    replaceRow(global, 0, Bytes(5 + 64), 0); // 512 pages
    const Bytes before(global.begin(), global.end());
    free.release(599, 0);
    const PageView now = file->read(1);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), now.bytes().begin()));
    EXPECT_FALSE(free.isFree(599));
}

// A full map of which every page counts as used, though the file ends early: when it becomes one of pages,
// none of them is given out.
TEST_F(UsageMapTest, KeepsPagesBehindTheEndUsedWhenTheMapChangesItsForm)
{
    open(10);
    const MutableBytes global = file->write(1);
    deleteRow(global, 1);
    const auto room = static_cast<std::size_t>(DataPage(ByteView(global)).freeBytes());
    replaceRow(global, 0, Bytes(69 + room / 4 * 4), 0);
    FreePages free(*file);
    EXPECT_GE(free.allocate(), (64 + room / 4 * 4) * 8);
    EXPECT_FALSE(free.bitmapPages().empty());
}

// The last of a row's seventeen pages holds those of the last two megabytes that a file can have.
TEST_F(UsageMapTest, ReadsAllPointersOfARow)
{
    open(10);
    Bytes row(69, std::byte{0});
    row[0] = std::byte{1};
    store<std::uint32_t>(row, 1 + 4 * 16, 7);
    replaceRow(file->write(kMapPage), 0, row, 0);
    EXPECT_EQ(UsageMap(*file, {kMapPage, 0}).bitmapPages(), std::vector<PageNo>{7});

    row.resize(5); // a single pointer
    replaceRow(file->write(kMapPage), 0, row, 0);
    EXPECT_FALSE(UsageMap(*file, {kMapPage, 0}).contains(40000));
}

TEST_F(UsageMapTest, RefusesRowsThatAreNoMaps)
{
    open(10);
    appendRow(file->write(kMapPage), Bytes(3), 0);
    Bytes unknown(69, std::byte{7});
    appendRow(file->write(kMapPage), unknown, 0);
    EXPECT_THROW(UsageMap(*file, {kMapPage, 1}), Error) << "too short";
    EXPECT_THROW(UsageMap(*file, {kMapPage, 2}), Error) << "unknown form";
    EXPECT_THROW(UsageMap(*file, {kMapPage, 9}), Error) << "no such row";
    EXPECT_THROW(UsageMap(*file, {4000, 0}), Error) << "beyond the end";
}

} // namespace
} // namespace vellums::jet

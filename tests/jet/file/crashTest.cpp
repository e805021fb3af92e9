// Statements that are larger than what may wait in memory, on disks that stop, fail and forget.
#include "jet/file/pageFile.h"
#include "tests/support/bareFile.h"
#include "tests/support/crashingDisk.h"
#include "tests/support/sanitized.h"
#include "tests/support/smallMemory.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <random>

namespace vellums::jet {
namespace {

using tests::CrashingDisk;

constexpr std::size_t kWaiting = 4; // changed pages in memory
constexpr PageNo kFirstPages = 12;

void fill(MutableBytes page, unsigned seed)
{
    std::mt19937 random(seed);
    for (std::size_t i = 16; i < page.size(); i += 100) // every sector
        page[i] = static_cast<std::byte>(random());
}

// Changes pages of the file several times, some of them in several segments, and makes it longer.
void changeMuch(PageFile& file)
{
    for (unsigned i = 0; i < 10; ++i) {
        fill(file.write(3 + i * 5 % 9), 100 + i);
        if (i % 3 == 0)
            fill(file.writeNew(kFirstPages + i / 2), 200 + i);
        file.makeRoom();
    }
}

// The same, and in between what is taken back.
void changeInBatch(PageFile& file)
{
    file.mark();
    changeMuch(file);
    file.mark();
    for (PageNo page = 3; page < file.pageCount(); ++page) {
        fill(file.write(page), 300 + page);
        file.makeRoom();
    }
    for (unsigned i = 0; i < 4; ++i) {
        fill(file.writeNew(kFirstPages + 10 + i), 400);
        file.makeRoom();
    }
    file.rollbackToMark();
    fill(file.write(4), 500);
}

// Cuts off pages that were changed, together with others that were not.
void changeAndCut(PageFile& file)
{
    fill(file.write(4), 600);
    fill(file.write(9), 601);
    file.truncate(6);
    fill(file.write(5), 602);
}

class CrashTest : public testing::TestWithParam<bool> {
protected:
    CrashTest()
        : memory_(kWaiting, GetParam())
    {
        tests::writeBareFile(path, kFirstPages);
        before = tests::readBytes(path);
    }

    void restore()
    {
        tests::writeBytes(path, before);
        platform::removeFile(journalPath(path));
    }
    // True when it came to its end.
    bool run(void (*change)(PageFile&))
    {
        try {
            PageFile file(path, OpenMode::Write);
            change(file);
            file.commit();
            return true;
        } catch (...) {
            return false;
        }
    }
    void open(OpenMode mode)
    {
        try {
            const PageFile file(path, mode);
        } catch (...) { // the disk has stopped
        }
    }
    Bytes afterReopening()
    {
        const PageFile file(path, OpenMode::Read);
        EXPECT_EQ(file.journalSetAside(), u"");
        Bytes content;
        for (PageNo page = 0; page < file.pageCount(); ++page) {
            const PageView view = file.read(page);
            append(content, view);
        }
        return content;
    }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"pages.mdb");
    Bytes before;

private:
    tests::SmallMemory memory_;
};

INSTANTIATE_TEST_SUITE_P(
    BothWays, CrashTest, testing::Bool(), [](const auto& way) { return way.param ? "Mapped" : "Read"; });

// At each operation the disk stops: for good, then again while somebody else recovers; and each time the
// power may go, so that any of the sectors that were not synced are lost.
TEST_P(CrashTest, AStatementOfAnySizeIsAllOrNothing)
{
    for (const auto change : {changeMuch, changeInBatch, changeAndCut}) {
        restore();
        ASSERT_TRUE(run(change));
        const Bytes after = tests::readBytes(path);
        ASSERT_NE(after, before);
        bool finished = false;
        for (int stop = 0; !finished; ++stop) {
            for (unsigned seed = 0; seed < (tests::kSanitized ? 1u : 5u); ++seed) {
                restore();
                CrashingDisk disk(path);
                disk.stopAfter(stop);
                finished = run(change);
                ASSERT_LT(disk.operations, 500);
                const unsigned chance = 100 * static_cast<unsigned>(stop) + 10 * seed;
                if (seed % 2 == 1)
                    disk.powerCut(chance);
                if (seed >= 2) { // the first opener, who does not get through either
                    disk.stopAfter(static_cast<int>(seed * 7 + static_cast<unsigned>(stop)) % 24);
                    open(seed == 2 ? OpenMode::Read : OpenMode::Write);
                    disk.powerCut(chance + 1);
                }
                disk.work();
                const Bytes now = afterReopening();
                ASSERT_TRUE(now == after || (!finished && now == before)) << stop << ", " << seed;
                disk.powerCut(chance + 2);
                ASSERT_TRUE(afterReopening() == now) << stop << ", " << seed;
            }
        }
    }
}

void changeLittle(PageFile& file)
{
    for (PageNo page = 3; page < 11; ++page)
        fill(file.write(page), 600 + page);
}

// A large statement that is over stays, whatever the next one leaves of its journal.
TEST_P(CrashTest, TheNextStatementSpoilsNothing)
{
    ASSERT_TRUE(run(changeMuch));
    const Bytes after = tests::readBytes(path);
    ASSERT_TRUE(run(changeLittle));
    const Bytes afterBoth = tests::readBytes(path);
    int all = 0;
    {
        restore();
        CrashingDisk disk(path);
        ASSERT_TRUE(run(changeMuch));
        all = disk.operations;
    }
    for (int stop = all - 3; stop <= all; ++stop) // from behind the sync of the database on
        for (int next = 0; next < 6; ++next)
            for (unsigned seed = 0; seed < (tests::kSanitized ? 2u : 12u); ++seed) {
                restore();
                CrashingDisk disk(path);
                disk.stopAfter(stop);
                run(changeMuch);
                disk.stopAfter(next);
                run(changeLittle);
                disk.powerCut(seed);
                const Bytes now = afterReopening();
                ASSERT_TRUE(now == after || now == afterBoth) << stop << ", " << next << ", " << seed;
            }
}

// What was reported failed is not there, unless the report says that nobody knows; what was reported
// done is there. Both also after the power went.
TEST_P(CrashTest, AFailingDiskIsReportedAsItIs)
{
    for (const auto change : {changeMuch, changeInBatch}) {
        restore();
        ASSERT_TRUE(run(change));
        const Bytes after = tests::readBytes(path);
        for (const bool forGood : {false, true}) {
            bool struck = true;
            for (int operations = 0; struck; ++operations) {
                ASSERT_LT(operations, 500);
                restore();
                CrashingDisk disk(path);
                disk.failAfter(operations, forGood);
                std::u16string report;
                try {
                    PageFile file(path, OpenMode::Write);
                    change(file);
                    file.commit();
                } catch (const Error& error) {
                    report = error.description;
                }
                struck = disk.struck;
                disk.work();
                const bool unknown = report.find(u"Whether") != report.npos;
                for (unsigned seed = 0; seed < 3; ++seed) {
                    const Bytes now = afterReopening();
                    EXPECT_TRUE(
                        (now == after && (report.empty() || unknown)) || (now == before && !report.empty()))
                        << operations << (forGood ? " for good" : " once");
                    disk.powerCut(seed);
                }
            }
        }
    }
}

} // namespace
} // namespace vellums::jet

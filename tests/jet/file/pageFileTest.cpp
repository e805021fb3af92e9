#include "jet/file/pageFile.h"

#include "jet/file/journal.h"
#include "tests/support/bareFile.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

struct DiskStopped { };

// Lets that many disk operations happen; the next one stops everything, as a crash does.
class StoppingDisk {
public:
    explicit StoppingDisk(int operations)
        : left_(operations)
    {
        DiskFile::beforeOperation = [this](const DiskOperation&) {
            if (left_-- <= 0)
                throw DiskStopped();
        };
    }
    ~StoppingDisk() { DiskFile::beforeOperation = nullptr; }

private:
    int left_;
};

class PageFileTest : public testing::Test {
protected:
    PageFileTest() { tests::writeBareFile(path, 6); }

    // Changes two pages and adds three.
    void change()
    {
        PageFile file(path, OpenMode::Write);
        file.write(3)[2000] = std::byte{33};
        file.write(5)[2000] = std::byte{55};
        file.writeNew(8)[100] = std::byte{88};
        file.commit();
    }
    Bytes contentAfterReopening()
    {
        const PageFile file(path, OpenMode::Read);
        Bytes content;
        for (PageNo page = 0; page < file.pageCount(); ++page) {
            const PageView view = file.read(page);
            append(content, view);
        }
        return content;
    }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"pages.mdb");
};

TEST_F(PageFileTest, AStatementIsAllOrNothingWhereverTheDiskStops)
{
    const Bytes before = tests::readBytes(path);
    change();
    const Bytes after = tests::readBytes(path);
    ASSERT_EQ(after.size(), 9 * kPageSize);
    bool finished = false;
    for (int operations = 0; !finished; ++operations) {
        tests::writeBytes(path, before);
        platform::removeFile(journalPath(path));
        try {
            const StoppingDisk disk(operations);
            change();
            finished = true;
        } catch (const DiskStopped&) {
        }
        const Bytes now = contentAfterReopening();
        EXPECT_TRUE(finished ? now == after : now == before || now == after) << operations << " operations";
    }
}

// A crash during the recovery leaves a journal that recovers the next time.
TEST_F(PageFileTest, RecoveryMayItselfBeInterrupted)
{
    const Bytes before = tests::readBytes(path);
    for (int operations = 0; operations < 6; ++operations) {
        try {
            const StoppingDisk disk(4); // journal written and synced, some pages changed
            change();
        } catch (const DiskStopped&) {
        }
        try {
            const StoppingDisk disk(operations);
            contentAfterReopening();
        } catch (const DiskStopped&) {
        }
        EXPECT_EQ(contentAfterReopening(), before) << operations;
    }
}

TEST_F(PageFileTest, AJournalOfAnotherFileTouchesNothing)
{
    try {
        const StoppingDisk disk(4);
        change();
    } catch (const DiskStopped&) {
    }
    Bytes other = tests::readBytes(path);
    other[0x72] ^= std::byte{1}; // created at another time
    for (std::size_t i = 3 * kPageSize; i < other.size(); ++i)
        other[i] = std::byte{1};
    tests::writeBytes(path, other);
    try {
        contentAfterReopening();
    } catch (const Error&) { // its password field does not fit the changed date; what counts is below
    }
    EXPECT_EQ(tests::readBytes(path), other);
}

TEST_F(PageFileTest, WhatWasNotCommittedNeverHappened)
{
    const Bytes before = tests::readBytes(path);
    {
        PageFile file(path, OpenMode::Write);
        file.write(3)[0] = std::byte{0};
        file.writeNew(20);
    }
    EXPECT_EQ(tests::readBytes(path), before);
}

TEST_F(PageFileTest, TheMarkTakesBackOneStatementOfABatch)
{
    {
        PageFile file(path, OpenMode::Write);
        file.mark();
        file.write(3)[2000] = std::byte{1};
        file.mark();
        file.write(3)[2000] = std::byte{2};
        file.write(4)[2000] = std::byte{2};
        file.writeNew(9);
        file.rollbackToMark();
        EXPECT_EQ(file.read(3)[2000], std::byte{1});
        EXPECT_EQ(file.read(4)[2000], std::byte{0});
        EXPECT_EQ(file.pageCount(), 6u);
        EXPECT_THROW(file.read(9), Error);
        file.commit();
    }
    EXPECT_EQ(tests::readBytes(path)[3 * kPageSize + 2000], std::byte{1});
}

TEST_F(PageFileTest, ReadersShareAndAWriterIsAlone)
{
    const PageFile reader(path, OpenMode::Read);
    EXPECT_NO_THROW(PageFile(path, OpenMode::Read));
    EXPECT_THROW(PageFile(path, OpenMode::Write), Error);
}

struct Refusal {
    const char* why;
    std::function<void(Bytes&)> damage;
    int native;
};

TEST_F(PageFileTest, RefusesWhatItCannotReadAndLeavesItAsItIs)
{
    const Refusal refusals[] = {
        {"not a database", [](Bytes& b) { b[5] = std::byte{'x'}; }, 3343},
        {"an unknown version", [](Bytes& b) { b[0x14] = std::byte{9}; }, 3343},
        {"the format of Access 97", [](Bytes& b) { b[0x14] = std::byte{0}; }, 3343},
        {"encrypted", [](Bytes& b) { b[0x3E] ^= std::byte{1}; }, 3031},
        {"a password", [](Bytes& b) { b[0x44] ^= std::byte{1}; }, 3031},
        {"page 2 of another kind", [](Bytes& b) { b[2 * kPageSize] = std::byte{7}; }, 3049},
        {"cut behind the header", [](Bytes& b) { b.resize(kPageSize); }, 3049},
        {"cut inside the header", [](Bytes& b) { b.resize(300); }, 3343},
        {"empty", [](Bytes& b) { b.clear(); }, 3343},
    };
    const Bytes whole = tests::readBytes(path);
    for (const Refusal& refusal : refusals) {
        Bytes bytes = whole;
        refusal.damage(bytes);
        tests::writeBytes(path, bytes);
        try {
            const PageFile file(path, OpenMode::Write);
            FAIL() << refusal.why;
        } catch (const Error& e) {
            EXPECT_EQ(e.native, refusal.native) << refusal.why;
        }
        EXPECT_EQ(tests::readBytes(path), bytes) << refusal.why;
    }
    Bytes cut = whole;
    cut.resize(whole.size() - 100);
    tests::writeBytes(path, cut);
    EXPECT_NO_THROW(PageFile(path, OpenMode::Read)) << "a file that ends inside a page is read";
    EXPECT_THROW(PageFile(path, OpenMode::Write), Error) << "but not written";
    try {
        const PageFile file(folder.file(u"missing.mdb"), OpenMode::Read);
        FAIL() << "missing";
    } catch (const Error& e) {
        EXPECT_EQ(e.native, 3024);
    }
}

} // namespace
} // namespace vellums::jet

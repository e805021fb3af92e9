// Journals that are found beside a file, and what a statement does with its own.
#include "jet/file/journal.h"

#include "jet/file/pageFile.h"
#include "tests/support/bareFile.h"
#include "tests/support/crashingDisk.h"
#include "tests/support/smallMemory.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

using tests::CrashingDisk;
using Kind = DiskOperation::Kind;

class JournalTest : public testing::Test {
protected:
    JournalTest() { tests::writeBareFile(path, 9); }

    // Three segments: pages 3 to 8, some twice, and five new ones.
    void change()
    {
        const tests::SmallMemory memory(4);
        PageFile file(path, OpenMode::Write);
        for (PageNo page = 3; page < 14; ++page) {
            (page < 9 ? file.write(page) : file.writeNew(page))[2000] = std::byte{77};
            file.write(3 + page % 3)[300] = static_cast<std::byte>(page);
            file.makeRoom();
        }
        file.commit();
    }
    // A journal that is hot; the database holds a part of the statement, or all of it.
    // True when the disk stopped at a sync of the journal.
    bool leaveJournal(int operations)
    {
        CrashingDisk disk(path);
        disk.stopAfter(operations);
        try {
            change();
        } catch (...) {
        }
        EXPECT_TRUE(disk.struck);
        return disk.struckAtJournalSync;
    }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"pages.mdb");
    std::u16string journal = journalPath(path);
};

constexpr int kInTheMiddle = 9;
constexpr int kAtTheMark = 29;

struct Foreign {
    const char* why;
    int stop;
    std::function<void(Bytes&)> replace; // the database
};

// A journal beside a file that is not as the journal knows it, be it another one, a copy from another
// time, or changed by another program meanwhile: neither is touched, and both can be used on.
TEST_F(JournalTest, OneThatDoesNotBelongToTheFileIsSetAside)
{
    const auto other = [](std::size_t page, std::size_t at) {
        return [=](Bytes& b) { b[page * kPageSize + at] ^= std::byte{1}; };
    };
    const Foreign cases[] = {
        {"a file made at another time", kInTheMiddle, other(0, 0x72)},
        {"one sector that nobody knows", kInTheMiddle, other(4, 4000)},
        {"shorter than before the statement", kInTheMiddle, [](Bytes& b) { b.resize(8 * kPageSize); }},
        {"longer than the statement made it", kInTheMiddle, [](Bytes& b) { b.resize(40 * kPageSize); }},
        {"changed after the mark, which was lost", kAtTheMark, other(5, 100)},
    };
    const Bytes fresh = tests::readBytes(path);
    int number = 0;
    for (const Foreign& c : cases) {
        SCOPED_TRACE(c.why);
        tests::writeBytes(path, fresh);
        leaveJournal(c.stop);
        Bytes file = tests::readBytes(path);
        c.replace(file);
        tests::writeBytes(path, file);
        const Bytes left = tests::readBytes(journal);
        std::u16string aside;
        try {
            aside = PageFile(path, number % 2 == 0 ? OpenMode::Read : OpenMode::Write).journalSetAside();
        } catch (const Error&) { // a changed date does not fit the field of the password
            aside = journal + u"-unused1";
        }
        EXPECT_EQ(aside, journal + u"-unused" + static_cast<char16_t>(u'1' + number++));
        EXPECT_EQ(tests::readBytes(path), file);
        EXPECT_EQ(tests::readBytes(aside), left);
        EXPECT_TRUE(number == 1 || PageFile(path, OpenMode::Write).journalSetAside().empty());
        removeIdleJournal(path);
        EXPECT_FALSE(platform::fileExists(journal));
    }
    for (const char* letters : {"VELJRNL1", "somebody's notes"}) {
        tests::writeBytes(path, fresh);
        folder.write(u"pages.mdb-journal", letters);
        const std::u16string aside = PageFile(path, OpenMode::Read).journalSetAside();
        EXPECT_EQ(tests::bytesOf(aside), letters);
        EXPECT_EQ(tests::readBytes(path), fresh);
    }
}

// A file that cannot be written is read, unless it holds a part of a statement.
TEST_F(JournalTest, AFileThatCannotBeWrittenIsReadIfItIsWhole)
{
    const auto opens = [this] {
        folder.setReadOnly(u"pages.mdb", true);
        bool opened = true;
        try {
            const PageFile file(path, OpenMode::Read);
        } catch (const Error& error) {
            EXPECT_EQ(error.native, 3073);
            opened = false;
        }
        folder.setReadOnly(u"pages.mdb", false);
        return opened;
    };
    leaveJournal(kInTheMiddle);
    EXPECT_FALSE(opens());
    EXPECT_NO_THROW(PageFile(path, OpenMode::Write));
    EXPECT_TRUE(opens());
    leaveJournal(kAtTheMark);
    EXPECT_TRUE(opens());
    folder.write(u"pages.mdb-journal", "somebody's notes");
    EXPECT_TRUE(opens());
    EXPECT_EQ(tests::bytesOf(journal), "somebody's notes");
}

// The last segment may be damaged at will: the database was not changed after it was begun.
TEST_F(JournalTest, WhatIsBehindTheLastWholeSegmentDoesNotCount)
{
    const Bytes fresh = tests::readBytes(path);
    int segments = 0;
    for (int stop = 0; stop < kAtTheMark; ++stop) {
        tests::writeBytes(path, fresh);
        platform::removeFile(journal);
        if (!leaveJournal(stop))
            continue;
        ++segments;
        Bytes left = tests::readBytes(journal);
        left[left.size() - 20] ^= std::byte{1};
        tests::writeBytes(journal, left);
        EXPECT_EQ(PageFile(path, OpenMode::Read).journalSetAside(), u"") << stop;
        EXPECT_EQ(tests::readBytes(path), fresh) << stop;
    }
    EXPECT_GE(segments, 3);
}

TEST_F(JournalTest, ASmallStatementCostsTwoSyncsAndALargeOneCutsItsJournal)
{
    using Kinds = std::vector<Kind>;
    {
        folder.write(u"pages.mdb-journal", std::string(600, '\0'));
        CrashingDisk disk(path);
        PageFile file(path, OpenMode::Write);
        file.write(4)[2000] = std::byte{1};
        file.writeNew(9);
        file.commit();
        EXPECT_EQ(disk.syncs, 2);
        EXPECT_EQ(disk.journalKinds, (Kinds{Kind::Write, Kind::Sync, Kind::Write}));
    }
    removeIdleJournal(path);
    Bytes large = tests::readBytes(path);
    large.resize(6000 * kPageSize); // more than is kept of a journal
    tests::writeBytes(path, large);
    const tests::SmallMemory memory(1000);
    PageFile file(path, OpenMode::Write);
    for (PageNo page = 3; page < 6000; ++page) {
        file.write(page)[2000] = std::byte{1};
        file.makeRoom();
    }
    file.commit();
    EXPECT_EQ(platform::fileSize(journal), 0u);
}

// A journal that somebody made and left empty may not be lasting in its folder yet.
TEST_F(JournalTest, AnEmptyOneIsMadeLastingInItsFolderFirst)
{
    folder.write(u"pages.mdb-journal", "");
    CrashingDisk disk(path);
    PageFile file(path, OpenMode::Write);
    file.write(4)[2000] = std::byte{1};
    file.commit();
    ASSERT_FALSE(disk.journalKinds.empty());
    EXPECT_EQ(disk.journalKinds.front(), Kind::SyncFolder);
}

} // namespace
} // namespace vellums::jet

#include "io/clsFolderScan.h"

#include "platform/events.h"
#include "platform/files.h"
#include "tests/support/temporaryFolder.h"
#include "text/pieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace vellums {
namespace {

using Paths = std::vector<std::u16string>;

Paths sorted(Paths paths)
{
    std::sort(paths.begin(), paths.end());
    return paths;
}

class FolderScan : public testing::Test {
protected:
    FolderScan()
    {
        for (const char16_t* name : {u"x.txt", u"a/y.txt", u"a/b/z", u"a/b/.hidden"})
            folder_.write(name, "");
        folder_.makeFolder(u"empty");
    }

    std::u16string full(const char16_t* name) const { return folder_.file(name); }
    std::u16string native(const char16_t* path) const
    {
        return text::replaceAll(path, u"/", std::u16string(1, platform::separator()));
    }

    tests::TemporaryFolder folder_;
    clsFolderScan scan_;
};

TEST_F(FolderScan, FindsEverythingBelowTheRoot)
{
    for (const std::u16string& root : {folder_.path(), folder_.path() + platform::separator()}) {
        scan_.ScanFolder(root);
        EXPECT_EQ(sorted(scan_.Files()),
            sorted({full(u"x.txt"), full(u"a/y.txt"), full(u"a/b/z"), full(u"a/b/.hidden")}));
        EXPECT_EQ(sorted(scan_.Folders()), sorted({u"a", native(u"a/b"), u"empty"}));
        EXPECT_EQ(scan_.FileCount(), 4);
        EXPECT_EQ(scan_.FolderCount(), 3);
    }
    scan_.FullPath = true;
    scan_.ScanFolder(folder_.path());
    EXPECT_EQ(sorted(scan_.Folders()), sorted({full(u"a/"), full(u"a/b/"), full(u"empty/")}));
}

TEST_F(FolderScan, StaysInTheRootWithoutSubFolders)
{
    scan_.SubFolders = false;
    scan_.ScanFolder(folder_.path());
    EXPECT_EQ(scan_.Files(), Paths{full(u"x.txt")});
    EXPECT_EQ(sorted(scan_.Folders()), (Paths{u"a", u"empty"}));
}

TEST_F(FolderScan, ReportsAFolderAfterItsContents)
{
    Paths reported;
    scan_.Events = true;
    scan_.EntryFound = [&](const clsFolderScan::Entry& e) {
        reported.push_back(std::u16string(e.name) + u"|" + std::u16string(e.relativePath) + u"|" +
            std::u16string(e.fullPath) + (e.isFolder ? u"|folder" : u"|file"));
        EXPECT_EQ(e.fileCount, scan_.FileCount());
        EXPECT_EQ(e.folderCount, scan_.FolderCount());
    };
    scan_.ScanFolder(folder_.path());
    const auto place = [&](const std::u16string& line) {
        return std::find(reported.begin(), reported.end(), line);
    };
    const auto folderA = place(u"a|a|" + full(u"a") + u"|folder");
    const auto folderB = place(u"b|" + native(u"a/b") + u"|" + full(u"a/b") + u"|folder");
    const auto fileZ = place(u"z|" + native(u"a/b/") + u"|" + full(u"a/b/") + u"|file");
    EXPECT_NE(place(u"x.txt||" + full(u"") + u"|file"), reported.end());
    ASSERT_NE(folderA, reported.end());
    EXPECT_LT(fileZ, folderB);
    EXPECT_LT(folderB, folderA);
    EXPECT_EQ(reported.size(), 7u);
}

TEST_F(FolderScan, StopsWhenTheEventLoopAsksForIt)
{
    int turns = 0;
    platform::setEventYield([&] {
        if (++turns == 2)
            scan_.Abort();
    });
    scan_.ScanFolder(folder_.path());
    platform::setEventYield({});
    EXPECT_LE(scan_.FileCount() + scan_.FolderCount(), 4);
    scan_.ScanFolder(folder_.path());
    EXPECT_EQ(scan_.FileCount(), 4) << "the next scan starts afresh";
}

TEST_F(FolderScan, TellsWhichFoldersItCouldNotList)
{
    scan_.ScanFolder(full(u"none"));
    EXPECT_TRUE(scan_.Files().empty() && scan_.Folders().empty());
    ASSERT_EQ(scan_.Unlisted().size(), 1u);
    EXPECT_EQ(scan_.Unlisted()[0].path, full(u"none"));
    scan_.ScanFolder(folder_.path());
    EXPECT_TRUE(scan_.Unlisted().empty());
}

TEST_F(FolderScan, WalksEachOfFoldersLinkedToOneAnotherOnce)
{
    namespace fs = std::filesystem;
    const std::u16string names[] = {u"1", u"2", u"3", u"4", u"5", u"6", u"7"};
    std::error_code failed;
    for (const std::u16string& name : names)
        folder_.write(u"ring/" + name + u"/text.txt", "");
    for (const std::u16string& from : names)
        for (const std::u16string& to : names)
            if (from != to && !failed)
                fs::create_directory_symlink(
                    fs::path(full(u"ring/") + to), fs::path(full(u"ring/") + from + u"/to" + to), failed);
    fs::create_directory_symlink(full(u"ring"), full(u"ring/1/back"), failed);
    if (failed)
        GTEST_SKIP() << "links cannot be made here";
    scan_.ScanFolder(full(u"ring"));
    EXPECT_EQ(scan_.FileCount(), 7);
    EXPECT_EQ(scan_.FolderCount(), 7 + 7 * 6 + 1);
    EXPECT_TRUE(scan_.Unlisted().empty());
}

} // namespace
} // namespace vellums

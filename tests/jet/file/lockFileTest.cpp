#include "jet/file/lockFile.h"

#include "jet/file/pageFile.h"
#include "tests/support/bareFile.h"
#include "tests/support/shortWait.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vellums::jet {
namespace {

namespace fs = std::filesystem;

// A database with a lock file of one user; another program may have that open or not.
class LockFileTest : public testing::TestWithParam<std::u16string_view> {
protected:
    LockFileTest()
    {
        tests::writeBareFile(path, 6);
        folder.write(u"pages.two" + std::u16string(GetParam() == u".accdb" ? u".laccdb" : u".ldb"),
            std::string("MACHINE") + std::string(25, '\0') + "Admin" + std::string(27, '\0'));
        age(std::chrono::seconds(-5));
    }

    // The lock file is so much younger than the database.
    void age(std::chrono::seconds younger)
    {
        fs::last_write_time(fs::path(lockFilePath(path)), fs::last_write_time(fs::path(path)) + younger);
    }

    // The refusal of an attempt to open; empty when it opens.
    std::u16string refusal(OpenMode mode) const
    {
        const tests::ShortWait wait;
        try {
            PageFile(path, mode);
            return {};
        } catch (const Error& e) {
            EXPECT_EQ(e.native, 3045);
            return e.description;
        }
    }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"pages.two" + std::u16string(GetParam()));
    std::u16string inUse = u"Could not use '" + path + u"'; file already in use.";
};

INSTANTIATE_TEST_SUITE_P(Extensions, LockFileTest, testing::Values(u".mdb", u".accdb", u".MDB"));

TEST_P(LockFileTest, WhileAnotherProgramHasTheDatabaseItIsLeftAlone)
{
    const std::string before = tests::bytesOf(path);
    {
        const platform::File user(lockFilePath(path), platform::Access::Write);
        EXPECT_EQ(refusal(OpenMode::Read), inUse);
        EXPECT_EQ(refusal(OpenMode::Write), inUse);
    }
    EXPECT_EQ(tests::bytesOf(path), before);
    EXPECT_EQ(refusal(OpenMode::Read), u"");
    EXPECT_EQ(refusal(OpenMode::Write), u"");
    EXPECT_TRUE(platform::fileExists(lockFilePath(path))) << "it tells who was there";
}

// Where the system tells who has a file open, a left-over is seen to be one; where it does not, a young lock
// file counts as somebody's, and the user is told which to remove.
TEST_P(LockFileTest, ALeftOverIsNoUser)
{
    age(std::chrono::seconds(5));
    const bool tells = platform::separator() == u'\\';
    const std::u16string perhaps =
        inUse + u" If no other program has it open, remove '" + lockFilePath(path) + u"'.";
    for (const OpenMode mode : {OpenMode::Read, OpenMode::Write})
        EXPECT_EQ(refusal(mode), tells ? u"" : perhaps);
    folder.write(fs::path(lockFilePath(path)).filename().u16string(), ""); // nobody's entry
    EXPECT_EQ(refusal(OpenMode::Write), u"");
    EXPECT_TRUE(platform::removeFile(lockFilePath(path)));
    EXPECT_EQ(refusal(OpenMode::Write), u"");
}

} // namespace
} // namespace vellums::jet

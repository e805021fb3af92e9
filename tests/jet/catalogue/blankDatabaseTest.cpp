#include "jet/catalogue/blankDatabase.h"

#include "jet/file/pageFile.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

std::uint32_t crc32(ByteView bytes)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::byte b : bytes) {
        crc ^= std::to_integer<std::uint32_t>(b);
        for (int i = 0; i < 8; ++i)
            crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

struct PageCheck {
    PageNo page;
    std::uint32_t jet4;
    std::uint32_t ace;
};

// Sums of the pages that the engines of other programs write for an empty file of that day.
const PageCheck kPages[] = {
    {0, 0x69AAABE6, 0x2DC35FEE},
    {1, 0x42867912, 0xB1EE7B93},
    {2, 0xBB9CC2EC, 0xCCFDEECF},
    {3, 0x1253A6BE, 0x4DB161FE},
    {4, 0x254F240A, 0x254F240A},
    {5, 0x462A9CEA, 0x462A9CEA},
    {6, 0x2FE3FDED, 0x2FE3FDED},
    {7, 0x4D4C2CEE, 0xA8E9C8B0},
    {8, 0x5FC1B7FE, 0x15E1AE96},
    {9, 0x911B4D62, 0xC163A798},
    {10, 0x1428D761, 0xA16F8CE3},
    {11, 0xEDB4C9A0, 0xEDB4C9A0},
    {12, 0x40EF71E4, 0x40EF71E4},
    {13, 0x4747A290, 0x4747A290},
    {14, 0x5313D8FA, 0x5313D8FA},
    {16, 0x5313D8FA, 0x5313D8FA},
    {17, 0xD34D04F7, 0x7A692C9F},
    {18, 0x8F1821FE, 0x14778718},
    {19, 0, 0x4DEF0F11},
    {39, 0, 0xEDE5D7F3},
    {41, 0, 0x2A36D9B7},
};

double dateOf(std::uint64_t bits)
{
    return std::bit_cast<double>(bits);
}

TEST(BlankDatabase, IsTheFileThatOtherProgramsMake)
{
    const Bytes jet4 = blankDatabase(FileFormat::Jet4, dateOf(0x40E4AB3E3BD3853E));
    const Bytes ace = blankDatabase(FileFormat::Ace12, dateOf(0x40E4E33682574A52));
    ASSERT_EQ(jet4.size(), 77824U);
    ASSERT_EQ(ace.size(), 172032U);
    for (const PageCheck& check : kPages) {
        if (check.jet4 != 0) {
            EXPECT_EQ(crc32(slice(jet4, check.page * kPageSize, kPageSize)), check.jet4)
                << "page " << check.page;
        }
        EXPECT_EQ(crc32(slice(ace, check.page * kPageSize, kPageSize)), check.ace) << "page " << check.page;
    }
    EXPECT_EQ(crc32(jet4), 0xDD2FF1AE);
    EXPECT_EQ(crc32(ace), 0x558087D4);
}

TEST(CreateDatabase, WritesAFileThatOpens)
{
    const tests::TemporaryFolder folder;
    const std::u16string path = folder.file(u"notes.accdb");
    createDatabase(path, FileFormat::Ace12, 45000.25);
    const PageFile file(path, OpenMode::Read);
    EXPECT_EQ(file.pageCount(), 42U);
    EXPECT_TRUE(file.header().isAce());
}

TEST(CreateDatabase, SaysWhyItCannot)
{
    const tests::TemporaryFolder folder;
    const std::u16string taken = folder.write(u"taken.mdb", "something else");
    const auto failure = [](const std::u16string& path) {
        try {
            createDatabase(path, FileFormat::Jet4, 45000);
        } catch (const Error& e) {
            return e.native;
        }
        return 0;
    };
    EXPECT_EQ(failure(taken), 3204);
    EXPECT_EQ(tests::bytesOf(taken), "something else");
    EXPECT_EQ(failure(folder.file(u"missing/x.mdb")), 3044);
    EXPECT_EQ(failure(folder.path()), 3204);
}

} // namespace
} // namespace vellums::jet

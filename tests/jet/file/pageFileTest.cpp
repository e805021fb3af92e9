#include "jet/file/pageFile.h"

#include "tests/support/bareFile.h"
#include "tests/support/jet3File.h"
#include "tests/support/smallMemory.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace vellums::jet {
namespace {

class PageFileTest : public testing::Test {
protected:
    PageFileTest() { tests::writeBareFile(path, 6); }

    tests::TemporaryFolder folder;
    std::u16string path = folder.file(u"pages.mdb");
};

// Any sequence of changes, marks and ways back gives what copies in memory give, whatever is written
// meanwhile.
TEST_F(PageFileTest, AgreesWithCopiesInMemory)
{
    using Content = std::map<PageNo, std::byte>; // byte 2000 of each page
    for (unsigned seed = 0; seed < 24; ++seed) {
        SCOPED_TRACE(seed);
        const tests::SmallMemory memory(1 + seed % 5, seed % 2 == 0);
        tests::writeBareFile(path, 20);
        auto owned = std::make_unique<PageFile>(path, OpenMode::Write);
        PageFile& file = *owned;
        std::mt19937 random(seed);
        Content now;
        for (PageNo page = 0; page < 20; ++page)
            now[page] = std::byte{0};
        Content committed = now;
        Content atMark = now;
        bool marked = false;
        for (int step = 0; step < 300; ++step) {
            const auto value = static_cast<std::byte>(1 + random() % 255);
            const auto page = static_cast<PageNo>(3 + random() % (now.size() - 3));
            switch (random() % 12) {
            case 0:
                file.mark();
                atMark = now;
                marked = true;
                break;
            case 1:
                if (!marked)
                    break;
                file.rollbackToMark();
                now = atMark;
                break;
            case 2:
                if (step % 5 != 0)
                    break;
                file.commit();
                committed = now;
                marked = false;
                break;
            case 3:
                for (PageNo added = file.pageCount(); added < file.pageCount() + 2; ++added)
                    now[added] = std::byte{0};
                file.writeNew(file.pageCount() + 1)[2000] = value;
                now[file.pageCount() - 1] = value;
                break;
            default:
                file.write(page)[2000] = value;
                now[page] = value;
            }
            if (random() % 2 == 0)
                file.makeRoom();
            ASSERT_EQ(file.pageCount(), now.size()) << step;
            for (const auto& [number, byte] : now)
                ASSERT_EQ(file.read(number)[2000], byte) << step << ", page " << number;
        }
        owned.reset(); // what was not committed never happened
        const Bytes bytes = tests::readBytes(path);
        ASSERT_EQ(bytes.size(), committed.size() * kPageSize);
        for (const auto& [number, byte] : committed)
            ASSERT_EQ(bytes[number * kPageSize + 2000], byte) << "page " << number;
    }
}

TEST_F(PageFileTest, WhoLooksAtAPageKeepsIt)
{
    const tests::SmallMemory memory(4);
    tests::writeBareFile(path, 30);
    PageFile file(path, OpenMode::Write);
    file.write(5)[2000] = std::byte{5};
    const PageView changed = file.read(5);
    const PageView unchanged = file.read(6);
    for (PageNo page = 6; page < 30; ++page) {
        file.write(page)[2000] = std::byte{9};
        file.makeRoom();
    }
    EXPECT_EQ(changed[2000], std::byte{5});
    EXPECT_EQ(unchanged[2000], std::byte{0});
    EXPECT_EQ(file.read(6)[2000], std::byte{9});
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
        {"a version that the name does not have", [](Bytes& b) { b[0x14] = std::byte{2}; }, 3343},
        {"a version after the known ones",
            [](Bytes& b) {
                b[13] = std::byte{'A'}; // Standard ACE DB
                b[14] = std::byte{'C'};
                b[15] = std::byte{'E'};
                b[0x14] = std::byte{7};
            },
            3343},
        {"the format of Access 97, to be written", [](Bytes& b) { b[0x14] = std::byte{0}; }, 3027},
        {"a password of Access 97",
            [](Bytes& b) {
                const Bytes header = tests::jet3Header("x");
                std::copy(header.begin(), header.end(), b.begin());
            },
            3031},
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

#include "jet/file/dataPage.h"

#include <gtest/gtest.h>

#include <random>

namespace vellums::jet {
namespace {

Bytes page()
{
    Bytes bytes(kPageSize);
    initDataPage(bytes, 26);
    return bytes;
}

Bytes rowOf(std::size_t length, int fill)
{
    return Bytes(length, static_cast<std::byte>(fill));
}

std::vector<std::uint16_t> entries(const Bytes& bytes)
{
    std::vector<std::uint16_t> result;
    for (int i = 0; i < load<std::uint16_t>(bytes, 12); ++i)
        result.push_back(load<std::uint16_t>(bytes, 14 + 2 * static_cast<std::size_t>(i)));
    return result;
}

TEST(DataPage, DeletedRowsCloseTheGapAndKeepTheirNumbers)
{
    Bytes bytes = page();
    for (const std::size_t length : {10u, 20u, 30u})
        appendRow(bytes, rowOf(length, 7), 0);
    EXPECT_EQ(entries(bytes), (std::vector<std::uint16_t>{0x0FF6, 0x0FE2, 0x0FC4}));
    EXPECT_EQ(DataPage(bytes).freeBytes(), 4016);
    deleteRow(bytes, 1);
    EXPECT_EQ(entries(bytes), (std::vector<std::uint16_t>{0x0FF6, 0xCFF6, 0x0FD8}));
    EXPECT_EQ(DataPage(bytes).freeBytes(), 4036);
    deleteRow(bytes, 0);
    EXPECT_EQ(entries(bytes), (std::vector<std::uint16_t>{0xD000, 0xD000, 0x0FE2}));
    EXPECT_EQ(DataPage(bytes).freeBytes(), 4046);
}

// Any mixture of the three operations against a list of rows.
TEST(DataPage, BehavesLikeAListOfRows)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        Bytes bytes = page();
        std::vector<Bytes> model;
        for (int i = 0; i < 400; ++i) {
            const Bytes row = rowOf(random() % 120, static_cast<int>(random() % 256));
            const bool appends = model.empty() || random() % 3 == 0;
            if (appends && DataPage(bytes).hasRoomFor(row.size())) {
                ASSERT_EQ(appendRow(bytes, row, 0), model.size());
                model.push_back(row);
            } else if (!model.empty()) {
                const std::size_t at = random() % model.size();
                const auto grown = static_cast<int>(row.size()) - static_cast<int>(model[at].size());
                if (random() % 4 == 0) {
                    deleteRow(bytes, static_cast<int>(at));
                    model[at].clear();
                } else if (grown <= DataPage(bytes).freeBytes()) {
                    replaceRow(bytes, static_cast<int>(at), row, kMovedHereFlag);
                    model[at] = row;
                }
            }
            const DataPage now(bytes);
            ASSERT_EQ(now.freeBytes(), now.countedFreeBytes()) << "seed " << seed;
            for (std::size_t r = 0; r < model.size(); ++r) {
                const ByteView stored = now.bytes(static_cast<int>(r));
                ASSERT_TRUE(std::equal(stored.begin(), stored.end(), model[r].begin(), model[r].end()))
                    << "seed " << seed << " row " << r;
            }
        }
    }
}

TEST(DataPage, RefusesRowTablesThatReachOutside)
{
    const auto damaged = [](std::size_t offset, std::uint16_t value) {
        Bytes bytes = page();
        appendRow(bytes, rowOf(10, 1), 0);
        appendRow(bytes, rowOf(10, 1), 0);
        store<std::uint16_t>(bytes, offset, value);
        return bytes;
    };
    EXPECT_THROW(DataPage{damaged(12, 5000)}, Error) << "more entries than fit";
    EXPECT_THROW(DataPage{damaged(14, 0x0010)}, Error) << "a row inside the row table";
    EXPECT_THROW(DataPage{damaged(16, 0x0FFF)}, Error) << "starts that increase";
    EXPECT_THROW(DataPage{damaged(0, 0x0104)}, Error) << "another kind of page";
    Bytes overstated = damaged(2, 3000);
    store<std::uint16_t>(overstated, 16, 0x0010 + 8); // the lowest row begins right behind the table
    EXPECT_THROW(appendRow(overstated, rowOf(69, 1), 0), Error) << "free bytes that are none";
    const Bytes two = damaged(12, 2);
    EXPECT_THROW(DataPage(two).row(2), Error) << "a row that is not there";
    EXPECT_THROW(DataPage(two).flags(2), Error) << "its flags";
}

} // namespace
} // namespace vellums::jet

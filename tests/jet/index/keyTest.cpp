#include "jet/index/key.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace vellums::jet {
namespace {

template <typename T>
Bytes stored(T value)
{
    Bytes bytes;
    append<T>(bytes, value);
    return bytes;
}

Bytes fromHex(std::string_view hex)
{
    Bytes bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoul(std::string(hex.substr(i, 2)), nullptr, 16)));
    return bytes;
}

Bytes keyOf(ColumnType type, const Bytes& value, bool ascending, bool ace = true)
{
    Bytes key;
    EXPECT_TRUE(appendKeyPart(key, {type, ascending, {}, ace}, KeyValue{value, {}, false}));
    return key;
}

struct Case {
    ColumnType type;
    Bytes value;
    const char* ascending;
    const char* descending;
};

const Case kKeyCases[] = {
    {ColumnType::Byte, stored<std::uint8_t>(5), "7F05", "80FA"},
    {ColumnType::Integer, stored<std::int16_t>(-2), "7F7FFE", "808001"},
    {ColumnType::Long, stored<std::int32_t>(1), "7F80000001", "807FFFFFFE"},
    {ColumnType::Long, stored<std::int32_t>(19), "7F80000013", "807FFFFFEC"},
    {ColumnType::Long, stored<std::int32_t>(-1), "7F7FFFFFFF", "8080000000"},
    {ColumnType::Currency, stored<std::int64_t>(12345), "7F8000000000003039", "807FFFFFFFFFFFCFC6"},
    {ColumnType::Double, stored(1.0), "7FBFF0000000000000", "80400FFFFFFFFFFFFF"},
    {ColumnType::Double, stored(-1.0), "7F400FFFFFFFFFFFFF", "80BFF0000000000000"},
    {ColumnType::Binary, fromHex("010203040506070809"),
        "7F0102030405060708090900000000000000"
        "01",
        "80FEFDFCFBFAF9F8F709F6FFFFFFFFFFFFFFFE"},
    {ColumnType::Binary, fromHex("0102030405060708"), "7F010203040506070808", "80FEFDFCFBFAF9F8F7F7"},
    {ColumnType::Guid, fromHex("A06C098F16FC8842801E119F26C0B6FC"), "7F8F096CA0FC16428809801E119F26C0B6FC08",
        "8070F6935F03E9BD77097FE1EE60D93F4903F7"},
    {ColumnType::Decimal, fromHex("800000000000000000000000000F000000"),
        "7F00FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF0", "80FF0000000000000000000000000000000F"},
    {ColumnType::Decimal, fromHex("0000000000000000000200000001000000"),
        "7FFF00000000000000000000000200000001", "8000FFFFFFFFFFFFFFFFFFFFFFFDFFFFFFFE"},
};

TEST(Key, EncodesEachType)
{
    for (const Case& c : kKeyCases) {
        EXPECT_EQ(keyOf(c.type, c.value, true), fromHex(c.ascending)) << c.ascending;
        EXPECT_EQ(keyOf(c.type, c.value, false), fromHex(c.descending)) << c.descending;
    }
    for (const bool yes : {true, false}) {
        Bytes key;
        EXPECT_TRUE(appendKeyPart(key, {ColumnType::Boolean, true, {}, true}, KeyValue{{}, {}, yes}));
        EXPECT_TRUE(appendKeyPart(key, {ColumnType::Boolean, false, {}, true}, KeyValue{{}, {}, yes}));
        EXPECT_EQ(key, fromHex(yes ? "7F0080FF" : "7FFF8000"));
    }
    Bytes nulls;
    EXPECT_TRUE(appendKeyPart(nulls, {ColumnType::Long, true, {}, true}, std::nullopt));
    EXPECT_TRUE(appendKeyPart(nulls, {ColumnType::Ole, false, {}, true}, std::nullopt));
    EXPECT_EQ(nulls, fromHex("00FF"));
}

TEST(Key, IsRefusedAndLeavesNothingBehind)
{
    const Bytes decimal(17);
    const KeyColumn columns[] = {{ColumnType::Decimal, false, {}, false}, {ColumnType::Long, true, {}, true},
        {ColumnType::Ole, true, {}, true}, {ColumnType::FixedBinary, true, {}, true}};
    for (const KeyColumn& column : columns) {
        Bytes key = fromHex("AA");
        EXPECT_FALSE(appendKeyPart(key, column, KeyValue{decimal, {}, false}));
        EXPECT_EQ(key, fromHex("AA"));
    }
    Bytes key;
    EXPECT_FALSE(appendKeyPart(key, {ColumnType::Text, true, {1042, 0}, true}, KeyValue{{}, u"a", false}));
    EXPECT_TRUE(key.empty());
}

TEST(Key, SortsNumbersByValue)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const auto a = static_cast<std::int32_t>(random() >> (random() % 40));
        const auto b = static_cast<std::int32_t>(random() >> (random() % 40));
        EXPECT_EQ(
            keyOf(ColumnType::Long, stored(a), true) <=> keyOf(ColumnType::Long, stored(b), true), a <=> b);
        EXPECT_EQ(
            keyOf(ColumnType::Long, stored(b), false) <=> keyOf(ColumnType::Long, stored(a), false), a <=> b);
        const double x = a * 0.001;
        const double y = b * 1000.0;
        EXPECT_EQ(
            keyOf(ColumnType::Double, stored(x), true) < keyOf(ColumnType::Double, stored(y), true), x < y);
    }
}

} // namespace
} // namespace vellums::jet

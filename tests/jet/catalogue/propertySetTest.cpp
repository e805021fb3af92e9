#include "jet/catalogue/propertySet.h"

#include <gtest/gtest.h>
#include <random>

namespace vellums::jet {
namespace {

constexpr SortOrder kOrder{1033, 0};

// The value for a table with the columns ID and VLHEAD, as other programs read it.
Bytes worked()
{
    Bytes bytes;
    const auto number = [&bytes](std::initializer_list<int> values) {
        for (const int value : values)
            bytes.push_back(static_cast<std::byte>(value));
    };
    const auto text = [&bytes](std::u16string_view name) {
        append(bytes, std::as_bytes(std::span(name.data(), name.size())));
    };
    number({0x4D, 0x52, 0x32, 0, 0x5E, 0, 0, 0, 0x80, 0, 0x10, 0});
    text(u"Required");
    number({0x1E, 0});
    text(u"AllowZeroLength");
    number({0x24, 0});
    text(u"UnicodeCompression");
    number({0x19, 0, 0, 0, 1, 0, 0x0A, 0, 0, 0, 4, 0});
    text(u"ID");
    number({9, 0, 1, 1, 0, 0, 1, 0, 0});
    number({0x33, 0, 0, 0, 1, 0, 0x12, 0, 0, 0, 0x0C, 0});
    text(u"VLHEAD");
    number({9, 0, 1, 1, 1, 0, 1, 0, 1, 9, 0, 1, 1, 0, 0, 1, 0, 0, 9, 0, 1, 1, 2, 0, 1, 0, 1});
    return bytes;
}

TEST(PropertySet, HasTheFormThatOtherProgramsRead)
{
    PropertySet set;
    set.addColumn(u"ID", ColumnType::Long, false);
    set.addColumn(u"VLHEAD", ColumnType::Text, false);
    EXPECT_EQ(set.encode(), worked());
    const auto parsed = PropertySet::parse(worked());
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->encode(), worked());
    EXPECT_TRUE(parsed->ruleFor(u"vlhead", kOrder).allowsEmpty);
}

TEST(PropertySet, TellsRulesOfColumnsAndTable)
{
    PropertySet set;
    set.addColumn(u"Must", ColumnType::Date, true);
    Bytes bytes = set.encode();
    const ColumnRule rule = PropertySet::parse(bytes)->ruleFor(u"MUST", kOrder);
    EXPECT_TRUE(rule.required);
    EXPECT_TRUE(PropertySet::parse(bytes)->ruleFor(u"Other", kOrder).allowsEmpty);

    // AllowZeroLength = 0 on VLHEAD.
    bytes = worked();
    bytes[bytes.size() - 19] = std::byte{0};
    EXPECT_FALSE(PropertySet::parse(bytes)->ruleFor(u"VLHEAD", kOrder).allowsEmpty);
}

TEST(PropertySet, RefusesDamageWithoutReadingBeyondIt)
{
    const Bytes whole = worked();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto parsed = PropertySet::parse(ByteView(whole).first(length));
        if (parsed) {
            EXPECT_EQ(
                parsed->encode(), Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        }
    }
    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        Bytes bytes = whole;
        for (unsigned n = 0; n <= random() % 3; ++n)
            bytes[random() % bytes.size()] = static_cast<std::byte>(random());
        if (const auto parsed = PropertySet::parse(bytes)) {
            EXPECT_EQ(parsed->encode(), bytes) << "case " << i;
        }
    }
}

} // namespace
} // namespace vellums::jet

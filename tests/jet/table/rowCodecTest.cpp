#include "jet/table/rowCodec.h"

#include "jet/table/longValue.h"
#include "jet/table/valueCodec.h"
#include "tests/support/jet3File.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace vellums::jet {
namespace {

Bytes hex(std::string_view text)
{
    Bytes bytes;
    std::string digits;
    for (const char c : text)
        if (c != ' ')
            digits += c;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

Column column(ColumnType type, int number, int slot, int offset, int length, std::uint8_t flags)
{
    Column c;
    c.type = type;
    c.number = static_cast<std::uint16_t>(number);
    c.slot = static_cast<std::uint16_t>(slot);
    c.offset = static_cast<std::uint16_t>(offset);
    c.length = static_cast<std::uint16_t>(length);
    c.flags = flags;
    c.moreFlags = type == ColumnType::Text ? 1 : 0;
    return c;
}

// A row as Access lays it out, byte for byte.
TEST(RowCodec, EncodesTheKnownRow)
{
    TableDefinition definition;
    definition.columnSlots = 11;
    definition.variableSlots = 3;
    definition.columns = {
        column(ColumnType::Long, 0, 0, 0, 4, 0x07),
        column(ColumnType::Boolean, 1, 0, 0, 1, 0x03),
        column(ColumnType::Text, 2, 0, 0, 510, 0x02),
        column(ColumnType::Boolean, 3, 0, 0, 1, 0x03),
        column(ColumnType::Memo, 4, 1, 0, 0, 0x02),
        column(ColumnType::Double, 5, 0, 4, 8, 0x03),
        column(ColumnType::Date, 6, 0, 12, 8, 0x03),
        column(ColumnType::Currency, 7, 0, 20, 8, 0x03),
        column(ColumnType::Ole, 8, 2, 0, 0, 0x02),
        column(ColumnType::Byte, 9, 0, 28, 1, 0x03),
        column(ColumnType::Integer, 10, 0, 29, 2, 0x03),
    };
    RowContent content(11);
    content[0] = encodeValue(definition.columns[0], 7);
    content[1].emplace();
    content[2] = encodeValue(definition.columns[2], std::u16string(u"Hello"));
    content[4] = inlineReference(encodeText(u"Hi there", true));
    const Bytes expected = hex("0B00 07000000 000000000000000000000000000000000000000000000000000000"
                               "FFFE48656C6C6F 0A000080 0000000000000000 FFFE4869207468657265"
                               "3E00 3E00 2800 2100 0300 1700");
    EXPECT_EQ(encodeRow(definition, content), expected);
}

// Random tables, deleted columns included: what goes in comes out, also under a later definition.
TEST(RowCodec, GivesBackWhatWentIn)
{
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 generator(seed);
        const auto random = [&](std::size_t below) { return static_cast<std::size_t>(generator() % below); };
        TableDefinition definition;
        int offset = 0;
        const std::size_t slots = 1 + random(255);
        const bool anyVariable = random(5) != 0;
        for (std::size_t number = 0; number < slots; ++number) {
            const std::size_t kind = random(anyVariable ? 4 : 2);
            const bool deleted = random(8) == 0;
            const auto n = static_cast<int>(number);
            Column c;
            if (kind == 0) {
                c = column(ColumnType::Boolean, n, 0, 0, 1, 0x03);
            } else if (kind == 1) {
                c = column(ColumnType::Long, n, 0, offset, 4, 0x03);
                offset += 4;
            } else {
                c = column(ColumnType::Text, n, definition.variableSlots++, 0, 510, 0x02);
            }
            if (!deleted)
                definition.columns.push_back(c);
        }
        definition.columnSlots = static_cast<std::uint16_t>(slots);
        RowContent content(definition.columns.size());
        for (std::size_t i = 0; i < content.size(); ++i)
            if (random(3) != 0)
                content[i] = definition.columns[i].type == ColumnType::Boolean ? Bytes()
                    : definition.columns[i].type == ColumnType::Long
                    ? Bytes(4, static_cast<std::byte>(random(256)))
                    : Bytes(random(12), static_cast<std::byte>(random(256)));
        const Bytes row = encodeRow(definition, content);
        for (std::size_t i = 0; i < content.size(); ++i) {
            const auto stored = columnBytes(kJet4, row, definition.columns[i]);
            ASSERT_EQ(stored.has_value(), content[i].has_value()) << "seed " << seed << " column " << i;
            if (stored) {
                ASSERT_TRUE(
                    std::equal(stored->begin(), stored->end(), content[i]->begin(), content[i]->end()))
                    << "seed " << seed << " column " << i;
            }
        }
        const Column younger =
            column(ColumnType::Text, static_cast<int>(slots), definition.variableSlots, 0, 510, 0x02);
        EXPECT_FALSE(columnBytes(kJet4, row, younger).has_value()) << "seed " << seed;
    }
}

// The bits of the mask that belong to no column of the row say nothing.
TEST(RowCodec, HasOnlyTheColumnsThatItCounts)
{
    const Bytes row = hex("0700 FF");
    EXPECT_TRUE(isPresent(kJet4, row, column(ColumnType::Text, 6, 0, 0, 510, 0x02)));
    EXPECT_FALSE(isPresent(kJet4, row, column(ColumnType::Text, 7, 0, 0, 510, 0x02)));
}

// Rows of Jet 3 of all lengths, so that the jump table has from no entry to seven, and a dummy now and then.
TEST(RowCodec, FindsTheValuesOfNarrowRows)
{
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 generator(seed);
        const auto random = [&](std::size_t below) { return static_cast<std::size_t>(generator() % below); };
        const Column number = column(ColumnType::Long, 0, 0, 0, 4, 0x03);
        std::vector<std::string> values(1 + random(30));
        std::vector<bool> present{true};
        for (std::string& value : values) {
            value = std::string(random(random(4) == 0 ? 256 : 60), static_cast<char>('a' + random(26)));
            present.push_back(random(5) != 0);
        }
        const Bytes row =
            tests::jet3Row(static_cast<std::uint8_t>(values.size() + 1), hex("2A000000"), values, present);
        if (row.size() > 2036)
            continue;
        EXPECT_EQ(load<std::int32_t>(*columnBytes(kJet3, row, number), 0), 42);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const int n = static_cast<int>(i);
            const auto stored = columnBytes(kJet3, row, column(ColumnType::Text, n + 1, n, 0, 255, 0x02));
            ASSERT_EQ(stored.has_value(), present[i + 1]) << "seed " << seed << " slot " << i;
            if (stored) {
                ASSERT_TRUE(std::ranges::equal(*stored, std::as_bytes(std::span(values[i]))))
                    << "seed " << seed << " slot " << i << " of a row of " << row.size();
            }
        }
    }
}

// Any byte of a row may be wrong: a value, nothing, or the damaged-file error, never a read outside.
TEST(RowCodec, SurvivesDamagedRows)
{
    TableDefinition definition;
    definition.columnSlots = 4;
    definition.variableSlots = 2;
    definition.columns = {column(ColumnType::Long, 0, 0, 0, 4, 0x03),
        column(ColumnType::Text, 1, 0, 0, 510, 0x02), column(ColumnType::Memo, 2, 1, 0, 0, 0x02),
        column(ColumnType::Boolean, 3, 0, 0, 1, 0x03)};
    RowContent content(4);
    content[0] = Bytes(4);
    content[1] = encodeText(u"text", true);
    content[2] = inlineReference(encodeText(u"memo", true));
    const Bytes row = encodeRow(definition, content);
    int errors = 0;
    for (std::size_t at = 0; at < row.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            Bytes damaged = row;
            damaged[at] = static_cast<std::byte>(value);
            damaged.resize(row.size() - (value % 3 == 0 ? at % 7 : 0));
            for (const Column& c : definition.columns) {
                for (const Format* format : {&kJet3, &kJet4}) {
                    try {
                        (void)columnBytes(*format, damaged, c);
                    } catch (const Error&) {
                        ++errors;
                    }
                }
            }
        }
    }
    EXPECT_GT(errors, 0);
}

struct TextCase {
    const char* why;
    std::u16string text;
    bool compress;
    Bytes bytes;
};

TEST(ValueCodec, StoresTextsAsAccessDoes)
{
    const TextCase cases[] = {
        {"compressed", u"abc", true, hex("FFFE616263")},
        {"two characters stay plain", u"ab", true, hex("61006200")},
        {"a Chinese character keeps all plain", u"ab\u4E2D", true, hex("610062002D4E")},
        {"a zero character keeps all plain", std::u16string(u"a\0bc", 4), true, hex("6100000062006300")},
        {"a leading mark would be read as compression", u"\uFEFF\u4E2D", true, hex("2D4E")},
        {"empty", u"", true, {}},
        {"a lone surrogate", u"\xD83D", false, hex("3DD8")},
    };
    for (const TextCase& c : cases)
        EXPECT_EQ(encodeText(c.text, c.compress), c.bytes) << c.why;
    const auto decoded = [](const Bytes& bytes) {
        Bytes scratch;
        return toText(storedText(bytes, scratch));
    };
    EXPECT_EQ(decoded(hex("FFFE61002D4E0062")), u"a\u4E2Db") << "a text that switches";
    EXPECT_EQ(decoded(hex("FFFE002D4E")), u"\u4E2D");
    EXPECT_EQ(decoded(hex("FFFE")), u"");
    EXPECT_EQ(decoded(hex("FFFE00612D")), u"\u2D61");
    EXPECT_EQ(decoded(hex("610062")), u"a") << "an odd last byte is dropped";
}

} // namespace
} // namespace vellums::jet

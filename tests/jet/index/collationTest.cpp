#include "jet/index/collation.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>

namespace vellums::jet {
namespace {

constexpr SortOrder kLegacy{1033, 0};
constexpr SortOrder kGeneral{1033, 1};

std::string hexKey(std::u16string_view text, SortOrder order, bool ascending = true)
{
    Bytes key;
    if (!appendTextKey(key, text, order, ascending))
        return "?";
    std::string hex;
    for (const std::byte b : key) {
        constexpr char kDigits[] = "0123456789ABCDEF";
        hex += kDigits[std::to_integer<unsigned>(b) >> 4];
        hex += kDigits[std::to_integer<unsigned>(b) & 15];
    }
    return hex;
}

struct Worked {
    std::u16string text;
    const char* legacy;
    const char* general;
};

// Keys found in files of other programs.
const Worked kWorked[] = {
    {u"Note", "62646D510100", "0E700E7C0E990E210100"},
    {u"NOTE ", "62646D510100", "0E700E7C0E990E210100"},
    {u"ｎｏｔｅ", "62646D510100", "0E700E7C0E990E210100"},
    {u"Pérez-Olaeta",
        "665169517864"
        "5E4A516D4A01020E01010180"
        "1B068200",
        "0E7E0E210E8A0E210EA90E7C0E480E020E210E990E0201020E010101801B068200"},
    {u"don't", "4F64626D010101018013068000", "0E1A0E7C0E700E99010101018013068000"},
    {u"Groß-é", "5569646B6B510102020202020E010101801B068200",
        "0E250E8A0E7C0E910E910E210102020202020E010101801B068200"},
    {u"x_y.z", "752B03761C780100", "0EA607440EA707330EA90100"},
    {u"数据库 v2", "B6DFB4D9AFF407713A0100", "FDFF540AFDFF5204FDFF4D1F07020EA20D1A0100"},
    {u"がっこう", "7F0A7F1C7F0E7F0401030101B8FF0280FF8000", "7F0A7F1C7F0E7F0401030101B8FF0280FF8000"},
    {u"a😀b", "?", "0E02B03FB6FC0E0901023F3F00"},
    {u"\u0301a", "4A010C00", "0E02010C00"},
    {u"   ", "0100", "0100"},
};

TEST(TextKey, IsTheOneThatOtherProgramsWrite)
{
    for (const Worked& c : kWorked) {
        EXPECT_EQ(hexKey(c.text, kLegacy), c.legacy);
        EXPECT_EQ(hexKey(c.text, kGeneral), c.general);
    }
    EXPECT_EQ(hexKey(u"Aé", kLegacy, false), "B5AEFEFDF1FF00");
    EXPECT_EQ(hexKey(u"Aé", kGeneral, false), "F1FDF1DEFEFDF1FF00");
}

TEST(TextKey, MatchesEveryLineOfTheVectors)
{
    const char* fixtures = std::getenv("VELLUMS_FIXTURES");
    std::ifstream in(std::string(fixtures != nullptr ? fixtures : ".") + "/../jet/collation-vectors.tsv");
    if (!in)
        GTEST_SKIP() << "no vectors beside the fixtures";
    int checked = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        const std::size_t tab = line.find('\t');
        const std::size_t tab2 = line.find('\t', tab + 1);
        std::u16string text;
        for (std::size_t i = 0; i < tab; i += 4)
            text.push_back(static_cast<char16_t>(std::stoul(line.substr(i, 4), nullptr, 16)));
        EXPECT_EQ(hexKey(text, kLegacy), line.substr(tab + 1, tab2 - tab - 1)) << line;
        EXPECT_EQ(hexKey(text, kGeneral), line.substr(tab2 + 1)) << line;
        ++checked;
    }
    EXPECT_GT(checked, 150);
}

TEST(TextKey, IsRefusedWhereTheSortOrderIsNotKnown)
{
    const SortOrder chinese{2052, 0};
    EXPECT_EQ(hexKey(u"VL_Notes (2).x/~", chinese), hexKey(u"VL_Notes (2).x/~", kLegacy));
    for (const char16_t* text : {u"don't", u"a-b", u"笔记", u"é", u"a,b"})
        EXPECT_EQ(hexKey(text, chinese), "?");
    EXPECT_EQ(hexKey(u"abc", SortOrder{1042, 0}), "?");
    EXPECT_EQ(hexKey(u"abc", SortOrder{2052, 1}), "?");
    EXPECT_FALSE(canEncodeTexts(SortOrder{1031, 0}));
    EXPECT_TRUE(canEncodeTexts(SortOrder{1041, 0}));
}

TEST(TextKey, EndsAtFiveHundredBytes)
{
    // Flag, two bytes a letter, separator, terminator.
    EXPECT_NE(hexKey(std::u16string(248, u'n'), kGeneral), "?");
    EXPECT_EQ(hexKey(std::u16string(249, u'n'), kGeneral), "?");
    // Only 255 units count, and the limit is that of the key.
    EXPECT_EQ(hexKey(std::u16string(255, u'n') + u"x", kLegacy), hexKey(std::u16string(255, u'n'), kLegacy));
    Bytes key{std::byte{7}};
    EXPECT_FALSE(appendTextKey(key, std::u16string(249, u'n'), kGeneral, true));
    EXPECT_EQ(key.size(), 1U);
}

// Texts that share beginnings and mix everything the levels of a key are made of.
std::u16string randomText(std::mt19937& random)
{
    constexpr std::u16string_view kUnits =
        u"aAbBeéÉ\u0301\u0323-''－ 　0.ßæœÞ\u0085がカｶぁ笔记中\uFD3C\u0D57\u10D0";
    std::u16string text;
    const auto length = random() % 7;
    for (unsigned i = 0; i < length; ++i)
        text.push_back(
            random() % 40 == 0 ? static_cast<char16_t>(random() & 0xFFFF) : kUnits[random() % kUnits.size()]);
    return text;
}

TEST(CompareTexts, SortsLikeTheKeysInFiles)
{
    for (const SortOrder order : {kLegacy, kGeneral}) {
        std::mt19937 random(order.version + 5U);
        for (int i = 0; i < 20000; ++i) {
            const std::u16string a = randomText(random);
            const std::u16string b = randomText(random);
            const auto lazy = compareTexts(a, b, order);
            EXPECT_EQ(lazy, comparisonKey(a, order) <=> comparisonKey(b, order));
            EXPECT_EQ(lazy == 0, compareTexts(b, a, order) == 0);
            Bytes keyA;
            Bytes keyB;
            Bytes downA;
            Bytes downB;
            if (!appendTextKey(keyA, a, order, true) || !appendTextKey(keyB, b, order, true))
                continue;
            EXPECT_EQ(lazy, keyA <=> keyB);
            EXPECT_TRUE(appendTextKey(downA, a, order, false) && appendTextKey(downB, b, order, false));
            EXPECT_EQ(lazy, downB <=> downA);
            if (HasFailure())
                FAIL() << "case " << i << " of version " << int{order.version};
        }
    }
}

TEST(CompareTexts, IgnoresCaseWidthAndTrailingBlanks)
{
    const std::u16string equal[][2] = {
        {u"Notes", u"ＮＯＴＥＳ  "}, {u"カナ", u"かな"}, {u"", u"  "}, {u"\u00C1", u"a\u0301"}};
    for (const auto& [a, b] : equal)
        EXPECT_TRUE(compareTexts(a, b, kLegacy) == 0 && compareTexts(a, b, SortOrder{1042, 0}) == 0);
    const std::u16string ascending[] = {
        u"coop", u"co-op", u"coops", u"naive", u"naïve", u"naiver", u"ぁ", u"あ"};
    for (std::size_t i = 1; i < std::size(ascending); ++i)
        EXPECT_TRUE(compareTexts(ascending[i - 1], ascending[i], kLegacy) < 0) << i;
    // Positions in long texts count beyond what a key in a file can hold.
    const std::u16string filler(20000, u'n');
    EXPECT_TRUE(compareTexts(filler + u"-nn", filler + u"n-n", kLegacy) < 0);
}

} // namespace
} // namespace vellums::jet

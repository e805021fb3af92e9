#include "text/letterCase.h"

#include "tests/support/referenceTable.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums::text {
namespace {

TEST(LetterCase, AgreesWithTheReferenceTable)
{
    const auto rows = tests::referenceTable("regexp-fold.tsv");
    if (!rows)
        GTEST_SKIP() << "no reference table on this machine";
    std::u16string small;
    std::u16string capital;
    for (const std::vector<std::u16string>& row : *rows) {
        ASSERT_EQ(row.size(), 4u);
        const auto number = [&](std::size_t i, int base) { return std::stoi(toUtf8(row[i]), nullptr, base); };
        for (int unit = number(0, 16); unit <= number(1, 16); unit += number(2, 10)) {
            small += static_cast<char16_t>(unit);
            capital += static_cast<char16_t>(unit + number(3, 10));
        }
    }
    EXPECT_EQ(small.size(), 1169u);
    EXPECT_EQ(upperCase(small), capital);
}

TEST(LetterCase, ChangesLettersOneByOne)
{
    EXPECT_EQ(upperCase(u"straße ǆ σς я ａ 1"), u"STRAßE Ǆ ΣΣ Я Ａ 1");
    constexpr std::u16string_view kCapitals = u"STRASSE Ǆ ΣΊΣ Я Θ Μ В Ａ 1";
    EXPECT_EQ(lowerCase(kCapitals), u"strasse ǆ σίσ я θ μ в ａ 1");
    EXPECT_EQ(lowerCaseOfCapitals(kCapitals), lowerCase(kCapitals));
}

TEST(LetterCase, LeavesWhatIsNoCapitalOfItsSmallLetter)
{
    constexpr std::u16string_view kSmallOnly = u"\u01C5\u01F2\u03F4\u1E9E\u1F88\u2126\u212B";
    EXPECT_EQ(lowerCase(kSmallOnly), u"\u01C6\u01F3\u03B8\u00DF\u1F80\u03C9\u00E5");
    EXPECT_EQ(lowerCaseOfCapitals(kSmallOnly), kSmallOnly);
}

} // namespace
} // namespace vellums::text

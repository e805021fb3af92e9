#include "jet/sql/values/dateText.h"

#include "jet/sql/values/dateForm.h"
#include "tests/support/referenceTable.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <random>

namespace vellums::jet::sql {
namespace {

constexpr int kYear = 2024; // completes dates without a year

std::u16string read(std::u16string_view text, DateOrder order = DateOrder::MonthDayYear)
{
    const std::optional<Date> date = readDateText(text, order, kYear);
    return date ? dateToText(*date) : u"-";
}

struct DateCase {
    const char16_t* text;
    const char16_t* date;
};

// clang-format off
const DateCase kDateCases[] = {
    {u"2024-3-5 9:7:3", u"2024-03-05 09:07:03"},
    {u"2023-13-04 09:30:00", u"2023-04-13 09:30:00"},
    {u"2023-13-45 09:30:00", u"-"},
    {u"2023-02-29", u"-"},
    {u"2024-02-29", u"2024-02-29"},
    {u"1900-02-29", u"-"},
    {u"2000-02-29", u"2000-02-29"},
    {u"3/5", u"2024-03-05"},
    {u"31/1", u"2024-01-31"},
    {u"2/30", u"2030-02-01"},
    {u"Feb 29", u"2024-02-29"},
    {u"5 Mar 2024 14:30", u"2024-03-05 14:30:00"},
    {u"TUESDAY, march 5, 2024", u"2024-03-05"},
    {u"5 mai 2024", u"-"},
    {u"2024年3月5日", u"2024-03-05"},
    {u"24年3月5日", u"2024-03-05"},
    {u"5年3月4日", u"2005-03-04"},
    {u"3月5日", u"2024-03-05"},
    {u"13月5日", u"-"},
    {u"2024年3月5日 下午3:04:05", u"2024-03-05 15:04:05"},
    {u"2024年3月5日 下午3时4分5秒", u"2024-03-05 15:04:05"},
    {u"2024年3月5日 9时7分", u"2024-03-05 09:07:00"},
    {u"2024年3月5日 上午12时", u"2024-03-05"},
    {u"2024年3月5日 下午", u"-"},
    {u"2024/3/5 9:07:03 下午", u"2024-03-05 21:07:03"},
    {u"二月 5, 2024 星期一", u"2024-02-05"},
    {u"年3月5日", u"-"},
    {u"0:9: ", u"-"},
    {u"03:04:am", u"-"},
    {u"3p:04:05", u"-"},
    {u"5pm 3:30", u"-"},
    {u"9am pm", u"-"},
    {u"1:2:3 2024-1-2 4:5", u"-"},
    {u"1 10:30 2", u"-"},
    {u"99999999999999999999-1-1", u"-"},
    {u"1-2-3-4", u"-"},
    {u"2024-3-5\u3000 9:7", u"2024-03-05 09:07:00"},
    {u"2024-3-5,", u"-"},
    {u"12 am", u"1899-12-30"},
};
// clang-format on

TEST(DateText, ReadsWhatWindowsReads)
{
    for (const DateCase& c : kDateCases)
        EXPECT_EQ(read(c.text), c.date) << text::toUtf8(c.text);
}

TEST(DateText, LiteralsAreMonthDayYear)
{
    const DateCase cases[] = {
        {u"3/5/2024", u"2024-03-05"},
        {u"13/5/2024", u"2024-05-13"},
        {u"30/11/12", u"2012-11-30"},
        {u"2024-3-5 9:07:03", u"2024-03-05 09:07:03"},
        {u"2024-13-5", u"-"},
        {u"3/5/2024 9:07:03 PM", u"2024-03-05 21:07:03"},
        {u"9:07", u"1899-12-30 09:07:00"},
    };
    for (const DateCase& c : cases)
        EXPECT_EQ(read(c.text, DateOrder::Literal), c.date) << text::toUtf8(c.text);
}

TEST(DateText, AgreesWithTheReferenceCasesInAllThreeOrders)
{
    const auto rows = tests::referenceTable("date-cases.tsv");
    if (!rows)
        GTEST_SKIP() << "no reference cases on this machine";
    constexpr DateOrder kOrders[] = {
        DateOrder::MonthDayYear, DateOrder::DayMonthYear, DateOrder::YearMonthDay};
    for (const std::vector<std::u16string>& row : *rows) {
        ASSERT_EQ(row.size(), 4u);
        const std::u16string text = tests::unescaped(row[0]);
        // Chinese words are read in every order here, not in a Chinese locale alone.
        const bool chinese = text.find(u"下午") != std::u16string::npos;
        for (std::size_t i = 0; i < 3; ++i) {
            std::u16string expected = row[chinese ? 3 : i + 1];
            if (expected == u"*")
                continue;
            constexpr std::u16string_view kMidnight = u" 00:00:00";
            if (expected.ends_with(kMidnight))
                expected.resize(expected.size() - kMidnight.size());
            EXPECT_EQ(read(text, kOrders[i]), expected) << text::toUtf8(text) << " order " << i;
        }
    }
    EXPECT_GT(rows->size(), 350u);
}

TEST(DateText, IsTotal)
{
    constexpr std::u16string_view kUnits = u"0123459-/:., apmMarTue年月日时分秒上下午\u3000";
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        std::mt19937 random(seed);
        std::u16string text(random() % 24, u' ');
        for (char16_t& unit : text)
            unit = kUnits[random() % kUnits.size()];
        const std::optional<Date> date = readDateText(text, DateOrder::YearMonthDay, kYear);
        EXPECT_TRUE(!date || isDateInRange(date->days)) << seed;
    }
    EXPECT_EQ(read(std::u16string(100000, u'9')), u"-");
}

} // namespace
} // namespace vellums::jet::sql

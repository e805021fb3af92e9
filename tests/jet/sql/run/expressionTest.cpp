#include "jet/sql/parse/parser.h"
#include "jet/sql/run/evaluator.h"
#include "jet/sql/values/conversion.h"
#include "jet/sql/values/decimalForm.h"
#include "text/decimal.h"
#include "text/oleDate.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums::jet::sql {
namespace {

// The value as text, marked by its kind: N, "text", or as `&` writes it. Errors give their number.
std::u16string evaluate(std::u16string_view text)
{
    Scope scope;
    scope.now = Date{text::oleDate({2024, 3, 5, 9, 7, 3})};
    try {
        Expression expression = parseExpression(text);
        bind(expression, scope);
        const Value value = Evaluator(scope).value(expression, nullptr);
        if (isNull(value))
            return u"NULL";
        if (std::holds_alternative<std::u16string>(value))
            return u'"' + std::get<std::u16string>(value) + u'"';
        if (std::holds_alternative<double>(value))
            return textOf(value) + u"d";
        return textOf(value);
    } catch (const Error& error) {
        return u"error " + text::decimal(error.native);
    }
}

struct ExpressionCase {
    const char16_t* expression;
    const char16_t* value;
};

// clang-format off
const ExpressionCase kExpressions[] = {
    // Operators group and convert.
    {u"-2^2", u"-4d"},
    {u"2^3^2", u"64d"},
    {u"2^-1", u"0.5d"},
    {u"1+2 & 3", u"\"33\""},
    {u"7 \\ 2 * 2", u"1"},
    {u"7 MOD 4 \\ 3", u"0"},
    {u"1 + 7 MOD 4", u"4"},
    {u"-7 MOD 4", u"-3"},
    {u"2.5 \\ 1", u"2"},
    {u"3.5 \\ 1", u"4"},
    {u"10 / 4", u"2.5d"},
    {u"2147483647 + 1", u"2147483648d"},
    {u"65536 * 65536", u"4294967296d"},
    {u"-2147483648", u"-2147483648d"},
    {u"1 / 0", u"error 3464"},
    {u"1 MOD 0", u"error 3464"},
    {u"1E308 * 10", u"error 3464"},
    {u"(-8) ^ 0.5", u"error 3464"},
    {u"'3' + 4", u"7d"},
    {u"'3' + '4'", u"\"34\""},
    {u"'x' + 4", u"error 3464"},
    {u"'x' & 4 & TRUE & FALSE & NULL", u"\"x4-10\""},
    {u"NULL & NULL", u"NULL"},
    {u"NULL & ''", u"\"\""},
    {u"'a' + NULL", u"NULL"},
    {u"' 1.5e1 ' * 2", u"30d"},
    {u"'' * 2", u"error 3464"},
    {u"#3/5/2024# + 1", u"2024-03-06"},
    {u"#3/5/2024# - #3/1/2024#", u"4d"},
    {u"'on ' & #2024-3-5 9:07:03#", u"\"on 2024-03-05 09:07:03\""},
    {u"0.1 + 0.2 & ''", u"\"0.3\""},
    {u"1E15 & ''", u"\"1E+15\""},
    {u"1/3 & ''", u"\"0.333333333333333\""},
    {u"0.00001 & ''", u"\"1E-05\""},
    {u"&H1F + &o17", u"46"},
    {u"&HFFFFFFFF", u"-1"},
    {u"'a'&'b'", u"\"ab\""},
    {u".5 + 1.", u"1.5d"},
    {u"- - 3", u"3"},
    {u"-'3'", u"-3d"},
    {u"'it''s' & \"say \"\"x\"\"\"", u"\"it'ssay \"x\"\""},
    // Logic has three values.
    {u"1 = 1", u"-1"},
    {u"1 = 1 = -1", u"-1"},
    {u"NOT 1 = 2", u"-1"},
    {u"NOT 5", u"0"},
    {u"1 < 2 AND 2 <= 2 AND 3 <> 4 AND 5 >= 5 AND 6 > 5", u"-1"},
    {u"NULL = NULL", u"NULL"},
    {u"NULL AND FALSE", u"0"},
    {u"NULL AND TRUE", u"NULL"},
    {u"NULL OR TRUE", u"-1"},
    {u"NULL OR FALSE", u"NULL"},
    {u"NOT NULL", u"NULL"},
    {u"TRUE XOR TRUE", u"0"},
    {u"TRUE EQV FALSE", u"0"},
    {u"FALSE IMP NULL", u"-1"},
    {u"TRUE IMP FALSE", u"0"},
    {u"TRUE OR FALSE AND FALSE", u"-1"},
    {u"2 IN (1, 2)", u"-1"},
    {u"3 IN (1, NULL)", u"NULL"},
    {u"3 NOT IN (1, 2)", u"-1"},
    {u"2 BETWEEN 1 AND 3 AND 1 = 1", u"-1"},
    {u"2 NOT BETWEEN 1 AND 3", u"0"},
    {u"NULL IS NULL", u"-1"},
    {u"'' IS NOT NULL", u"-1"},
    {u"42 LIKE '4%'", u"-1"},
    {u"'abc' NOT LIKE 'a%'", u"0"},
    {u"'abc' ALIKE '%C'", u"-1"},
    {u"NULL LIKE '%'", u"NULL"},
    {u"'a' LIKE NULL", u"NULL"},
    {u"'5' = 5", u"error 3464"},
    {u"TRUE = -1", u"-1"},
    {u"'Tax' = 'TAX'", u"-1"},
    {u"'e' = 'é'", u"0"},
    {u"'a ' = 'a'", u"-1"},
    {u"YES AND NOT OFF", u"-1"},
    {u"1=2 AND CDATE('x') = 1", u"0"},
    {u"1=1 OR CDATE('x') = 1", u"-1"},
    {u"'1' AND TRUE", u"-1"},
    {u"'x' AND TRUE", u"error 3464"},
    // Functions keep their rules.
    {u"LEFT('abc', 2)", u"\"ab\""},
    {u"LEFT('abc', 9)", u"\"abc\""},
    {u"LEFT('abc', -1)", u"error 5"},
    {u"RIGHT('abc', 2)", u"\"bc\""},
    {u"RIGHT('abc', 9)", u"\"abc\""},
    {u"MID('abcdef', 2, 3)", u"\"bcd\""},
    {u"MID('abcdef', 5)", u"\"ef\""},
    {u"MID('1234567890123', 14)", u"\"\""},
    {u"MID('abc', 9, 1)", u"\"\""},
    {u"MID('abc', 0)", u"error 5"},
    {u"MID(NULL, 0)", u"NULL"},
    {u"MID(12345, 2, 2)", u"\"23\""},
    {u"LEN('a b ')", u"4"},
    {u"LEN(NULL)", u"NULL"},
    {u"INSTR('Banana', 'AN')", u"2"},
    {u"INSTR(3, 'Banana', 'an')", u"4"},
    {u"INSTR('abc', '')", u"1"},
    {u"INSTR('abc', 'x')", u"0"},
    {u"INSTR('', 'x')", u"0"},
    {u"UCASE('straße')", u"\"STRAßE\""},
    {u"LCASE('ÄB')", u"\"äb\""},
    {u"'[' & TRIM('  a b  ') & ']'", u"\"[a b]\""},
    {u"'[' & LTRIM('  a') & RTRIM('b  ') & TRIM('   ') & ']'", u"\"[ab]\""},
    {u"IIF(NULL, 1, 2)", u"2"},
    {u"IIF(1 = 1, 'y', CDATE('never'))", u"\"y\""},
    {u"ISNULL(NULL)", u"-1"},
    {u"ISDATE('2023-04-15 09:30:00')", u"-1"},
    {u"ISDATE('2023-13-45 09:30:00')", u"0"},
    {u"ISDATE(NULL)", u"0"},
    {u"ISDATE(45000)", u"0"},
    {u"ISDATE(#3/5/2024#)", u"-1"},
    {u"CDATE('2024-3-5')", u"2024-03-05"},
    {u"CDATE(1.25)", u"1899-12-31 06:00:00"},
    {u"CDATE(-1.25)", u"1899-12-29 06:00:00"},
    {u"CDATE('x')", u"error 3464"},
    {u"CDATE(1E9)", u"error 3464"},
    {u"NOW()", u"2024-03-05 09:07:03"},
    {u"Date", u"2024-03-05"},
    {u"TIME()", u"1899-12-30 09:07:03"},
    {u"CSTR(1.50)", u"\"1.5\""},
    {u"CLNG(2.5)", u"2"},
    {u"CLNG('7')", u"7"},
    {u"CLNG(3E9)", u"error 3464"},
    {u"CDBL('1.25')", u"1.25d"},
    {u"LEFT ('20' & 'x', 2)", u"\"20\""},
};
// clang-format on

TEST(Expression, HasTheValueThatAccessGivesIt)
{
    for (const ExpressionCase& c : kExpressions)
        EXPECT_EQ(evaluate(c.expression), c.value) << text::toUtf8(c.expression);
}

TEST(Expression, DeepOnesAreRefusedAndLongOnesAreNot)
{
    std::u16string sum = u"0";
    for (int i = 0; i < 5000; ++i)
        sum += u" & 1";
    EXPECT_EQ(evaluate(u"LEN(" + sum + u")"), u"5001");
    const auto nested = [](std::size_t depth) {
        return std::u16string(depth, u'(') + u"1" + std::u16string(depth, u')');
    };
    EXPECT_EQ(evaluate(nested(60)), u"1");
    EXPECT_EQ(evaluate(nested(100000)), u"error 3360");
    EXPECT_EQ(evaluate(std::u16string(100000, u'-') + u"1"), u"error 3360");
    std::u16string chain = u"1";
    for (int i = 0; i < 100000; ++i)
        chain += u"+1";
    EXPECT_EQ(evaluate(chain), u"error 3360");
}

Column columnOf(ColumnType type, std::uint8_t precision = 18, std::uint8_t scale = 0)
{
    Column column;
    column.type = type;
    column.precision = precision;
    column.scale = scale;
    return column;
}

std::u16string coerced(const Column& column, Value value)
{
    try {
        const Value result = coerceFor(column, std::move(value));
        return isNull(result) ? u"NULL" : textOf(result);
    } catch (const Error& error) {
        return u"error " + text::decimal(error.native);
    }
}

TEST(Conversion, FitsValuesToTheirColumn)
{
    const std::u16string guid = u"{01234567-89AB-CDEF-0123-456789ABCDEF}";
    const struct {
        Column column;
        Value value;
        std::u16string expected;
    } cases[] = {
        {columnOf(ColumnType::Boolean), Null{}, u"0"},
        {columnOf(ColumnType::Boolean), 7, u"-1"},
        {columnOf(ColumnType::Boolean), u"yes", u"-1"},
        {columnOf(ColumnType::Boolean), u"maybe", u"error 3464"},
        {columnOf(ColumnType::Byte), 255, u"255"},
        {columnOf(ColumnType::Byte), 256, u"error 3349"},
        {columnOf(ColumnType::Integer), -32769, u"error 3349"},
        {columnOf(ColumnType::Long), 2.5, u"2"},
        {columnOf(ColumnType::Long), 3.5, u"4"},
        {columnOf(ColumnType::Long), u" 12 ", u"12"},
        {columnOf(ColumnType::Long), u"12x", u"error 3464"},
        {columnOf(ColumnType::Long), u"", u"error 3464"},
        {columnOf(ColumnType::Long), 1e10, u"error 3349"},
        {columnOf(ColumnType::Currency), u"922337203685477.5807", u"922337203685477.5807"},
        {columnOf(ColumnType::Currency), u"-922337203685477.5808", u"-922337203685477.5808"},
        {columnOf(ColumnType::Currency), u"922337203685477.5808", u"error 3349"},
        {columnOf(ColumnType::Currency), 1.00005, u"1.0001"},
        {columnOf(ColumnType::BigInteger), u"9223372036854775807", u"9223372036854775807"},
        {columnOf(ColumnType::BigInteger), u"9223372036854775808", u"error 3349"},
        {columnOf(ColumnType::Single), 1e39, u"error 3349"},
        {columnOf(ColumnType::Double), u"1e400", u"error 3464"},
        {columnOf(ColumnType::Date), u"2024-3-5 9:7:3", u"2024-03-05 09:07:03"},
        {columnOf(ColumnType::Date), u"", u"error 3464"},
        {columnOf(ColumnType::Date), 1.5, u"1899-12-31 12:00:00"},
        {columnOf(ColumnType::Date), 1e7, u"error 3349"},
        {columnOf(ColumnType::Text), Date{1.5}, u"1899-12-31 12:00:00"},
        {columnOf(ColumnType::Memo), true, u"-1"},
        {columnOf(ColumnType::Decimal, 5, 2), u"123.456", u"123.46"},
        {columnOf(ColumnType::Decimal, 5, 2), u"999.995", u"error 3349"},
        {columnOf(ColumnType::Decimal, 5, 2), u"-0.001", u"0"},
        {columnOf(ColumnType::Decimal, 28, 10), u"123456789012345678.0123456789",
            u"123456789012345678.0123456789"},
        {columnOf(ColumnType::Guid), guid, guid},
        {columnOf(ColumnType::Guid), u"{0123}", u"error 3464"},
        {columnOf(ColumnType::Binary), u"x", u"error 3464"},
        {columnOf(ColumnType::Memo), Null{}, u"NULL"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(coerced(c.column, c.value), c.expected)
            << "type " << static_cast<int>(c.column.type) << ", " << text::toUtf8(c.expected);
}

TEST(Conversion, ExactDecimalsCompareByTheirDigits)
{
    const char16_t* const ascending[] = {u"-20", u"-3.5", u"-3.49", u"-0.001", u"0", u"0.00099", u"0.001",
        u"9", u"10", u"10.5", u"123456789012345678901234567", u"123456789012345678901234568"};
    for (std::size_t a = 0; a < std::size(ascending); ++a)
        for (std::size_t b = 0; b < std::size(ascending); ++b)
            EXPECT_EQ(compareDigits(*readDigits(ascending[a]), *readDigits(ascending[b])), a <=> b)
                << a << " " << b;
}

} // namespace
} // namespace vellums::jet::sql

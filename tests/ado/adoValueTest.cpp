#include "store/ado/adoValue.h"

#include "platform/win32/comObject.h"
#include "store/ado/sourceValue.h"
#include "tests/ado/variantOfValue.h"

#include <gtest/gtest.h>

#include <limits>

namespace vellums::tests::ado {
namespace {

using jet::ColumnType;
using jet::Value;

struct Kind {
    const char* name;
    Value value;
    ColumnType type;
};

const Kind kKinds[] = {
    {"NULL", jet::Null{}, ColumnType::Text},
    {"true", true, ColumnType::Boolean},
    {"false", false, ColumnType::Boolean},
    {"byte", std::int32_t{255}, ColumnType::Byte},
    {"negative integer", std::int32_t{-32768}, ColumnType::Integer},
    {"negative long", std::int32_t{-1}, ColumnType::Long},
    {"largest long", std::numeric_limits<std::int32_t>::max(), ColumnType::Long},
    {"big integer", std::int64_t{-1234567890123456789}, ColumnType::BigInteger},
    {"single", 1.5F, ColumnType::Single},
    {"double", -1e300, ColumnType::Double},
    {"date before 1900", jet::Date{-36522.75}, ColumnType::Date},
    {"date", jet::Date{45356.379895833335}, ColumnType::Date},
    {"currency", jet::Currency{-12345}, ColumnType::Currency},
    {"decimal", jet::Decimal{true, {0, 1, 2, 0xFFFFFFFF}, 5}, ColumnType::Decimal},
    {"empty text", std::u16string(), ColumnType::Text},
    {"text", std::u16string(u"it's\0中文 😀\xDC00", 12), ColumnType::Memo},
    {"bytes", jet::Bytes{std::byte{0}, std::byte{255}}, ColumnType::Ole},
    {"no bytes", jet::Bytes{}, ColumnType::Binary},
    {"guid", jet::Guid{{std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}, std::byte{0xFE}}},
        ColumnType::Guid},
};

// As the providers hand them over, and back: each value, whatever was read before it.
TEST(AdoValue, KeepsEveryKindOfValue)
{
    for (const Kind& before : kKinds) {
        for (const Kind& kind : kKinds) {
            platform::Variant handed;
            fillVariant(*handed.put(), kind.value, kind.type);
            Value read = before.value;
            takeValue(read, handed.raw(), adTypeOf(kind.type));
            EXPECT_EQ(read, kind.value) << kind.name << " after " << before.name;
        }
    }
}

VARIANT rawNumber(VARTYPE type, unsigned long long bits)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    value.ullVal = bits;
    return value;
}

TEST(AdoValue, TakesWholeNumbersOfAnyWidth)
{
    const struct {
        VARTYPE type;
        unsigned long long bits;
        Value expected;
    } cases[] = {
        {VT_I1, 0xFF, std::int32_t{-1}},
        {VT_UI1, 0xFF, std::int32_t{255}},
        {VT_I2, 0xFFFF, std::int32_t{-1}},
        {VT_UI2, 0xFFFF, std::int32_t{65535}},
        {VT_INT, 0x80000000, std::numeric_limits<std::int32_t>::min()},
        {VT_UI4, 0x7FFFFFFF, std::int32_t{0x7FFFFFFF}},
        {VT_UI4, 0xFFFFFFFF, std::int64_t{4294967295}},
        {VT_EMPTY, 0, jet::Null{}},
    };
    for (const auto& c : cases) {
        Value read;
        takeValue(read, rawNumber(c.type, c.bits), 3);
        EXPECT_EQ(read, c.expected) << c.type;
    }
    Value read;
    EXPECT_THROW(takeValue(read, rawNumber(VT_ERROR, 0), 3), platform::ComError);
}

TEST(SourceValue, StandsInQuotesWhereItWouldEndEarly)
{
    const struct {
        const char16_t* connection;
        const char16_t* opened;
    } cases[] = {
        {u"Provider=P; Data Source=C:\\a b\\it's.mdb", u"Provider=P; Data Source=C:\\a b\\it's.mdb"},
        {u"Provider=P;Data Source=C:\\a;b\\c.mdb;X=1", u"Provider=P;Data Source=\"C:\\a;b\\c.mdb\";X=1"},
        {u"Data Source=\"C:\\a;b\\c.mdb\";X=1", u"Data Source=\"C:\\a;b\\c.mdb\";X=1"},
        {u"Provider=S;Data Source=(LOCAL)\\X;User ID=a", u"Provider=S;Data Source=(LOCAL)\\X;User ID=a"},
        {u"nonsense", u"nonsense"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(withQuotedSource(c.connection), c.opened);
}

} // namespace
} // namespace vellums::tests::ado

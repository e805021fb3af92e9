#include "text/decimal.h"

#include <gtest/gtest.h>

namespace vellums::text {
namespace {

TEST(Kilobytes, HaveTwoDecimalsAndThousandsSeparators)
{
    const struct {
        std::uint64_t bytes;
        const char16_t* text;
    } cases[] = {{0, u"0.00KB"}, {1, u"0.00KB"}, {6, u"0.01KB"}, {128, u"0.13KB"}, {1019, u"1.00KB"},
        {2048, u"2.00KB"}, {467456, u"456.50KB"}, {1263616, u"1,234.00KB"}, {1073741824, u"1,048,576.00KB"},
        {1099511627264, u"1,073,741,823.50KB"}};
    for (const auto& c : cases)
        EXPECT_EQ(kilobytes(c.bytes), c.text);
}

} // namespace
} // namespace vellums::text

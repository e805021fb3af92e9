#include "text/oleDate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vellums::text {
namespace {

struct DateCase {
    double date;
    LocalTime time;
};

const DateCase kDates[] = {
    {0.0, {1899, 12, 30, 0, 0, 0}},
    {0.5, {1899, 12, 30, 12, 0, 0}},
    {2.25, {1900, 1, 1, 6, 0, 0}},
    {-1.25, {1899, 12, 29, 6, 0, 0}},
    {36526.0, {2000, 1, 1, 0, 0, 0}},
    {45356.380590277776, {2024, 3, 5, 9, 8, 3}},
    {-657434.0, {100, 1, 1, 0, 0, 0}},
    {2958465.999988426, {9999, 12, 31, 23, 59, 59}},
};

TEST(OleDate, StandsForTheSameMomentBothWays)
{
    for (const DateCase& c : kDates) {
        EXPECT_EQ(localTime(c.date), c.time) << c.date;
        EXPECT_NEAR(oleDate(c.time), c.date, 1e-9) << c.date;
    }
}

TEST(OleDate, RoundsToTheNearestSecond)
{
    EXPECT_EQ(localTime(1.0 - 0.4 / 86400), (LocalTime{1899, 12, 31, 0, 0, 0}));
    EXPECT_EQ(localTime(1.0 - 0.6 / 86400), (LocalTime{1899, 12, 30, 23, 59, 59}));
    EXPECT_EQ(localTime(10.25 + 0.4 / 86400), (LocalTime{1900, 1, 9, 6, 0, 0}));
}

TEST(OleDate, KnowsItsRange)
{
    for (const double date : {-657435.5, 2958466.0, 1e300, -1e300, std::nan(""),
             std::numeric_limits<double>::infinity(), 2958465.9999999})
        EXPECT_FALSE(localTime(date)) << date;
}

} // namespace
} // namespace vellums::text

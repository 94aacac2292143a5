// SPDX-License-Identifier: MIT
#include "statistics.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

std::vector<Types::TBallbar_Item> Items_Of_Lengths(const std::vector<double>& lengths)
{
    std::vector<Types::TBallbar_Item> items;
    for (const double length : lengths) {
        Types::TBallbar_Item item;
        item.sph1 = {1, 2, 3};
        item.sph2 = {1, 2 + length, 3};
        items.push_back(item);
    }
    return items;
}

} // namespace

TEST(Statistics, OfLengths)
{
    const struct
    {
        std::vector<double> lengths;
        double minimum, maximum, mean, median, deviation;
    } rows[] = {
        {{}, 0, 0, 0, 0, 0},
        {{7}, 7, 7, 7, 7, 0},
        {{10, 10, 13}, 10, 13, 11, 11.5, std::sqrt(3.0)},
        {{1, 2, 10}, 1, 10, 13.0 / 3.0, 5.5, std::sqrt(146.0 / 6.0)},
        {{5, 1, 3}, 1, 5, 3, 3, 2},
        {{0, 0}, 0, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.lengths));
        const TStatistics statistics = Length_Statistics(Items_Of_Lengths(row.lengths));
        EXPECT_DOUBLE_EQ(statistics.minimum, row.minimum);
        EXPECT_DOUBLE_EQ(statistics.maximum, row.maximum);
        EXPECT_DOUBLE_EQ(statistics.mean, row.mean);
        EXPECT_DOUBLE_EQ(statistics.median, row.median);
        EXPECT_DOUBLE_EQ(statistics.standard_deviation, row.deviation);
    }
    EXPECT_DOUBLE_EQ(Estimated_Range(0.25), 0.75);
}

TEST(Statistics, LengthIsSymmetric)
{
    Types::TBallbar_Item item;
    EXPECT_EQ(item.Length(), 0.0);
    item.sph1 = {0.1, -20.3, 900.7};
    item.sph2 = {300.2, 12.9, 1e-3};
    Types::TBallbar_Item swapped = item;
    std::swap(swapped.sph1, swapped.sph2);
    EXPECT_EQ(item.Length(), swapped.Length());
    item.tool = {0, 0, -150}; // centres are settled by the reader, the probe takes no part
    EXPECT_EQ(item.Length(), swapped.Length());
}

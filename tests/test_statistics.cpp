// SPDX-License-Identifier: MIT
#include "statistics.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Statistics, OfLengths)
{
    const struct
    {
        std::vector<double> lengths;
        double minimum, maximum, mean, median, deviation;
    } rows[] = {{{}, 0, 0, 0, 0, 0},
                {{7}, 7, 7, 7, 7, 0},
                {{10, 10, 13}, 10, 13, 11, 11.5, std::sqrt(3.0)},
                {{1, 2, 10}, 1, 10, 13.0 / 3.0, 5.5, std::sqrt(146.0 / 6.0)},
                {{5, 1, 3}, 1, 5, 3, 3, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.lengths));
        std::vector<Types::TBallbar_Item> items(row.lengths.size());
        for (size_t i = 0; i < items.size(); ++i) {
            items[i].sph1 = {1, 2 + row.lengths[i], 3};
            items[i].sph2 = {1, 2, 3};
            items[i].tool = {0, 0, -150}; // centres are settled by the reader, the probe takes no part
        }
        const TStatistics statistics = Length_Statistics(items);
        EXPECT_DOUBLE_EQ(statistics.minimum, row.minimum);
        EXPECT_DOUBLE_EQ(statistics.maximum, row.maximum);
        EXPECT_DOUBLE_EQ(statistics.mean, row.mean);
        EXPECT_DOUBLE_EQ(statistics.median, row.median);
        EXPECT_DOUBLE_EQ(statistics.standard_deviation, row.deviation);
    }
}

// SPDX-License-Identifier: MIT
#include "graphmapping.h"
#include "graphticks.h"

#include <gtest/gtest.h>

TEST(GraphTicks, RoundStepsInsideTheAxis)
{
    const struct
    {
        int type;
        double low, high, length, spacing;
        int width, decimals; // of the format
        const char* labels;  // a dot for a line without a label
    } rows[] = {
        {1, -0.7, 0.7, 200, 50, 8, 4, " -0.5000 0.0000 0.5000"},
        {1, 899.983, 900.021, 400, 90, 8, 4, " 899.9900 900.0000 900.0100 900.0200"},
        {1, 1000.00003, 1000.00004, 300, 60, 9, 4, ""},
        {1, 0, 1e300, 300, 90, 302, 0, " 0 5e+299 1e+300"},
        {2, 0, 3, 400, 20, 5, 0, " 0 1 2 3"}, // no step below what the labels can tell apart
        {3, 1, 10, 100, 25, 8, 1, " 1.0 2.0 . . 5.0 . . . . 10.0"},
        {3, 1, 1e8, 90, 20, 8, 1, " 1 . 100 . 10000 . 1e+06 . 1e+08"},
        {3, 3.01, 3.04, 200, 60, 8, 1, " 3.01 3.02 3.03 3.04"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.type << ": " << row.low << " to " << row.high);
        const auto format = Graph_Label_Format(QStringLiteral("%1"), row.type, row.low, row.high, 8);
        EXPECT_EQ(format.width, row.width);
        EXPECT_EQ(format.decimals, row.decimals);
        TGraphAxis axis;
        axis.d_end = row.length;
        axis.d_logarithmic = row.type == GRAPH_SCALE_LOG10;
        axis.Show(row.low, row.high);
        std::string labels;
        for (const TGraphTick& tick : Graph_Ticks(axis, format, row.spacing)) {
            labels += " " + (tick.label.isEmpty() ? "." : tick.label.toStdString());
            EXPECT_TRUE(tick.pixel > -1e-3 && tick.pixel < row.length + 1e-3) << tick.pixel;
        }
        EXPECT_EQ(labels, row.labels);
    }
}

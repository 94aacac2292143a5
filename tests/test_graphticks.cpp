// SPDX-License-Identifier: MIT
#include "graphmapping.h"
#include "graphticks.h"

#include <gtest/gtest.h>

namespace
{

// The ticks of an axis from pixel 50 to 50 + `length`.
std::vector<TGraphTick> Ticks(int type, double low, double high, double length, double spacing)
{
    TGraphAxis axis;
    axis.d_begin = 50;
    axis.d_end = 50 + length;
    axis.d_logarithmic = type == GRAPH_SCALE_LOG10;
    axis.Show(low, high);
    return Graph_Ticks(axis, Graph_Label_Format(QStringLiteral("%1"), type, low, high, 8), spacing);
}

// The labels in one text; a dot stands for each line without a label.
std::string Labels(const std::vector<TGraphTick>& ticks)
{
    std::string labels;
    for (const TGraphTick& tick : ticks)
        labels += " " + (tick.label.isEmpty() ? "." : tick.label.toStdString());
    return labels;
}

} // namespace

TEST(GraphTicks, LabelFormat)
{
    const struct
    {
        int type;
        double first, last;
        int width, decimals;
    } rows[] = {
        {1, -0.5, 1.0, 8, 4}, {1, 899.98, 900.02, 8, 4}, {1, 1000.001, 1000.02, 9, 4}, {1, 0.0, 9.9, 6, 4},
        {1, 0.0, 10.0, 6, 3}, {1, -1000.0, 999.0, 6, 1}, {1, 0.0, 12345.0, 6, 0},      {1, 0.0, 1e9, 11, 0},
        {2, 0.1, 1e9, 5, 0},  {3, 1.0, 1e6, 6, 1},
    };
    for (const auto& row : rows) {
        const TGraphLabelFormat format =
            Graph_Label_Format(QStringLiteral("%1"), row.type, row.first, row.last, 6);
        EXPECT_EQ(format.width, row.width) << row.type << ": " << row.first << " to " << row.last;
        EXPECT_EQ(format.decimals, row.decimals) << row.type << ": " << row.first << " to " << row.last;
    }
}

TEST(GraphTicks, RoundStepsAndLabels)
{
    const struct
    {
        int type;
        double low, high, length, spacing;
        const char* labels;
    } rows[] = {
        {2, 0, 10, 400, 100, " 0 5 10"},
        {2, 0, 10, 400, 80, " 0 2 4 6 8 10"},
        {2, 0, 3, 400, 20, " 0 1 2 3"}, // no step below what the labels can tell apart
        {1, -0.7, 0.7, 200, 50, " -0.5000 0.0000 0.5000"},
        {1, 899.983, 900.021, 400, 90, " 899.9900 900.0000 900.0100 900.0200"},
        {2, -1e6, 2e6, 300, 60, " -1e+06 0 1e+06 2e+06"},
        {2, 0, 150000, 300, 60, " 0 50000 100000 150000"},
        {1, 0, 1e300, 300, 90, " 0 5e+299 1e+300"},
        {1, 1000.00003, 1000.00004, 300, 60, ""},
        {3, 1, 1000, 90, 25, " 1.0 10.0 100.0 1000.0"},
        {3, 0.01, 10, 90, 25, " 0.01 0.1 1 10"},
        {3, 1, 10, 100, 25, " 1.0 2.0 . . 5.0 . . . . 10.0"},
        {3, 1, 1e8, 90, 20, " 1 . 100 . 10000 . 1e+06 . 1e+08"},
        {3, 3, 5, 200, 40, " 3.0 3.5 4.0 4.5 5.0"},
        {3, 3.01, 3.04, 200, 60, " 3.01 3.02 3.03 3.04"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Labels(Ticks(row.type, row.low, row.high, row.length, row.spacing)), row.labels)
            << row.low << " to " << row.high;
}

TEST(GraphTicks, InOrderInsideAndApart)
{
    for (const int type : {1, 2, 3}) {
        for (const double low : {1e-9, 0.37, 899.987, 1e7}) {
            for (const double extent : {1e-5, 0.02, 7.7, 3e4, 1e12}) {
                for (const double spacing : {15.0, 80.0, 700.0}) {
                    SCOPED_TRACE(testing::Message() << type << ": " << low << " + " << extent);
                    double last = -1e9;
                    QString last_label;
                    for (const TGraphTick& tick : Ticks(type, low, low + extent, 500, spacing)) {
                        EXPECT_GE(tick.pixel, 50 - 1e-3);
                        EXPECT_LE(tick.pixel, 550 + 1e-3);
                        if (tick.label.isEmpty())
                            continue;
                        EXPECT_GE(tick.pixel - last, spacing - 1e-3);
                        EXPECT_NE(tick.label, last_label);
                        last = tick.pixel;
                        last_label = tick.label;
                    }
                }
            }
        }
    }
}

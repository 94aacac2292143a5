// SPDX-License-Identifier: MIT
#include "graphmapping.h"
#include "graphticks.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <cmath>

namespace
{

TGraphAxis Axis(double low, double high, bool logarithmic, double length)
{
    TGraphAxis axis;
    axis.d_begin = 50;
    axis.d_end = 50 + length;
    axis.d_logarithmic = logarithmic;
    axis.Show(low, high);
    return axis;
}

// The labels in one text; a dot stands for each line without a label.
std::string Labels(const std::vector<TGraphTick>& ticks)
{
    QStringList labels;
    for (const TGraphTick& tick : ticks)
        labels << (tick.label.isEmpty() ? QStringLiteral(".") : tick.label);
    return labels.join(QLatin1Char(' ')).toStdString();
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
        {1, 0.0, 1.0, 8, 4},          // up to 1.0 the start values stay
        {1, -0.5, 0.3, 8, 4},         //
        {1, 899.98, 900.02, 8, 4},    // span below 1
        {1, 1000.001, 1000.02, 9, 4}, //
        {1, 0.0, 9.9, 6, 4},          // truncated logarithms
        {1, 0.0, 10.0, 6, 3},         //
        {1, -1000.0, 999.0, 6, 1},    //
        {1, 0.0, 12345.0, 6, 0},      //
        {1, 0.0, 1e9, 11, 0},         // decimals never below 0
        {2, 0.0, 1e9, 5, 0},          //
        {2, 0.1, 0.2, 5, 0},          //
        {3, 1.0, 1e6, 8, 1},          //
    };
    for (const auto& row : rows) {
        const TGraphLabelFormat format =
            Graph_Label_Format(QStringLiteral("%1"), row.type, row.first, row.last, 8);
        EXPECT_EQ(format.width, row.width) << row.type << ": " << row.first << " to " << row.last;
        EXPECT_EQ(format.decimals, row.decimals) << row.type << ": " << row.first << " to " << row.last;
    }
    EXPECT_EQ(Graph_Label_Format(QStringLiteral("  %1"), 3, 1, 10, 6).Label(-0.5),
              QStringLiteral("    -0.5"));
}

TEST(GraphTicks, RoundStepsAndLabels)
{
    const struct
    {
        double low, high;
        int type;
        double length, spacing;
        const char* labels;
    } rows[] = {
        {0, 10, 2, 400, 100, "0 5 10"},
        {0, 10, 2, 400, 80, "0 2 4 6 8 10"},
        {0, 10, 2, 400, 40, "0 1 2 3 4 5 6 7 8 9 10"},
        {0, 3, 2, 400, 20, "0 1 2 3"}, // no step below what the labels can tell apart
        {-0.7, 0.7, 1, 200, 50, "-0.5000 0.0000 0.5000"},
        {899.983, 900.021, 1, 400, 90, "899.9900 900.0000 900.0100 900.0200"},
        {-1e6, 2e6, 2, 300, 60, "-1e+06 0 1e+06 2e+06"},
        {0, 150000, 2, 300, 60, "0 50000 100000 150000"},
        {0, 1e300, 1, 300, 60, "0 2e+299 4e+299 6e+299 8e+299 1e+300"},
        {1000.00003, 1000.00004, 1, 300, 60, ""},
        {1, 1000, 3, 90, 25, "1.0 10.0 100.0 1000.0"},
        {0.01, 10, 3, 90, 25, "0.01 0.1 1 10"},
        {1, 1e6, 3, 90, 25, "1.0 . 100.0 . 10000.0 . 1000000.0"},
        {1, 10, 3, 100, 25, "1.0 2.0 . . 5.0 . . . . 10.0"},
        {1, 10, 3, 60, 25, "1.0 . . . . . . . . 10.0"},
        {1, 1e8, 3, 90, 20, "1 . 100 . 10000 . 1e+06 . 1e+08"},
        {3, 5, 3, 200, 40, "3.0 3.5 4.0 4.5 5.0"},
        {3.01, 3.04, 3, 200, 60, "3.01 3.02 3.03 3.04"},
    };
    for (const auto& row : rows) {
        const TGraphAxis axis = Axis(row.low, row.high, row.type == 3, row.length);
        const TGraphLabelFormat format =
            Graph_Label_Format(QStringLiteral("%1"), row.type, row.low, row.high, 8);
        EXPECT_EQ(Labels(Graph_Ticks(axis, format, row.spacing)), row.labels)
            << row.low << " to " << row.high;
    }
}

TEST(GraphTicks, InOrderInsideAndApart)
{
    for (const int type : {1, 2, 3}) {
        for (double low : {1e-9, 0.37, 3.0, 899.987, 1e7}) {
            for (double extent : {1e-5, 0.02, 1.0, 7.7, 3e4, 1e12}) {
                for (double spacing : {15.0, 80.0, 700.0}) {
                    SCOPED_TRACE(testing::Message()
                                 << type << ": " << low << " + " << extent << ", " << spacing);
                    const TGraphAxis axis = Axis(low, low + extent, type == 3, 500);
                    const TGraphLabelFormat format =
                        Graph_Label_Format(QStringLiteral("%1"), type, low, low + extent, 8);
                    double last = -1e9;
                    QString last_label;
                    for (const TGraphTick& tick : Graph_Ticks(axis, format, spacing)) {
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

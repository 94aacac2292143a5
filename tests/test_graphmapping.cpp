// SPDX-License-Identifier: MIT
#include "graphmapping.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

using Points = std::vector<TVector2>;

const QRect GRAPH(100, 40, 401, 201); // edges at 100 and 500, 40 and 240

TGraphMapping Fitted(const Points& points, const TGraphScaling& scaling, const QRect& graph = GRAPH)
{
    TGraphRange range;
    range.Add(points);
    TGraphMapping mapping;
    mapping.Fit_To_Data(range, scaling, graph);
    return mapping;
}

const TGraphScaling LOCKED{2, 2, false, false, false, true, 0};

TGraphScaling Types(int horizontal, int vertical, bool y_includes_zero = false)
{
    return {horizontal, vertical, false, y_includes_zero, true, false, 5e-05};
}

// The ranges that the linear axes show.
void Expect_Range(const TGraphMapping& mapping, double x_min, double x_max, double y_min, double y_max)
{
    const auto expect = [](const TGraphAxis& axis, double low, double high) {
        const double error = 1e-9 * (high - low) + 1e-12 * std::abs(high);
        EXPECT_NEAR(axis.Linear_Value(axis.d_begin), low, error);
        EXPECT_NEAR(axis.Linear_Value(axis.d_end), high, error);
    };
    expect(mapping.d_horizontal, x_min, x_max);
    expect(mapping.d_vertical, y_min, y_max);
}

} // namespace

TEST(GraphMapping, FitToData)
{
    const struct
    {
        const char* name;
        Points points;
        TGraphScaling scaling; // types, bars, zero, symmetric, locked, y minimum
        double x_min, x_max, y_min, y_max;
    } rows[] = {
        {"nothing", {}, Types(2, 2), -5e-6, 5e-6, -5e-6, 5e-6},
        {"one point", {{3, 4}}, Types(2, 2, true), 2.999995, 3.000005, -5e-5, 4},
        {"its margins", {{3, 4}}, Types(1, 1), 2.999995 - 2e-7, 3.000005, 4 - 5.2e-6, 4 + 5e-6},
        {"margins below only", {{0, -1}, {50, 99}}, Types(1, 1, true), -1, 50, -3, 99},
        {"symmetric", {{0, 7}, {10, 9}}, Types(2, 2, true), 0, 10, -5e-5, 9},
        {"y minimum", {{0, 1}, {10, 2}}, {2, 2, 0, 1, 0, 0, 20}, 0, 10, 1, 20},
        {"both", {{0, 1}, {10, 2}}, {2, 2, 0, 1, 1, 0, 20}, 0, 10, -20, 20},
        {"bars", {{0, 1}, {10, 2}}, {2, 2, 1, 0, 0, 0, 0}, -0.5, 10.5, 1, 2},
        {"bars, logarithmic", {{10, 1}, {50, 2}}, {3, 2, 1, 0, 0, 0, 0}, 9, 51, 1, 2},
        {"locked", {{0, 1}, {10, 3}}, LOCKED, 5 + 1 * 2, 5 + 3 * 2, 1, 3},
        {"locked, no size", {{10, 3}, {20, 3}}, LOCKED, 21 - 5e-6, 21 + 5e-6, 3 - 5e-6, 3 + 5e-6},
        {"no numbers", {{0, 1}, {HUGE_VAL, 2}, {3, -HUGE_VAL}, {NAN, 9}, {4, 2}}, Types(2, 2), 0, 4, 1, 2},
        {"far from zero", {{1e13, 1}, {1e13, 2}}, Types(2, 2), 1e13 - 10, 1e13 + 10, 1, 2},
        {"huge", {{-1.7e308, 1}, {1.7e308, 2}}, Types(2, 2), -1e300, 1e300, 1, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Expect_Range(Fitted(row.points, row.scaling), row.x_min, row.x_max, row.y_min, row.y_max);
    }
    EXPECT_NEAR(Fitted({{1e8, 1}}, Types(2, 2)).d_data_width, 1e-5, 5e-8); // as long as doubles can tell
}

TEST(GraphMapping, FitToRect)
{
    // The margins below do not count as extent of the data.
    TGraphMapping start = Fitted({{0, 0}, {400, 200}}, Types(1, 1));
    start.d_horizontal.Show(0, 400); // one unit per pixel
    start.d_vertical.Show(0, 200);
    const struct
    {
        const char* name;
        QPoint first, second;
        double x_min, x_max, y_min, y_max;
    } rows[] = {
        {"corners swapped", {250, 160}, {150, 60}, 50, 150, 80, 180},
        {"a point", {150, 60}, {150, 60}, 50 - 5e-6, 50 + 5e-6, 180 - 5e-6, 180 + 5e-6},
        {"up to the limit", {-19900, 40}, {100, 240}, -20000, 0, 0, 200},
        {"beyond the limit", {-9900, 40}, {30100, 240}, -5000, 15000, 0, 200},
        {"y too", {100, -19760}, {500, 240}, 0, 400, 0, 10000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const auto fit : {&TGraphMapping::Fit_To_Rect, &TGraphMapping::Zoom_To}) {
            TGraphMapping mapping = start;
            (mapping.*fit)(QRect(row.first, row.second));
            Expect_Range(mapping, row.x_min, row.x_max, row.y_min, row.y_max);
        }
    }
}

TEST(GraphMapping, InverseOnEveryCombinationOfAxes)
{
    const Points spreads[] = {
        {{899.98, 0}, {900.02, 12}}, {{0.5, -3}, {2e4, 7e5}}, {{1e-4, 1e-3}, {1e9, 1e6}}};
    const QRect areas[] = {GRAPH, QRect(), QRect(7, 7, 1, 1), QRect(QPoint(50, 50), QPoint(20, 20))};
    for (const Points& points : spreads) {
        for (const int types : {12, 13, 32, 33}) {
            for (const QRect& area : areas) {
                const TGraphMapping mapping = Fitted(points, Types(types / 10, types % 10, true), area);
                for (int step = 0; step <= 20; ++step) {
                    const QPointF pixel(area.left() + step / 20.0 * (area.right() - area.left()),
                                        area.bottom() - step / 20.0 * (area.bottom() - area.top()));
                    const QPointF back = mapping.Position(mapping.Value(pixel));
                    EXPECT_NEAR(back.x(), pixel.x(), 1e-9 * 400) << types;
                    EXPECT_NEAR(back.y(), pixel.y(), 1e-9 * 200) << types;
                }
            }
        }
    }
}

TEST(GraphMapping, LogarithmicAxis)
{
    const TGraphMapping mapping = Fitted({{1, 5}, {10000, 500}}, Types(3, 3, true));
    const TGraphAxis& x = mapping.d_horizontal;
    EXPECT_NEAR(x.Position(1), 100, 1e-9);
    EXPECT_NEAR(x.Value(200), 10, 1e-9);
    EXPECT_LT(x.Position(0), -1000);
    // Linear and logarithmic pixels of the same value.
    const double linear_pixel = 100 + 400 * 99.0 / 9999.0; // of 100
    EXPECT_NEAR(x.Forward_Log10(linear_pixel), 300, 1e-9);
    EXPECT_NEAR(x.Reverse_Log10(300), linear_pixel, 1e-9);
    // y reaches below zero: the axis starts a decade below the smallest value.
    EXPECT_NEAR(mapping.d_vertical.Value(GRAPH.bottom()), 1, 1e-9);
    EXPECT_NEAR(mapping.d_vertical.Value(GRAPH.top()), 500, 1e-6);

    // Data without a usable logarithm still make an axis.
    for (const double low : {-8.0, 0.0, 1e13, 1e300}) {
        const TGraphAxis axis = Fitted({{low, 1}, {low + 0.002, 2}}, Types(3, 3)).d_horizontal;
        EXPECT_GT(axis.Value(500), axis.Value(100)) << low;
        EXPECT_TRUE(std::isfinite(axis.Position(low)) && std::isfinite(axis.Position(-5))) << low;
    }
    // A part of twenty decades is found again.
    TGraphMapping wide = Fitted({{1e-10, 1}, {1e10, 2}}, Types(3, 2));
    wide.d_horizontal.Show(1e-10, 1e10);
    wide.Zoom_To(QRect(QPoint(200, 40), QPoint(300, 240)));
    EXPECT_NEAR(wide.d_horizontal.Value(100), 1e-5, 1e-14);
    EXPECT_NEAR(wide.d_horizontal.Value(500), 1, 1e-9);
}

// SPDX-License-Identifier: MIT
#include "graphmapping.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using Points = std::vector<TVector2>;

const QRect GRAPH(100, 40, 401, 201); // edges at 100 and 500, 40 and 240
const double INF = std::numeric_limits<double>::infinity();

TGraphMapping Fitted(const Points& points, const TGraphScaling& scaling, const QRect& graph = GRAPH)
{
    TGraphRange range;
    range.Add(points);
    TGraphMapping mapping;
    mapping.Fit_To_Data(range, scaling, graph);
    return mapping;
}

TGraphScaling Scaling(int horizontal, int vertical, bool includes_zero = true, bool symmetric = true)
{
    TGraphScaling scaling;
    scaling.horizontal_type = horizontal;
    scaling.vertical_type = vertical;
    scaling.y_includes_zero = includes_zero;
    scaling.y_symmetric = symmetric;
    return scaling;
}

TGraphScaling Bars(int horizontal)
{
    TGraphScaling scaling = Scaling(horizontal, 2, false);
    scaling.bars = true;
    return scaling;
}

TGraphScaling Locked()
{
    TGraphScaling scaling = Scaling(2, 2, false);
    scaling.lock_aspect = true;
    return scaling;
}

TGraphScaling Minimum(double minimum, bool symmetric)
{
    TGraphScaling scaling = Scaling(2, 2, true, symmetric);
    scaling.y_minimum = minimum;
    return scaling;
}

void Expect_Near(double value, double expected, double extent)
{
    EXPECT_NEAR(value, expected, 1e-9 * std::abs(extent) + 1e-12 * std::abs(expected));
}

// The ranges that the linear axes show.
void Expect_Range(const TGraphMapping& mapping, double x_min, double x_max, double y_min, double y_max)
{
    const TGraphAxis& x = mapping.d_horizontal;
    const TGraphAxis& y = mapping.d_vertical;
    Expect_Near(x.Linear_Value(GRAPH.left()), x_min, x_max - x_min);
    Expect_Near(x.Linear_Value(GRAPH.right()), x_max, x_max - x_min);
    Expect_Near(y.Linear_Value(GRAPH.bottom()), y_min, y_max - y_min);
    Expect_Near(y.Linear_Value(GRAPH.top()), y_max, y_max - y_min);
}

} // namespace

TEST(GraphMapping, FitToData)
{
    const struct
    {
        const char* name;
        Points points;
        TGraphScaling scaling;
        double x_min, x_max, y_min, y_max;
    } rows[] = {
        {"nothing", {}, Scaling(2, 2, false), -5e-6, 5e-6, -5e-6, 5e-6},
        {"nothing, y minimum", {}, Scaling(2, 2), -5e-6, 5e-6, -5e-5, 5e-5},
        {"one point", {{3, 4}}, Scaling(2, 2), 2.999995, 3.000005, -5e-5, 4},
        {"one point, margins",
         {{3, 4}},
         Scaling(1, 1, false),
         2.999995 - 2e-7,
         3.000005,
         4 - 5.2e-6,
         4 + 5e-6},
        {"margins below only", {{0, -1}, {50, 99}}, Scaling(1, 1), -1, 50, -3, 99},
        {"y without zero", {{0, 7}, {10, 9}}, Scaling(2, 2, false), 0, 10, 7, 9},
        {"y from zero", {{0, 7}, {10, 9}}, Scaling(2, 2, true, false), 0, 10, 7, 9},
        {"symmetric", {{0, 7}, {10, 9}}, Scaling(2, 2), 0, 10, -5e-5, 9},
        {"y minimum", {{0, 1}, {10, 2}}, Minimum(20, false), 0, 10, 1, 20},
        {"y minimum, symmetric", {{0, 1}, {10, 2}}, Minimum(20, true), 0, 10, -20, 20},
        {"bars", {{0, 1}, {10, 2}}, Bars(2), -0.5, 10.5, 1, 2},
        {"bars, logarithmic", {{10, 1}, {50, 2}}, Bars(3), 9, 51, 1, 2},
        {"locked", {{0, 1}, {10, 3}}, Locked(), 5 + 1 * 2, 5 + 3 * 2, 1, 3},
        {"locked, no width", {{10, 3}, {20, 3}}, Locked(), 21 - 5e-6, 21 + 5e-6, 3 - 5e-6, 3 + 5e-6},
        {"no numbers", {{0, 1}, {INF, 2}, {3, -INF}, {NAN, 9}, {4, 2}}, Scaling(2, 2, false), 0, 4, 1, 2},
        {"far from zero", {{1e13, 1}, {1e13, 2}}, Scaling(2, 2, false), 1e13 - 10, 1e13 + 10, 1, 2},
        {"huge", {{-1.7e308, 1}, {1.7e308, 2}}, Scaling(2, 2, false), -1e300, 1e300, 1, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TGraphMapping mapping = Fitted(row.points, row.scaling);
        Expect_Range(mapping, row.x_min, row.x_max, row.y_min, row.y_max);
        const TVector2 corner = mapping.Value(mapping.Position({row.x_max, row.y_max}));
        EXPECT_TRUE(std::isfinite(corner.x) && std::isfinite(corner.y));
    }
}

TEST(GraphMapping, FitToRect)
{
    // x 0..400 and y 0..200: one unit per pixel
    const TGraphMapping start = Fitted({{0, 0}, {400, 200}}, Scaling(2, 2, false));
    const TGraphMapping margins = Fitted({{0, 0}, {400, 200}}, Scaling(1, 1, false));
    EXPECT_EQ(margins.d_data_width, 400); // the margins do not count
    EXPECT_EQ(margins.d_data_height, 200);
    const struct
    {
        const char* name;
        QRect rect;
        double x_min, x_max, y_min, y_max;
    } rows[] = {
        {"the same", {QPoint(100, 40), QPoint(500, 240)}, 0, 400, 0, 200},
        {"a part", {QPoint(150, 60), QPoint(250, 160)}, 50, 150, 80, 180},
        {"corners swapped", {QPoint(250, 160), QPoint(150, 60)}, 50, 150, 80, 180},
        {"a point", {QPoint(150, 60), QPoint(150, 60)}, 50 - 5e-6, 50 + 5e-6, 180 - 5e-6, 180 + 5e-6},
        {"up to the limit", {QPoint(-19900, 40), QPoint(100, 240)}, -20000, 0, 0, 200},
        {"beyond the limit", {QPoint(-9900, 40), QPoint(30100, 240)}, -5000, 15000, 0, 200},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TGraphMapping mapping = start;
        mapping.Fit_To_Rect(row.rect);
        Expect_Range(mapping, row.x_min, row.x_max, row.y_min, row.y_max);
        EXPECT_EQ(mapping.d_data_width, 400);
        EXPECT_EQ(mapping.d_data_height, 200);
    }
}

TEST(GraphMapping, InverseOnEveryCombinationOfAxes)
{
    const Points spreads[] = {
        {{899.98, 0}, {900.02, 12}}, {{0.5, -3}, {2e4, 7e5}}, {{1e-4, 1e-3}, {1e9, 1e6}}};
    for (const Points& points : spreads) {
        for (const int horizontal : {1, 3}) {
            for (const int vertical : {2, 3}) {
                const TGraphMapping mapping = Fitted(points, Scaling(horizontal, vertical));
                for (int step = 0; step <= 20; ++step) {
                    const QPointF pixel(100 + 20 * step, 240 - 10 * step);
                    const QPointF back = mapping.Position(mapping.Value(pixel));
                    EXPECT_NEAR(back.x(), pixel.x(), 1e-9 * 400) << horizontal;
                    EXPECT_NEAR(back.y(), pixel.y(), 1e-9 * 200) << vertical;
                }
            }
        }
    }
}

TEST(GraphMapping, LogarithmicAxis)
{
    const TGraphMapping mapping = Fitted({{1, 5}, {10000, 500}}, Scaling(3, 3));
    const TGraphAxis& x = mapping.d_horizontal;
    EXPECT_NEAR(x.Position(1), 100, 1e-9);
    EXPECT_NEAR(x.Position(100), 300, 1e-9);
    EXPECT_NEAR(x.Position(10000), 500, 1e-9);
    EXPECT_NEAR(x.Value(200), 10, 1e-9);
    EXPECT_LT(x.Position(0), -1000);
    EXPECT_TRUE(std::isfinite(x.Position(-5)));

    // Linear and logarithmic pixels of the same value.
    EXPECT_NEAR(x.Forward_Log10(500), 500, 1e-9);
    const double linear_pixel = 100 + 400 * 99.0 / 9999.0; // of 100
    EXPECT_NEAR(x.Forward_Log10(linear_pixel), 300, 1e-9);
    EXPECT_NEAR(x.Reverse_Log10(300), linear_pixel, 1e-9);

    // y reaches below zero: the axis starts a decade below the smallest value.
    EXPECT_NEAR(mapping.d_vertical.Value(GRAPH.bottom()), 1, 1e-9);
    EXPECT_NEAR(mapping.d_vertical.Value(GRAPH.top()), 500, 1e-6);
    // Nothing positive at all still makes an axis.
    const TGraphMapping negative = Fitted({{-8, -8}, {-2, -2}}, Scaling(3, 3, false));
    EXPECT_GT(negative.d_horizontal.Value(500), negative.d_horizontal.Value(100));
}

TEST(GraphMapping, AreaWithoutRoomCanBeInverted)
{
    for (const QRect& graph : {QRect(), QRect(7, 7, 1, 1), QRect(QPoint(50, 50), QPoint(20, 20))}) {
        const TGraphMapping mapping = Fitted({{1, 5}, {3, 9}}, Scaling(1, 1), graph);
        const TVector2 value = mapping.Value(mapping.Position({2, 6}));
        EXPECT_NEAR(value.x, 2, 1e-9);
        EXPECT_NEAR(value.y, 6, 1e-9);
    }
}

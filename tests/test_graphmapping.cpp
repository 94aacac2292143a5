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

TGraphScaling Types(int horizontal, int vertical, bool y_includes_zero = false)
{
    return {horizontal, vertical, false, y_includes_zero, true, false, 5e-05};
}

// The range that a linear axis shows.
void Expect_Range(const TGraphAxis& axis, double low, double high)
{
    const double error = 1e-9 * (high - low) + 1e-12 * std::abs(high);
    EXPECT_NEAR(axis.Linear_Value(axis.d_begin), low, error);
    EXPECT_NEAR(axis.Linear_Value(axis.d_end), high, error);
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
        {"margins below only", {{0, -1}, {50, 99}}, Types(1, 1, true), -1, 50, -3, 99},
        {"symmetric, y minimum", {{0, 1}, {10, 2}}, {2, 2, 0, 1, 1, 0, 20}, 0, 10, -20, 20},
        {"bars, logarithmic", {{10, 1}, {50, 2}}, {3, 2, 1, 0, 0, 0, 0}, 9, 51, 1, 2},
        {"locked", {{0, 1}, {10, 3}}, {2, 2, 0, 0, 0, 1, 0}, 5 + 1 * 2, 5 + 3 * 2, 1, 3},
        {"no numbers", {{0, 1}, {HUGE_VAL, 2}, {3, -HUGE_VAL}, {NAN, 9}, {4, 2}}, Types(2, 2), 0, 4, 1, 2},
        {"far from zero", {{1e13, 1}, {1e13, 2}}, Types(2, 2), 1e13 - 10, 1e13 + 10, 1, 2},
        {"huge", {{-1.7e308, 1}, {1.7e308, 2}}, Types(2, 2), -1e300, 1e300, 1, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TGraphMapping mapping = Fitted(row.points, row.scaling);
        Expect_Range(mapping.d_horizontal, row.x_min, row.x_max);
        Expect_Range(mapping.d_vertical, row.y_min, row.y_max);
    }
}

TEST(GraphMapping, FitToRect)
{
    const TGraphMapping start = Fitted({{0, 0}, {400, 200}}, Types(2, 2)); // one unit per pixel
    const struct
    {
        QPoint first, second;
        double x_min, x_max, y_min, y_max;
    } rows[] = {
        {{250, 160}, {150, 60}, 50, 150, 80, 180},
        {{150, 60}, {150, 60}, 50 - 5e-6, 50 + 5e-6, 180 - 5e-6, 180 + 5e-6},
        {{-19900, 40}, {100, 240}, -20000, 0, 0, 200},     // up to the limit
        {{-9900, 40}, {30100, 240}, -5000, 15000, 0, 200}, // beyond it
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.x_min);
        TGraphMapping mapping = start;
        mapping.Zoom_To(QRect(row.first, row.second));
        Expect_Range(mapping.d_horizontal, row.x_min, row.x_max);
        Expect_Range(mapping.d_vertical, row.y_min, row.y_max);
    }
}

TEST(GraphMapping, InverseOnEveryCombinationOfAxes)
{
    for (const int types : {12, 13, 32, 33}) {
        for (const QRect& area : {GRAPH, QRect(), QRect(7, 7, 1, 1)}) {
            const auto mapping = Fitted({{1, -3}, {2e4, 7e5}}, Types(types / 10, types % 10, true), area);
            for (const QPoint& pixel : {area.bottomLeft(), area.center(), area.topRight()}) {
                const QPointF error = mapping.Position(mapping.Value(pixel)) - pixel;
                EXPECT_LT(error.manhattanLength(), 1e-6) << types;
            }
        }
    }
}

TEST(GraphMapping, LogarithmicAxis)
{
    const TGraphAxis x = Fitted({{1, 5}, {10000, 500}}, Types(3, 3, true)).d_horizontal;
    EXPECT_NEAR(x.Position(1), 100, 1e-9);
    EXPECT_NEAR(x.Value(200), 10, 1e-9);
    // Data without a usable logarithm still make an axis.
    for (const double low : {-8.0, 0.0, 1e13, 1e300}) {
        const TGraphAxis axis = Fitted({{low, 1}, {low + 0.002, 2}}, Types(3, 3)).d_horizontal;
        EXPECT_GT(axis.Value(500), axis.Value(100)) << low;
        EXPECT_TRUE(std::isfinite(axis.Position(low)) && std::isfinite(axis.Position(-5))) << low;
    }
}

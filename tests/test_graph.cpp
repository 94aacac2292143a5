// SPDX-License-Identifier: MIT
// Scales, ticks and layout of the graph, by numbers.
#include "graphlegend.h"
#include "graphmapping.h"
#include "testing.h"

#include <cmath>

using Points = std::vector<TVector2>;

const QRect GRAPH(100, 40, 401, 201); // edges at 100 and 500, 40 and 240

TGraphMapping Fitted(const Points& points, const TGraphScaling& scaling, const QRect& graph = GRAPH)
{
    TGraphRange range;
    for (const TVector2& point : points) // as of several sets
        range.Add({point});
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
    EXPECT_NEAR(axis.Linear_Value(axis.begin), low, error);
    EXPECT_NEAR(axis.Linear_Value(axis.end), high, error);
}

TEST(GraphMapping, FitToData)
{
    const double end = 1e300, gap = 1e288;
    // The points, the scaling (types, bars, zero, symmetric, locked, y minimum), and the ranges of x and y.
    const std::tuple<const char*, Points, TGraphScaling, double, double, double, double> rows[] = {
        {"nothing", {}, Types(2, 2), -5e-6, 5e-6, -5e-6, 5e-6},
        {"one point", {{3, 4}}, Types(2, 2, true), 2.999995, 3.000005, -5e-5, 4},
        {"margins below only", {{0, -1}, {50, 99}}, Types(1, 1, true), -1, 50, -3, 99},
        {"symmetric, y minimum", {{0, 1}, {10, 2}}, {2, 2, 0, 1, 1, 0, 20}, 0, 10, -20, 20},
        {"bars, logarithmic", {{10, 1}, {50, 2}}, {3, 2, 1, 0, 0, 0, 0}, 9, 51, 1, 2},
        {"locked", {{0, 1}, {10, 3}}, {2, 2, 0, 0, 0, 1, 0}, 5 + 1 * 2, 5 + 3 * 2, 1, 3},
        {"no numbers", {{0, 1}, {HUGE_VAL, 2}, {3, -HUGE_VAL}, {NAN, 9}, {4, 2}}, Types(2, 2), 0, 4, 1, 2},
        {"far from zero", {{1e13, 1}, {1e13, 2}}, Types(2, 2), 1e13 - 10, 1e13 + 10, 1, 2},
        {"huge", {{-1.7e308, 1}, {1.7e308, 2}}, {2, 2, 0, 1, 1, 0, 1e308}, -1e300, 1e300, -1e300, 1e300},
        {"beyond", {{1.6e308, -1.7e308}}, Types(2, 2), end - gap, end + gap, -end - gap, -end + gap},
    };
    for (const auto& [name, points, scaling, x_min, x_max, y_min, y_max] : rows) {
        SCOPED_TRACE(name);
        const TGraphMapping mapping = Fitted(points, scaling);
        Expect_Range(mapping.horizontal, x_min, x_max);
        Expect_Range(mapping.vertical, y_min, y_max);
    }
    for (int size = 200; size < 320; ++size) { // the edges of the data are inside, whatever is rounded
        const QRect area(91, 26, size, size);
        const auto mapping = Fitted({{900.0042, 0.1}, {900.0216, 900.0216}}, Types(2, 2), area);
        EXPECT_GE(mapping.Position({900.0042, 0}).x(), area.left()) << size;
        EXPECT_GE(mapping.Position({0, 900.0216}).y(), area.top()) << size;
    }
}

TEST(GraphMapping, FitToRect)
{
    const TGraphMapping start = Fitted({{0, 0}, {400, 200}}, Types(2, 2)); // one unit per pixel
    const std::tuple<QPoint, QPoint, double, double, double, double> rows[] = {
        {{250, 160}, {150, 60}, 50, 150, 80, 180},
        {{150, 60}, {150, 60}, 50 - 5e-6, 50 + 5e-6, 180 - 5e-6, 180 + 5e-6},
        {{-19900, 40}, {100, 240}, -20000, 0, 0, 200},     // up to the limit
        {{-9900, 40}, {30100, 240}, -5000, 15000, 0, 200}, // beyond it
    };
    for (const auto& [first, second, x_min, x_max, y_min, y_max] : rows) {
        for (const bool as_linear : {false, true}) {
            SCOPED_TRACE(x_min);
            TGraphMapping mapping = start;
            mapping.Fit_To_Rect(QRect(first, second), as_linear);
            Expect_Range(mapping.horizontal, x_min, x_max);
            Expect_Range(mapping.vertical, y_min, y_max);
        }
    }
}

TEST(GraphMapping, LogarithmicAxis)
{
    for (const QRect& area : {GRAPH, QRect(), QRect(7, 7, 1, 1)}) {
        const auto mapping = Fitted({{1, -3}, {2e4, 7e5}}, Types(3, 3, true), area);
        EXPECT_LT((mapping.Position(mapping.Value(area.center())) - area.center()).manhattanLength(), 1e-6);
    }
    const TGraphAxis x = Fitted({{1, 5}, {10000, 500}}, Types(3, 3, true)).horizontal;
    EXPECT_NEAR(x.Position(1), 100, 1e-9);
    EXPECT_NEAR(x.Value(200), 10, 1e-9);
    TGraphMapping half = Fitted({{1, 5}, {10000, 500}}, Types(3, 3));
    half.Fit_To_Rect(QRect(100, 40, 201, 201), true); // what the linear axis of the same range has there
    Expect_Range(half.horizontal, 1, 5000.5);
    // Data without a usable logarithm still make an axis, from the decade below the smallest positive value.
    EXPECT_NEAR(Fitted({{-5, 1}, {0, 1}, {20, 2}, {700, 2}}, Types(3, 3)).horizontal.Value(100), 10, 1e-9);
    // Zoomed out for ever, it shows 50 times as much, about the same middle.
    TGraphMapping out = Fitted({{1, 5}, {10000, 500}}, Types(3, 3));
    for (int i = 0; i < 9; ++i)
        out.Fit_To_Rect(GRAPH.adjusted(-200, -100, 200, 100), false);
    EXPECT_NEAR(out.horizontal.Log10_End(), 102, 1e-6);
    EXPECT_NEAR(out.horizontal.Log10_Begin(), -98, 1e-6);
    for (const double low : {-8.0, 0.0, 1e13, 1e300}) {
        const TGraphAxis axis = Fitted({{low, 1}, {low + 0.002, 2}}, Types(3, 3)).horizontal;
        EXPECT_GT(axis.Value(500), axis.Value(100)) << low;
        for (const double value : {low, -5.0})
            EXPECT_TRUE(std::isfinite(axis.Position(value))) << low << ", " << value;
    }
}

TEST(GraphTicks, RoundStepsInsideTheAxis)
{
    // Scale, low, high, length, spacing; width and decimals of the format; labels, a dot for a bare line.
    const std::tuple<int, double, double, double, double, int, int, const char*> rows[] = {
        {1, -0.7, 0.7, 200, 50, 8, 4, " -0.5000 0.0000 0.5000"},
        {1, 899.983, 900.021, 400, 90, 8, 4, " 899.9900 900.0000 900.0100 900.0200"},
        {1, 1000.00003, 1000.00004, 300, 90, 9, 4, " 1000.000030 1000.000035 1000.000040"},
        {1, 0, 1e300, 300, 90, 302, 0, " 0 5e+299 1e+300"},
        {2, 0, 2e9, 200, 90, 5, 0, " 0 1000000000 2000000000"},
        {2, 0, 3, 400, 20, 5, 0, " 0 1 2 3"},             // no step below what the labels can tell apart,
        {2, 0.1, 0.9, 400, 90, 5, 0, " 0.2 0.4 0.6 0.8"}, // unless none is left
        {1, 1.1, 4.9, 40, 60, 6, 4, " 2.0000"},
        {3, 1, 10, 65, 19, 8, 1, " 1.0 2.0 . . 5.0 . . . . 10.0"},
        {3, 4, 150, 300, 25, 8, 1, " . 5.0 . . . . 10.0 20.0 . . 50.0 . . . . 100.0"},
        {3, 0.01, 2e5, 90, 20, 8, 1, " 0.01 . 1.0 . 100.0 . 10000.0 ."},
    };
    for (const auto& [type, low, high, length, spacing, width, decimals, expected] : rows) {
        SCOPED_TRACE(testing::Message() << type << ": " << low << " to " << high);
        const auto format = Graph_Label_Format("%1", type, low, high, 8);
        EXPECT_EQ(State(format.width, format.decimals), State(width, decimals));
        TGraphAxis axis;
        axis.end = length;
        axis.logarithmic = type == GRAPH_SCALE_LOG10;
        axis.Show(low, high);
        std::string labels;
        for (const TGraphTick& tick : Graph_Ticks(axis, format, spacing)) {
            labels += " " + (tick.label.isEmpty() ? "." : tick.label.toStdString());
            EXPECT_NEAR(tick.pixel, length / 2, length / 2 + 1e-3);
        }
        EXPECT_EQ(labels, expected);
    }
}

TEST(GraphLayout, StandsByTheLineHeight)
{
    const TGraphLayout l = Graph_Layout({600, 400}, 10);
    QString parts;
    for (const QRect& part : {l.graph, l.vertical_labels, l.vertical_title, l.horizontal_labels,
                              l.horizontal_title, l.graph_title})
        parts +=
            QString("%1,%2-%3,%4 ").arg(part.left()).arg(part.top()).arg(part.right()).arg(part.bottom());
    EXPECT_EQ(parts, "70,20-580,360 20,0-60,380 0,20-20,360 60,360-600,380 70,380-580,400 70,0-600,20 ");
}

// SPDX-License-Identifier: MIT
#include "graph_helpers.h"

#include <QPainter>

#include <gmock/gmock.h>

#include <cmath>

namespace
{

// Where the widget draws a point: mapped, then towards zero.
QPoint Pixel(const TGraph& graph, const TVector2& point)
{
    const QPointF position = graph.Mapping().Position(point);
    return {static_cast<int>(position.x()), static_cast<int>(std::min(1e6, position.y()))};
}

bool Is_White(const QImage& picture, const QRect& part)
{
    QImage white(part.size(), picture.format());
    white.fill(Qt::white);
    return picture.copy(part) == white;
}

// Draws the first set of a graph one point after the other, which takes long.
QImage Drawn(const TGraph& graph, int style)
{
    QImage picture(graph.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setClipRect(graph.Layout().graph);
    painter.setPen(COLOR);
    const int parts = (graph.d_horizontal_scale_type == GRAPH_SCALE_LOG10 ? 4 : 2) * graph.DataSetSize(0);
    const int w = std::max(1, graph.Layout().graph.width() / parts - 1);
    const int zero = Pixel(graph, {1, 0}).y();
    for (int i = 0; i < graph.DataSetSize(0); ++i) {
        const TVector2 point = graph.GetPoint(0, i);
        const TVector2 before = graph.GetPoint(0, std::max(0, i - 1));
        if (!std::isfinite(point.x + point.y))
            continue;
        const QPoint p = Pixel(graph, point);
        if (style == TGraphWidget::GRAPH_LINE && std::isfinite(before.x + before.y))
            painter.drawLine(Pixel(graph, before), p);
        if (style == TGraphWidget::GRAPH_BAR && p.y() != zero)
            painter.fillRect(p.x() - w, std::min(p.y(), zero - 1), 2 * w,
                             std::max(zero - p.y(), p.y() - zero + 2), COLOR);
        if (style == TGraphWidget::GRAPH_CROSS) {
            painter.drawLine(p - QPoint(3, 3), p + QPoint(3, 3));
            painter.drawLine(p - QPoint(3, -3), p + QPoint(3, -3));
        }
        if (style == TGraphWidget::GRAPH_POINT)
            painter.fillRect(p.x() - 3, p.y() - 3, 6, 6, COLOR);
    }
    painter.end();
    return picture;
}

// Steady, noisy and jumping points with many to a pixel.
Points Many_Points()
{
    Points points;
    for (int i = 1; i < 5000; ++i)
        points.push_back({i % 7 == 0 ? i * 0.3 : i, 3 + std::sin(i * 0.001) + std::sin(i * i)});
    return points;
}

} // namespace

TEST(GraphWidgetDeathTest, IndexOutOfRange)
{
    TGraph graph({{1, 2}});
    EXPECT_DEATH(graph.AddPoint(1, {1, 2}), "set < static_cast<int>\\(d_data_sets.size\\(\\)\\)");
    EXPECT_DEATH(graph.GetPoint(0, 1),
                 "index < static_cast<int>\\(d_data_sets\\[set\\].dataset_points.size\\(\\)\\)");
}

TEST(GraphWidget, Palette)
{
    const int rows[][5] = {{0, 1, 255, 0, 0}, {3, 1, 255, 127, 0}, {6, 1, 128, 0, 0},
                           {94, 1, 0, 8, 16}, {97, 0, 0, 0, 0},    {-1, 0, 0, 0, 0}};
    for (const auto& [index, valid, red, green, blue] : rows) {
        int color[]{-1, -1, -1};
        EXPECT_EQ(TGraphWidget::GenerateRGBColor(index, color, color + 1, color + 2), valid == 1) << index;
        EXPECT_THAT(color, testing::ElementsAre(red, green, blue)) << index;
    }
}

TEST(GraphWidget, PixelsOfEveryStyleInAnyView)
{
    const Points rows[] = {
        {{4, 5}, {1, -3}, {2, 0}, {3, 9}},
        {{1, 1}, {4, 5}, {5, NAN}, {NAN, HUGE_VAL}, {6, 5}, {8, 2}, {HUGE_VAL, 5}, {9, 3}},
        Many_Points(),
    };
    const auto ink = [](const QImage& image) { return image.createMaskFromColor(COLOR.rgb()); };
    for (const Points& points : rows) {
        for (const int scales : {11, 13, 31, 33}) {
            for (int style = TGraphWidget::GRAPH_LINE; style <= TGraphWidget::GRAPH_POINT; ++style) {
                SCOPED_TRACE(testing::Message() << points.size() << ", " << scales << ", " << style);
                TGraph graph(points, scales, style);
                for (int view = 0; view < 2; ++view) {
                    const QImage seen = graph.Seen();
                    EXPECT_EQ(ink(seen), ink(Drawn(graph, style)));
                    graph.ZoomOut();
                }
            }
        }
    }
}

TEST(GraphWidget, UpperEdgeOfTheDataIsSeenAtEveryHeight)
{
    for (int height = 200; height < 320; height += 7) {
        TGraph graph({{900.0042, 0}, {900.0042, 8}, {900.0216, 8}, {900.0216, 0}}, 12);
        graph.EnableYIncludesZero(true);
        graph.resize(490, height);
        const QRect area = graph.Layout().graph;
        EXPECT_EQ(graph.Seen().pixelColor(area.center().x(), area.top()), COLOR) << height;
    }
}

TEST(GraphWidget, FarPoints)
{
    // Seen from nearer and nearer: their positions leave the range of whole pixels and then that of doubles.
    QImage picture(600, 400, QImage::Format_RGB32);
    for (int style = 1; style <= 4; ++style) {
        TGraph graph({{0, 0}, {1e308, 1}, {-1e308, 2}, {1, 1}, {1e13, 1}, {1e13 + 0.002, 2}}, 22, style);
        for (int step = 0; step < 150; ++step) {
            const QPoint origin = graph.Mapping().Position({0, 0}).toPoint();
            graph.Update_Viewport_To_Rect(QRect(origin - QPoint(2, 2), origin + QPoint(2, 2)));
            graph.Paint_To(&picture);
        }
    }
    // A line between two of them keeps its slope.
    TGraph graph({{-10, -10}, {10, 10}});
    graph.SetPoints(0, {{-1e9, -1e9}, {1e9, 1e9}, {1e300, -1e300}});
    graph.ZoomOut();
    const QImage line = graph.Seen();
    for (const double at : {-7.3, 0.9, 4.1})
        EXPECT_FALSE(Is_White(line, QRect(Pixel(graph, {at, at}) - QPoint(0, 1), QSize(1, 3)))) << at;
}

TEST(GraphWidget, EveryTickHasItsNumber)
{
    const double rows[][3] = {{1, 899.9901, 900.0299}, {1, 900, 900.03}, {2, 1e9, 1e9 + 100}, {2, -1e6, 2e6},
                              {1, 1e195, 1e200},       {3, 7e2, 7.7e7},  {3, 0.01, 1},        {3, 3, 5}};
    for (const auto& [type, low, high] : rows) {
        for (int width = 330; width < 700; width += 23) {
            SCOPED_TRACE(testing::Message() << type << ": " << low << " to " << high << ", " << width);
            TGraph graph({{low, low}, {high, high}}, 11 * static_cast<int>(type));
            graph.resize(width, 200 + width / 4);
            const QImage picture = graph.Seen();
            // Labels are parted by more than the gaps between their characters.
            const int bottom = graph.Layout().graph.bottom();
            const int height = graph.Layout().horizontal_labels.height() - 8;
            int ticks = 0;
            int labels = 0;
            for (int x = graph.Layout().horizontal_labels.left(); x < width; ++x) {
                ticks += !Is_White(picture, {x, bottom + 3, 1, 1});
                labels += Is_White(picture, {x - 5, bottom + 7, 5, height}) &&
                          !Is_White(picture, {x, bottom + 7, 1, height});
            }
            EXPECT_EQ(labels, ticks);
        }
    }
}

// SPDX-License-Identifier: MIT
#include "graph_helpers.h"

#include <QPainter>
#include <QPicture>

#include <gmock/gmock.h>

#include <cmath>
#include <optional>
#include <random>

namespace
{

// Where the widget draws a point: mapped, then towards zero.
QPoint Pixel(const TGraph& graph, const TVector2& point)
{
    const QPointF position = graph.Mapping().Position(point);
    return {static_cast<int>(position.x()), static_cast<int>(std::min(1e6, position.y()))};
}

QImage Only_Color(const QImage& picture)
{
    return picture.createMaskFromColor(COLOR.rgb(), Qt::MaskInColor);
}

bool Is_White(const QImage& picture)
{
    QImage white(picture.size(), picture.format());
    white.fill(Qt::white);
    return picture == white;
}

// Draws the first set of a graph one point after the other, which takes long.
void Draw_In_Style(QPainter& painter, const TGraph& graph, int style)
{
    const int parts = (graph.d_horizontal_scale_type == GRAPH_SCALE_LOG10 ? 4 : 2) * graph.DataSetSize(0);
    const int w = std::max(1, graph.Layout().graph.width() / parts - 1);
    const int zero = Pixel(graph, {1, 0}).y();
    std::optional<QPoint> last;
    for (int i = 0; i < graph.DataSetSize(0); ++i) {
        const TVector2 point = graph.GetPoint(0, i);
        if (!std::isfinite(point.x + point.y)) {
            last.reset();
            continue;
        }
        const QPoint p = Pixel(graph, point);
        if (style == TGraphWidget::GRAPH_LINE && last)
            painter.drawLine(*last, p);
        if (style == TGraphWidget::GRAPH_BAR && p.y() != zero)
            painter.fillRect(p.x() - w, std::min(p.y(), zero - 1), 2 * w,
                             std::max(zero - p.y(), p.y() - zero + 2), COLOR);
        if (style == TGraphWidget::GRAPH_CROSS) {
            painter.drawLine(p - QPoint(3, 3), p + QPoint(3, 3));
            painter.drawLine(p - QPoint(3, -3), p + QPoint(3, -3));
        }
        if (style == TGraphWidget::GRAPH_POINT)
            painter.fillRect(p.x() - 3, p.y() - 3, 6, 6, COLOR);
        last = p;
    }
}

// Steady, noisy and jumping points with many to a pixel.
Points Many_Points(int count)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> noise(0.0, 1.0);
    Points points;
    for (int i = 0; i < count; ++i)
        points.push_back(
            {i % 7 == 0 ? noise(random) * count : i + 1, 3 + std::sin(i * 0.001) + noise(random)});
    return points;
}

} // namespace

TEST(GraphWidget, DataSets)
{
    TGraph graph({{1, 2}, {3, 4}});
    EXPECT_EQ(graph.CreateDataSet(Qt::red, TGraphWidget::GRAPH_LINE), 1);
    EXPECT_TRUE(graph.AddPoint(0, {5, 6}) && graph.ModifyPoint(0, 1, {30, 40}) && graph.DeletePoint(0, 0));
    EXPECT_EQ(graph.GetPoint(0, 0).x, 30);
    EXPECT_EQ(graph.GetPoint(0, 1).y, 6);
    EXPECT_TRUE(graph.SetPoints(1, {{7, 8}}) && graph.DeletePoints(0));
    EXPECT_EQ(graph.DataSetSize(0), 0);
    EXPECT_TRUE(graph.DeleteDataSet(0));
    EXPECT_EQ(graph.GetPoint(0, 0).x, 7);
    graph.DeleteDataSets();
    EXPECT_EQ(graph.CreateDataSet(Qt::red, TGraphWidget::GRAPH_LINE), 0);
}

TEST(GraphWidgetDeathTest, IndexOutOfRange)
{
    TGraph graph({{1, 2}});
    const char* set_text = "set < static_cast<int>\\(d_data_sets.size\\(\\)\\)";
    const char* index_text = "index < static_cast<int>\\(d_data_sets\\[set\\].dataset_points.size\\(\\)\\)";
    EXPECT_DEATH(graph.AddPoint(1, {1, 2}), set_text);
    EXPECT_DEATH(graph.ModifyPoint(0, 1, {1, 2}), index_text);
    EXPECT_DEATH(graph.DeletePoint(0, 1), index_text);
    EXPECT_DEATH(graph.DeleteDataSet(1), "index < static_cast<int>\\(d_data_sets.size\\(\\)\\)");
    EXPECT_DEATH(graph.GetPoint(0, 1), index_text);
    EXPECT_DEATH(graph.DataSetSize(1), set_text);
}

TEST(GraphWidget, Palette)
{
    const int rows[][5] = {{0, 1, 255, 0, 0},   {1, 1, 0, 127, 0}, {3, 1, 255, 127, 0},
                           {5, 1, 255, 0, 255}, {6, 1, 128, 0, 0}, {94, 1, 0, 8, 16},
                           {96, 1, 0, 0, 0},    {97, 0, 0, 0, 0},  {-1, 0, 0, 0, 0}};
    for (const auto& [index, valid, red, green, blue] : rows) {
        int color[]{-1, -1, -1};
        EXPECT_EQ(TGraphWidget::GenerateRGBColor(index, color, color + 1, color + 2), valid == 1) << index;
        EXPECT_THAT(color, testing::ElementsAre(red, green, blue)) << index;
    }
}

TEST(GraphWidget, SettingsReachLayoutFitAndLabels)
{
    TGraph graph({{1000.001, 0}, {1000.02, 0}}, 12);
    QFont font = graph.font();
    font.setPixelSize(9);
    graph.setFont(font);
    const QFontMetrics metrics = graph.fontMetrics();
    const int h = metrics.height();
    EXPECT_EQ(graph.Layout().graph, QRect(QPoint(7 * h, 2 * h), QPoint(600 - 2 * h, 400 - 4 * h)));
    EXPECT_EQ(graph.Layout().vertical_labels, QRect(QPoint(2 * h, 0), QPoint(6 * h, 400 - 2 * h)));
    EXPECT_EQ(graph.Layout().horizontal_labels, QRect(QPoint(6 * h, 400 - 4 * h), QPoint(600, 400 - 2 * h)));

    const auto expect_y = [&graph](double low, double high) {
        graph.UpdateGraph();
        EXPECT_NEAR(graph.Low().y, low, 1e-9);
        EXPECT_NEAR(graph.High().y, high, 1e-9);
    };
    expect_y(-5e-6, 5e-6);
    graph.EnableYIncludesZero(true);
    expect_y(-5e-5, 5e-5);
    graph.SetScaleMinimumY(2.5, true);
    expect_y(-2.5, 2.5);
    graph.SetScaleMinimumY(0, false);
    expect_y(0, 5e-5);

    // Lengths with four decimals, counts with none.
    const TGraphLabelFormat& format = graph.Horizontal_Label_Format();
    EXPECT_EQ(format.Label(1000), QStringLiteral("  1000.0000  "));
    EXPECT_EQ(graph.Vertical_Label_Format().Label(7), QStringLiteral("      7"));
    EXPECT_EQ(format.cell, metrics.size(0, QStringLiteral("    -0.5000  ")));
    graph.d_horizontal_scale_type = graph.d_vertical_scale_type = GRAPH_SCALE_LOG10;
    graph.UpdateGraph();
    EXPECT_EQ(format.width, 8);
    EXPECT_EQ(graph.Vertical_Label_Format().width, 6);
}

TEST(GraphWidget, PixelsOfEveryStyleInAnyView)
{
    const Points rows[] = {
        {{4, 5}, {1, -3}, {2, 0}, {3, 9}},
        {{4, 4}, {4, 4}},
        {{900, 0}, {900, 5}, {900.02, 5}, {900.02, 0}},
        {{1, 1}, {4, 5}, {5, NAN}, {NAN, HUGE_VAL}, {6, 5}, {8, 2}, {HUGE_VAL, 5}, {9, 3}},
        Many_Points(5000),
    };
    const int styles[][3] = {{1, 2, 1}, {0, 0, 1}, {0, 1, 1}, {2, 1, 2}, {0, 2, 2}, {3, 2, 3},
                             {0, 3, 3}, {4, 0, 4}, {0, 4, 4}, {5, 1, 5}, {0, 5, 5}};
    for (const Points& points : rows) {
        for (const int scales : {11, 13, 31, 33}) {
            for (const auto& [type, by_default, style] : styles) {
                SCOPED_TRACE(testing::Message()
                             << points[0].x << ", " << scales << ", " << type << by_default);
                TGraph graph(points, scales, type);
                graph.d_default_graph_type = by_default;
                graph.UpdateGraph();
                for (int view = 0; view < 2; ++view) {
                    const QImage picture = graph.Seen();
                    QImage expected(picture.size(), picture.format());
                    expected.fill(Qt::white);
                    QPainter painter(&expected);
                    painter.setClipRect(graph.Layout().graph);
                    painter.setPen(COLOR);
                    Draw_In_Style(painter, graph, style);
                    painter.end();
                    EXPECT_EQ(Only_Color(picture), Only_Color(expected));
                    graph.ZoomOut();
                }
            }
        }
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
    graph.Seen();
    graph.SetPoints(0, {{-1e9, -1e9}, {1e9, 1e9}, {1e300, -1e300}});
    graph.ZoomOut();
    graph.Seen();
    for (const double at : {-7.3, 0.9, 4.1})
        EXPECT_FALSE(Is_White(graph.Seen().copy(QRect(Pixel(graph, {at, at}) - QPoint(0, 1), QSize(1, 3)))))
            << at;
}

TEST(GraphWidget, MarkersOnTopOfEachOther)
{
    TGraph graph({{0, 0}, {10, 10}});
    graph.CreateDataSet(QColor(0, 127, 0, 60), TGraphWidget::GRAPH_POINT);
    graph.AddPoints(1, {{2, 1}, {5, 6}, {5, 6}, {5, 6}});
    graph.CreateDataSet(Qt::yellow, TGraphWidget::GRAPH_LINE); // stays empty
    graph.UpdateGraph();
    const auto red_at = [&](const TVector2& point) { return qRed(graph.Seen().pixel(Pixel(graph, point))); };
    EXPECT_LT(red_at({5, 6}), red_at({2, 1}) - 30) << "a translucent marker was left out";
    graph.CreateDataSet(Qt::red, TGraphWidget::GRAPH_POINT);
    graph.AddPoint(3, {5, 6});
    graph.UpdateGraph();
    EXPECT_EQ(red_at({5, 6}), 255) << "later sets lie on top";
}

TEST(GraphWidget, EveryTickHasItsNumberAndNothingIsCut)
{
    const double rows[][3] = {{1, 899.9901, 900.0299}, {1, 900, 900.03}, {2, 1e9, 1e9 + 100}, {2, -1e6, 2e6},
                              {1, 1e195, 1e200},       {3, 7e2, 7.7e7},  {3, 0.01, 1},        {3, 3, 5}};
    for (const auto& [type, low, high] : rows) {
        for (int width = 330; width < 700; width += 23) {
            SCOPED_TRACE(testing::Message() << type << ": " << low << " to " << high << ", " << width);
            TGraph graph({{low, low}, {high, high}}, 11 * static_cast<int>(type));
            graph.d_vertical_title = graph.d_horizontal_title = QString(300, QLatin1Char('m'));
            graph.resize(width, 200 + width / 4);
            const QImage picture = graph.Seen();
            const TGraphLayout& layout = graph.Layout();
            const auto is_white = [&picture](const QRect& part) { return Is_White(picture.copy(part)); };
            EXPECT_TRUE(is_white({0, 0, width, 1}) && is_white({0, 0, 1, picture.height()}));
            EXPECT_TRUE(is_white({0, picture.height() - 1, width, 1}));
            EXPECT_TRUE(is_white({layout.vertical_labels.right() + 2, 0, 2, layout.graph.bottom()}));

            // Labels are parted by more than the gaps between their characters.
            const int bottom = layout.graph.bottom();
            const int height = layout.horizontal_labels.height() - 8;
            int ticks = 0;
            int labels = 0;
            for (int x = layout.horizontal_labels.left(); x < width; ++x) {
                ticks += !is_white({x, bottom + 3, 1, 1});
                labels += is_white({x - 5, bottom + 7, 5, height}) && !is_white({x, bottom + 7, 1, height});
            }
            EXPECT_EQ(labels, ticks);
        }
    }
}

TEST(GraphWidget, PaintsOnOtherDevicesAndInAnyPalette)
{
    TGraph graph({{0, 0}, {5, 7}, {10, 9}}, 11, TGraphWidget::GRAPH_POINT);
    const QImage screen = graph.Seen();
    // At twice the resolution and twice the size everything is twice as large.
    for (const int scale : {1, 2}) {
        QImage image(screen.size() * scale, QImage::Format_RGB32);
        image.setDotsPerMeterX(qRound(scale * graph.logicalDpiX() / 0.0254));
        ASSERT_TRUE(graph.Paint_To(&image));
        EXPECT_EQ(Only_Color(image), Only_Color(screen.scaled(image.size())));
    }
    QPicture recorded;
    ASSERT_TRUE(graph.Paint_To(&recorded));
    QImage replayed(screen.size(), QImage::Format_RGB32);
    QPainter(&replayed).drawPicture(0, 0, recorded);
    EXPECT_EQ(Only_Color(replayed), Only_Color(screen));
    QImage nothing;
    EXPECT_FALSE(graph.Paint_To(&nothing));

    // What the screen shows stayed as it was, and stays so on a dark desktop.
    QPalette dark(Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    graph.setPalette(dark);
    EXPECT_EQ(graph.Seen(), screen);
}

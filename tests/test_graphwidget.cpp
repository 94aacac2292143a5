// SPDX-License-Identifier: MIT
#include "graph_helpers.h"

#include <QPainter>
#include <QPicture>

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace
{

using Draw = std::function<void(QPainter&)>;

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

// Compares the pixels of COLOR in the widget's picture with those that `draw` sets in the plotting area.
void Expect_Drawn_As(TGraph& graph, const Draw& draw)
{
    const QImage picture = graph.Seen();
    QImage expected(picture.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setClipRect(graph.Layout().graph);
    painter.setPen(COLOR);
    draw(painter);
    painter.end();
    EXPECT_EQ(Only_Color(picture), Only_Color(expected));
}

// The points of the graph's first set, one after the other, in a style.
Draw In_Style(const TGraph& graph, int style)
{
    return [&graph, style](QPainter& painter) {
        const int count = graph.DataSetSize(0);
        const int parts = graph.d_horizontal_scale_type == GRAPH_SCALE_LOG10 ? 4 : 2;
        const int w = std::max(1, graph.Layout().graph.width() / (parts * count) - 1);
        const int zero = Pixel(graph, {1, 0}).y();
        for (int i = 0; i < count; ++i) {
            const QPoint p = Pixel(graph, graph.GetPoint(0, i));
            if (style == TGraphWidget::GRAPH_LINE && i > 0)
                painter.drawLine(Pixel(graph, graph.GetPoint(0, i - 1)), p);
            if (style == TGraphWidget::GRAPH_BAR && p.y() != zero)
                painter.fillRect(QRect(QPoint(p.x() - w, std::min(p.y(), zero - 1)),
                                       QPoint(p.x() + w - 1, std::max(p.y(), zero - 1))),
                                 COLOR);
            if (style == TGraphWidget::GRAPH_CROSS) {
                painter.drawLine(p - QPoint(3, 3), p + QPoint(3, 3));
                painter.drawLine(p - QPoint(3, -3), p + QPoint(3, -3));
            }
            if (style == TGraphWidget::GRAPH_POINT)
                painter.fillRect(p.x() - 3, p.y() - 3, 6, 6, COLOR);
        }
    };
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
    EXPECT_EQ(graph.DataSetSize(0), 2);
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
    const int rows[][5] = {{0, 1, 255, 0, 0}, {1, 1, 0, 127, 0}, {3, 1, 255, 127, 0}, {5, 1, 255, 0, 255},
                           {6, 1, 128, 0, 0}, {94, 1, 0, 8, 16}, {96, 1, 0, 0, 0},    {97, 0, 0, 0, 0},
                           {-1, 0, 0, 0, 0},  {13, 1, 0, 96, 0}};
    for (const auto& [index, valid, red, green, blue] : rows) {
        int color[]{-1, -1, -1};
        EXPECT_EQ(TGraphWidget::GenerateRGBColor(index, &color[0], &color[1], &color[2]), valid == 1)
            << index;
        EXPECT_THAT(color, testing::ElementsAre(red, green, blue)) << index;
    }
}

TEST(GraphWidget, SettingsReachLayoutFitAndLabels)
{
    TGraph graph({{1000.001, 0}, {1000.02, 0}}, 12);
    QFont font = graph.font();
    font.setPixelSize(9);
    graph.setFont(font);
    const int h = graph.fontMetrics().height();
    const TGraphLayout& layout = graph.Layout();
    EXPECT_EQ(layout.graph, QRect(QPoint(7 * h, 2 * h), QPoint(600 - 2 * h, 400 - 4 * h)));
    EXPECT_EQ(layout.vertical_labels, QRect(QPoint(2 * h, 0), QPoint(6 * h, 400 - 2 * h)));
    EXPECT_EQ(layout.horizontal_labels, QRect(QPoint(6 * h, 400 - 4 * h), QPoint(600, 400 - 2 * h)));
    EXPECT_EQ(layout.horizontal_title, QRect(QPoint(7 * h, 400 - 2 * h), QPoint(600 - 2 * h, 400)));

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
    EXPECT_EQ(graph.Horizontal_Label_Format().Label(1000), QStringLiteral("  1000.0000  "));
    EXPECT_EQ(graph.Vertical_Label_Format().Label(7), QStringLiteral("      7"));
    EXPECT_EQ(graph.Horizontal_Label_Format().cell.width(),
              graph.fontMetrics().horizontalAdvance(QStringLiteral("    -0.5000  ")));
    graph.d_horizontal_scale_type = graph.d_vertical_scale_type = GRAPH_SCALE_LOG10;
    graph.UpdateGraph();
    EXPECT_EQ(graph.Horizontal_Label_Format().width, 8);
    EXPECT_EQ(graph.Vertical_Label_Format().width, 6);
}

TEST(GraphWidget, WhichStyle)
{
    const int of_type[] = {1, 1, 2, 3, 4, 5};
    for (int type = 0; type <= 5; ++type) {
        for (int by_default = 0; by_default <= 5; ++by_default) {
            SCOPED_TRACE(testing::Message() << type << ", " << by_default);
            TGraph graph({{0, 0}, {5, 7}, {10, 10}}, 11, type);
            graph.d_default_graph_type = by_default;
            graph.UpdateGraph();
            Expect_Drawn_As(graph, In_Style(graph, of_type[type == 0 ? by_default : type]));
        }
    }
}

TEST(GraphWidget, PixelsOfAnyView)
{
    const Points rows[] = {
        {{4, 5}, {1, -3}, {2, 0}, {3, 9}},
        {{4, 4}, {4, 4}},
        {{900, 0}, {900, 5}, {900.02, 5}, {900.02, 0}},
        Many_Points(20000),
    };
    for (const Points& points : rows) {
        for (const int scales : {11, 13, 31, 33}) {
            for (int style = 1; style <= 4; ++style) {
                SCOPED_TRACE(testing::Message() << points[0].x << ", " << scales << ", " << style);
                TGraph graph(points, scales, style);
                Expect_Drawn_As(graph, In_Style(graph, style));
                graph.ZoomOut();
                Expect_Drawn_As(graph, In_Style(graph, style));
            }
        }
    }
}

TEST(GraphWidget, PointsThatAreNoNumbersPartTheLine)
{
    const double inf = std::numeric_limits<double>::infinity();
    for (const TVector2& gap : {TVector2(5, NAN), TVector2(inf, 5), TVector2(NAN, inf)}) {
        TGraph graph({{0, 1}, {4, 5}, gap, gap, {6, 5}, {10, 1}});
        Expect_Drawn_As(graph, [&](QPainter& painter) {
            painter.drawLine(Pixel(graph, {0, 1}), Pixel(graph, {4, 5}));
            painter.drawLine(Pixel(graph, {6, 5}), Pixel(graph, {10, 1}));
        });
    }
}

TEST(GraphWidget, HugeCoordinatesKeepTheirSlope)
{
    for (int style = 1; style <= 4; ++style) {
        // Seen from nearer and nearer, until the far points' positions overflow.
        TGraph graph({{0, 0}, {1e308, 1}, {-1e308, 2}, {1, 1}, {1e13, 1}, {1e13 + 0.002, 2}}, 22, style);
        for (int step = 0; step < 150; ++step) {
            const QPoint origin = graph.Mapping().Position({0, 0}).toPoint();
            graph.Update_Viewport_To_Rect(QRect(origin - QPoint(2, 2), origin + QPoint(2, 2)));
            QImage picture(600, 400, QImage::Format_RGB32);
            QPainter painter(&picture);
            graph.Draw(painter, picture.size());
        }
    }
    // The line's ends are far beyond any whole pixel, its middle crosses the view.
    TGraph graph({{-10, -10}, {10, 10}});
    graph.Seen();
    graph.SetPoints(0, {{-1e9, -1e9}, {1e9, 1e9}, {1e300, -1e300}});
    QImage picture(600, 400, QImage::Format_RGB32);
    QPainter painter(&picture);
    graph.Draw(painter, picture.size());
    for (const double at : {-7.3, 0.0, 4.1}) {
        const QPoint p = Pixel(graph, {at, at});
        const auto is_set = [&](int dy) { return picture.pixel(p + QPoint(0, dy)) == COLOR.rgb(); };
        EXPECT_TRUE(is_set(-1) || is_set(0) || is_set(1)) << at;
    }
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
    const struct
    {
        int type;
        double low, high;
    } rows[] = {{1, 899.9901, 900.0299}, {1, 900, 900.03},  {2, 1e9, 1e9 + 100},
                {2, -1e6, 2e6},          {1, 1e195, 1e200}, {1, 0, 950},
                {3, 7e2, 7.7e7},         {3, 0.01, 1},      {3, 3, 5}};
    for (const auto& row : rows) {
        for (int width = 330; width < 700; width += 23) {
            SCOPED_TRACE(testing::Message() << row.type << ", " << row.low << ", " << width);
            TGraph graph({{row.low, row.low}, {row.high, row.high}}, 11 * row.type);
            graph.d_vertical_title = graph.d_horizontal_title = graph.d_graph_title =
                QString(300, QLatin1Char('m'));
            graph.resize(width, 200 + width / 4);
            const QImage picture = graph.Seen();
            const auto is_white = [&picture](int x, int y, int columns, int lines) {
                QImage white(columns, lines, picture.format());
                white.fill(Qt::white);
                return picture.copy(x, y, columns, lines) == white;
            };
            const int height = picture.height();
            EXPECT_TRUE(is_white(0, 0, width, 1) && is_white(0, 0, 1, height) &&
                        is_white(0, height - 1, width, 1));
            // Between the vertical labels and the frame there is nothing but ticks.
            const TGraphLayout& layout = graph.Layout();
            EXPECT_TRUE(is_white(layout.vertical_labels.right() + 2, 0, 2, layout.graph.bottom()));

            // Labels are parted by more than the gaps between their characters.
            const QRect row_of_labels = layout.horizontal_labels;
            int ticks = 0;
            int labels = 0;
            int gap = 100;
            for (int x = row_of_labels.left(); x < width; ++x) {
                ticks += !is_white(x, layout.graph.bottom() + 3, 1, 1);
                const bool ink = !is_white(x, row_of_labels.top() + 7, 1, row_of_labels.height() - 8);
                labels += ink && gap > 4;
                gap = ink ? 0 : gap + 1;
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
        const QRect area = graph.Layout().graph;
        const QImage part = image.copy(QRect(area.topLeft() * scale, area.size() * scale));
        EXPECT_EQ(Only_Color(part), Only_Color(screen.copy(area).scaled(part.size())));
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

TEST(GraphWidget, RequestsAreAnsweredByTheNextPaint)
{
    TGraph graph({{0, 0}, {10, 10}}, 22);
    const auto width = [&] { return graph.High().x - graph.Low().x; };
    graph.AddPoint(0, {20, 20});
    graph.Seen();
    EXPECT_NEAR(width(), 10, 1e-6); // not by itself
    graph.ScaleToFit();
    EXPECT_NEAR(width(), 10, 1e-6);
    graph.Seen();
    EXPECT_NEAR(width(), 20, 1e-6);
    graph.ZoomOut();
    graph.Seen();
    graph.Seen();
    EXPECT_NEAR(width(), 40, 0.2);
    graph.d_direct_render = true;
    graph.Seen();
    EXPECT_NEAR(width(), 20, 1e-6);
}

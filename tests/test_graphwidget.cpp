// SPDX-License-Identifier: MIT
#include "graphwidget.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPicture>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace
{

using Points = std::vector<TVector2>;

const QColor COLOR(0, 127, 0);

// A graph with one data set in COLOR.
struct TGraph : TGraphWidget
{
    explicit TGraph(const Points& points, int type = GRAPH_LINE, const QColor& color = COLOR)
    {
        CreateDataSet(color, static_cast<TGraphType>(type));
        AddPoints(0, points);
        ScaleToFit();
    }
};

QImage Picture(TGraphWidget& graph, const QSize& size = QSize(600, 400))
{
    graph.resize(size);
    graph.show(); // hidden widgets are laid out anew with each grab
    QApplication::processEvents();
    return graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// Where the widget draws a point: mapped, then towards zero.
QPoint Pixel(const TGraphWidget& graph, const TVector2& point)
{
    const QPointF position = graph.Mapping().Position(point);
    return {static_cast<int>(position.x()), static_cast<int>(position.y())};
}

// Compares the pixels of COLOR in the widget's picture with those that `draw` sets in the plotting area.
void Expect_Drawn_As(TGraphWidget& graph, const std::function<void(QPainter&)>& draw)
{
    const QImage picture = Picture(graph);
    QImage expected(picture.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setClipRect(graph.Layout().graph);
    painter.setPen(COLOR);
    draw(painter);
    painter.end();

    int covered = 0;
    int different = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool is_set = picture.pixel(x, y) == COLOR.rgb();
            covered += is_set;
            different += is_set != (expected.pixel(x, y) == COLOR.rgb());
        }
    }
    EXPECT_GT(covered, 0);
    EXPECT_EQ(different, 0);
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
    TGraphWidget graph;
    EXPECT_EQ(graph.CreateDataSet(Qt::blue, TGraphWidget::GRAPH_DEFAULT), 0);
    EXPECT_EQ(graph.CreateDataSet(Qt::red, TGraphWidget::GRAPH_LINE), 1);
    EXPECT_TRUE(graph.AddPoints(0, {{1, 2}, {3, 4}}));
    EXPECT_TRUE(graph.AddPoint(0, {5, 6}));
    EXPECT_TRUE(graph.ModifyPoint(0, 1, {30, 40}));
    EXPECT_TRUE(graph.DeletePoint(0, 0));
    EXPECT_EQ(graph.DataSetSize(0), 2);
    EXPECT_EQ(graph.GetPoint(0, 0).x, 30);
    EXPECT_EQ(graph.GetPoint(0, 1).y, 6);
    EXPECT_TRUE(graph.SetPoints(1, {{7, 8}}));
    EXPECT_TRUE(graph.DeletePoints(0));
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
    EXPECT_DEATH(graph.ModifyPoint(1, 0, {1, 2}), set_text);
    EXPECT_DEATH(graph.ModifyPoint(0, 1, {1, 2}), index_text);
    EXPECT_DEATH(graph.DeletePoint(0, 1), index_text);
    EXPECT_DEATH(graph.DeleteDataSet(1), "index < static_cast<int>\\(d_data_sets.size\\(\\)\\)");
    EXPECT_DEATH(graph.GetPoint(1, 0), set_text);
    EXPECT_DEATH(graph.GetPoint(0, 1), index_text);
    EXPECT_DEATH(graph.DataSetSize(1), set_text);
}

TEST(GraphWidget, Palette)
{
    const struct
    {
        int index;
        bool valid;
        int red, green, blue;
    } rows[] = {
        {0, true, 255, 0, 0},   {1, true, 0, 127, 0}, {2, true, 0, 0, 255},   {3, true, 255, 127, 0},
        {5, true, 255, 0, 255}, {6, true, 128, 0, 0}, {13, true, 0, 96, 0},   {94, true, 0, 8, 16},
        {96, true, 0, 0, 0},    {97, false, 0, 0, 0}, {5000, false, 0, 0, 0}, {-1, false, 0, 0, 0},
    };
    for (const auto& row : rows) {
        int red = -1;
        int green = -1;
        int blue = -1;
        EXPECT_EQ(TGraphWidget::GenerateRGBColor(row.index, &red, &green, &blue), row.valid) << row.index;
        EXPECT_THAT((std::vector<int>{red, green, blue}), testing::ElementsAre(row.red, row.green, row.blue))
            << row.index;
    }
}

TEST(GraphWidget, LayoutFollowsSizeAndFont)
{
    TGraphWidget graph;
    QFont font = graph.font();
    for (const int pixels : {14, 8}) {
        font.setPixelSize(pixels);
        graph.setFont(font);
        Picture(graph, QSize(640, 480));
        const int h = graph.fontMetrics().height();
        const TGraphLayout& layout = graph.Layout();
        EXPECT_EQ(layout.graph, QRect(QPoint(7 * h, 2 * h), QPoint(640 - 2 * h, 480 - 4 * h)));
        EXPECT_EQ(layout.vertical_labels, QRect(QPoint(2 * h, 0), QPoint(6 * h, 480 - 2 * h)));
        EXPECT_EQ(layout.vertical_title, QRect(QPoint(0, 2 * h), QPoint(2 * h, 480 - 4 * h)));
        EXPECT_EQ(layout.horizontal_labels, QRect(QPoint(6 * h, 480 - 4 * h), QPoint(640, 480 - 2 * h)));
        EXPECT_EQ(layout.horizontal_title, QRect(QPoint(7 * h, 480 - 2 * h), QPoint(640 - 2 * h, 480)));
        EXPECT_EQ(layout.graph_title, QRect(QPoint(7 * h, 0), QPoint(640, 2 * h)));
        EXPECT_EQ(layout.widget, QRect(0, 0, 640, 480));
    }
    // Without room for a plotting area nothing may be divided by its size.
    const int h = graph.fontMetrics().height();
    for (const QSize& size : {QSize(0, 0), QSize(1, 1), QSize(9 * h, 6 * h), QSize(30, 600), QSize(600, 30)})
        Picture(graph, size);
}

TEST(GraphWidget, PublicSettingsReachTheFit)
{
    TGraph graph({{1000.001, 0}, {1000.02, 0}}, TGraphWidget::GRAPH_BAR);
    const auto y_range = [&graph] {
        graph.UpdateGraph();
        const QRect area = graph.Layout().graph;
        return std::pair(graph.Mapping().Value(area.bottomLeft()).y, graph.Mapping().Value(area.topLeft()).y);
    };
    graph.d_vertical_scale_type = GRAPH_SCALE_LINEAR;
    Picture(graph);
    graph.SetScaleMinimumY(2.5, true);
    EXPECT_THAT(y_range(), testing::Pair(testing::DoubleNear(-2.5, 1e-9), testing::DoubleNear(2.5, 1e-9)));
    graph.SetScaleMinimumY(0, false);
    EXPECT_THAT(y_range(), testing::Pair(testing::DoubleNear(0, 1e-12), testing::DoubleNear(5e-05, 1e-12)));
    graph.EnableYIncludesZero(false);
    EXPECT_THAT(y_range(),
                testing::Pair(testing::DoubleNear(-5e-6, 1e-12), testing::DoubleNear(5e-6, 1e-12)));

    // The histogram's labels: lengths with four decimals, counts with none.
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
    // A pixel that tells the styles apart, relative to the second of three points.
    const auto shape = [](TGraphWidget& graph) {
        const QImage picture = Picture(graph);
        const QPoint p = Pixel(graph, {5, 7});
        const auto is_set = [&](int dx, int dy) { return picture.pixel(p + QPoint(dx, dy)) == COLOR.rgb(); };
        return is_set(0, 20)    ? "bar"
               : is_set(-2, 0)  ? "point"
               : is_set(-3, -3) ? "cross"
               : is_set(0, 0)   ? "line"
                                : "none";
    };
    const char* of_type[] = {"line", "line", "bar", "cross", "point", "none"};
    for (int type = 0; type <= 5; ++type) {
        for (int by_default = 0; by_default <= 5; ++by_default) {
            TGraph graph({{0, 0}, {5, 7}, {10, 10}}, type);
            graph.d_default_graph_type = by_default;
            EXPECT_STREQ(shape(graph), of_type[type == 0 ? by_default : type]) << type << ", " << by_default;
        }
    }
}

TEST(GraphWidget, BarPixels)
{
    Points crowd(2000, TVector2(1, 1));
    crowd.push_back({9, 5});
    const struct
    {
        Points points;
        int horizontal_type;
        int parts;
    } rows[] = {
        {{{0, 5}, {1, -3}, {2, 0}, {3, 9}}, 1, 2}, {{{1, 5}, {10, 3}, {100, 2}}, 3, 4}, {crowd, 1, 2}};
    for (const auto& row : rows) {
        TGraph graph(row.points, TGraphWidget::GRAPH_BAR);
        graph.d_horizontal_scale_type = row.horizontal_type;
        Expect_Drawn_As(graph, [&](QPainter& painter) {
            const int count = static_cast<int>(row.points.size());
            const int w = std::max(1, graph.Layout().graph.width() / (row.parts * count) - 1);
            const int zero = Pixel(graph, {1, 0}).y();
            for (const TVector2& point : row.points) {
                const QPoint p = Pixel(graph, point);
                for (int y = std::min(p.y(), zero - 1); p.y() != zero && y <= std::max(p.y(), zero - 1); ++y)
                    painter.drawLine(p.x() - w, y, p.x() + w - 1, y);
            }
        });
    }
}

TEST(GraphWidget, MarkerPixels)
{
    const Points points = Many_Points(3000); // the ones at the edges are cut by the frame
    for (const int scale_type : {1, 3}) {
        TGraph crosses({points.begin(), points.begin() + 50}, TGraphWidget::GRAPH_CROSS);
        crosses.d_horizontal_scale_type = scale_type;
        Expect_Drawn_As(crosses, [&](QPainter& painter) {
            for (int i = 0; i < 50; ++i) {
                const QPoint p = Pixel(crosses, crosses.GetPoint(0, i));
                painter.drawLine(p + QPoint(-3, -3), p + QPoint(3, 3));
                painter.drawLine(p + QPoint(-3, 3), p + QPoint(3, -3));
            }
        });
        TGraph squares(points, TGraphWidget::GRAPH_POINT);
        squares.d_horizontal_scale_type = scale_type;
        Expect_Drawn_As(squares, [&](QPainter& painter) {
            for (const TVector2& point : points)
                painter.fillRect(QRect(Pixel(squares, point) + QPoint(-3, -3), QSize(6, 6)), COLOR);
        });
    }
}

TEST(GraphWidget, LinePixelsOfAnyView)
{
    const Points rows[] = {
        {{0, 0}, {10, 3}},
        {{4, 4}, {4, 4}},
        {{1, 1}, {1, 10}, {4, 4}, {4, 2}, {9, 4}},
        {{900, 0}, {900, 5}, {900.02, 5}, {900.02, 0}},
        Many_Points(20000),
    };
    for (const Points& points : rows) {
        for (const int type : {1, 3}) {
            TGraph graph(points);
            graph.d_horizontal_scale_type = graph.d_vertical_scale_type = type;
            const auto segments = [&](QPainter& painter) {
                for (size_t i = 1; i < points.size(); ++i)
                    painter.drawLine(Pixel(graph, points[i - 1]), Pixel(graph, points[i]));
            };
            Expect_Drawn_As(graph, segments);
            graph.ZoomOut();
            Expect_Drawn_As(graph, segments);
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
        for (const int type : {2, 3, 4}) {
            TGraph other({{0, 1}, gap, {10, 5}}, type);
            other.d_horizontal_scale_type = other.d_vertical_scale_type = 3;
            Picture(other);
        }
    }
}

TEST(GraphWidget, HugeCoordinatesKeepTheirSlope)
{
    // Seen from very near: the line's ends are far beyond any whole pixel, its middle crosses the view.
    TGraph graph({{-10, -10}, {10, 10}});
    Picture(graph);
    graph.SetPoints(0, {{-1e9, -1e9}, {1e9, 1e9}, {1e300, -1e300}});
    QImage picture(600, 400, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setFont(graph.font());
    graph.Draw(painter, picture.size());
    painter.end();
    for (const double at : {-7.3, 0.0, 4.1}) {
        const QPoint p = Pixel(graph, {at, at});
        const auto is_set = [&](int dy) { return picture.pixel(p + QPoint(0, dy)) == COLOR.rgb(); };
        EXPECT_TRUE(is_set(-1) || is_set(0) || is_set(1)) << at;
    }
}

TEST(GraphWidget, MarkersOnTopOfEachOther)
{
    QColor translucent = COLOR;
    translucent.setAlpha(60);
    TGraph graph({{0, 0}, {2, 1}, {5, 5}, {5, 5}, {5, 5}, {10, 10}}, TGraphWidget::GRAPH_POINT, translucent);
    const QImage picture = Picture(graph);
    const auto red_at = [&](const TVector2& point) { return qRed(picture.pixel(Pixel(graph, point))); };
    EXPECT_LT(red_at({5, 5}), red_at({2, 1}) - 30) << "a translucent marker was left out";

    graph.CreateDataSet(Qt::yellow, TGraphWidget::GRAPH_LINE); // stays empty
    graph.CreateDataSet(COLOR, TGraphWidget::GRAPH_POINT);
    graph.AddPoint(2, {5, 5});
    graph.UpdateGraph();
    EXPECT_EQ(Picture(graph).pixel(Pixel(graph, {5, 5})), COLOR.rgb()) << "later sets lie on top";
}

TEST(GraphWidget, LegendStaysInsideAndOffTheData)
{
    const QString title(300, QLatin1Char('m'));
    for (const QSize& size : {QSize(500, 150), QSize(1500, 700)}) {
        for (const int type : {1, 2, 3}) {
            for (const double top : {1.0, 950.0, 7.7e7, 1e200}) {
                SCOPED_TRACE(testing::Message() << size.width() << ", " << type << ", " << top);
                TGraph graph({{top / 1e5, top / 1e4}, {top, top}});
                QFont font = graph.font();
                font.setPixelSize(12);
                graph.setFont(font);
                graph.d_horizontal_scale_type = graph.d_vertical_scale_type = type;
                graph.d_vertical_title = graph.d_horizontal_title = graph.d_graph_title = title;
                const QImage picture = Picture(graph, size);
                const auto all_white = [&picture](const QRect& part) {
                    QImage white(part.size(), picture.format());
                    white.fill(Qt::white);
                    return picture.copy(part) == white;
                };
                EXPECT_TRUE(all_white(QRect(0, 0, size.width(), 1)));
                EXPECT_TRUE(all_white(QRect(0, 0, 1, size.height())));
                EXPECT_TRUE(all_white(QRect(0, size.height() - 1, size.width(), 1)));
                // Between the vertical labels and the frame there is nothing but ticks.
                const TGraphLayout& layout = graph.Layout();
                EXPECT_TRUE(
                    all_white(QRect(layout.vertical_labels.right() + 2, 0, 2, layout.graph.bottom())));
            }
        }
    }
}

TEST(GraphWidget, PaintsOnOtherDevicesAndInAnyPalette)
{
    TGraph graph({{0, 0}, {5, 7}, {10, 9}}, TGraphWidget::GRAPH_POINT);
    const QImage screen = Picture(graph);
    const QPoint p = Pixel(graph, {5, 7});

    QImage image(screen.size(), QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(graph.logicalDpiX() / 0.0254));
    ASSERT_TRUE(graph.Paint_To(&image));
    EXPECT_EQ(image.copy(graph.Layout().graph), screen.copy(graph.Layout().graph));

    // Twice the resolution at twice the size: everything twice as large.
    QImage fine(screen.size() * 2, QImage::Format_RGB32);
    fine.setDotsPerMeterX(qRound(2 * graph.logicalDpiX() / 0.0254));
    ASSERT_TRUE(graph.Paint_To(&fine));
    EXPECT_EQ(fine.pixel(2 * p + QPoint(-6, -6)), COLOR.rgb());
    EXPECT_EQ(fine.pixel(2 * p + QPoint(5, 5)), COLOR.rgb());
    EXPECT_NE(fine.pixel(2 * p + QPoint(7, 7)), COLOR.rgb());

    QPicture recorded;
    ASSERT_TRUE(graph.Paint_To(&recorded));
    QImage replayed(screen.size(), QImage::Format_RGB32);
    QPainter painter(&replayed);
    painter.drawPicture(0, 0, recorded);
    painter.end();
    EXPECT_EQ(replayed.pixel(p), COLOR.rgb());

    const QTemporaryDir directory;
    QPdfWriter pdf(directory.filePath(QStringLiteral("graph.pdf")));
    EXPECT_TRUE(graph.Paint_To(&pdf));
    QImage nothing;
    EXPECT_FALSE(graph.Paint_To(&nothing));

    // What the screen shows stayed as it was, and stays so on a dark desktop.
    QPalette dark(Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    graph.setPalette(dark);
    EXPECT_EQ(Picture(graph), screen);
}

TEST(GraphWidget, RequestsAreAnsweredByTheNextPaint)
{
    TGraph graph({{0, 0}, {10, 10}});
    graph.d_horizontal_scale_type = GRAPH_SCALE_LINEAR;
    Picture(graph);
    const QRect area = graph.Layout().graph;
    const auto painted_width = [&](bool paint = true) {
        if (paint)
            Picture(graph);
        return graph.Mapping().Value(area.topRight()).x - graph.Mapping().Value(area.topLeft()).x;
    };
    graph.AddPoint(0, {20, 20});
    EXPECT_NEAR(painted_width(), 10, 1e-6); // not by itself
    graph.ScaleToFit();
    EXPECT_NEAR(painted_width(false), 10, 1e-6);
    EXPECT_NEAR(painted_width(), 20, 1e-6);
    graph.ZoomOut();
    EXPECT_NEAR(painted_width(), 40, 0.2);
    EXPECT_NEAR(painted_width(), 40, 0.2);
    graph.d_direct_render = true;
    graph.ZoomOut();
    EXPECT_NEAR(painted_width(), 20, 1e-6);
}

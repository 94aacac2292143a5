// SPDX-License-Identifier: MIT
// What the graph draws, and what it does with the mouse. Positions are those in the plotting area.
#include "graphwidget.h"
#include "testing.h"

#include <cmath>

using Points = std::vector<TVector2>;
using TButton = Qt::MouseButton;

const QColor COLOR(0, 127, 0);
constexpr auto LEFT = Qt::LeftButton;
constexpr auto RIGHT = Qt::RightButton;
const Points DIAGONAL{{1, 1}, {100, 100}};

/// A graph on the screen with one data set, that notes what the last mouse event made it paint.
struct TGraph : TGraphWidget
{
    QRegion d_painted;
    bool d_painted_at_once{false};
    QSignalSpy d_clicks{this, &TGraphWidget::Mouse_Click};

    /// `scales` holds the scale type of x and, as its last digit, that of y.
    explicit TGraph(const Points& points, int scales = 11, int type = GRAPH_LINE, const QColor& color = COLOR)
    {
        d_horizontal_scale_type = scales / 10;
        d_vertical_scale_type = scales % 10;
        EnableYIncludesZero(false);
        CreateDataSet(color, static_cast<TGraphType>(type));
        AddPoints(0, points);
        QFont letters;
        letters.setPixelSize(12); // on any screen
        setFont(letters);
        resize(600, 400);
        show(); // hidden widgets are laid out anew with each grab
    }

    QImage Seen()
    {
        QApplication::processEvents();
        return grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QPointF In_Area(const QPointF& position) const { return Layout().graph.topLeft() + position; }
    TVector2 Value(const QPointF& position) const { return Mapping().Value(In_Area(position)); }
    TVector2 Low() const { return Mapping().Value(Layout().graph.bottomLeft()); }
    TVector2 High() const { return Mapping().Value(Layout().graph.topRight()); }
    /// Where a point is drawn: mapped, then towards zero.
    QPoint Pixel(const TVector2& point) const
    {
        const QPointF position = Mapping().Position(point);
        return {static_cast<int>(position.x()), static_cast<int>(std::min(1e6, position.y()))};
    }

    void Send(QEvent::Type type, const QPointF& at, TButton button, Qt::MouseButtons held)
    {
        QApplication::processEvents();
        d_painted = QRegion();
        QMouseEvent event(type, In_Area(at), button, held, Qt::NoModifier);
        QApplication::sendEvent(this, &event);
        d_painted_at_once = !d_painted.isEmpty();
        QApplication::processEvents();
    }
    void Press(const QPointF& at, TButton button) { Send(QEvent::MouseButtonPress, at, button, button); }
    void Move(const QPointF& to, Qt::MouseButtons held) { Send(QEvent::MouseMove, to, Qt::NoButton, held); }
    void Release(const QPointF& at, TButton button) { Send(QEvent::MouseButtonRelease, at, button, {}); }
    void Drag(const QPointF& from, const QPointF& to, TButton button)
    {
        Press(from, button);
        for (int step = 1; step <= 2 && to != from; ++step)
            Move(from + (to - from) * step / 2.0, button);
        Release(to, button);
    }
    void Click(const QPointF& at, TButton button) { Drag(at, at, button); }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        d_painted += event->region();
        TGraphWidget::paintEvent(event);
    }
};

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
    const int zero = graph.Pixel({1, 0}).y();
    for (int i = 0; i < graph.DataSetSize(0); ++i) {
        const TVector2 point = graph.GetPoint(0, i), before = graph.GetPoint(0, std::max(0, i - 1));
        if (!std::isfinite(point.x + point.y))
            continue;
        const QPoint p = graph.Pixel(point);
        if (style == TGraphWidget::GRAPH_LINE && std::isfinite(before.x + before.y))
            painter.drawLine(graph.Pixel(before), p);
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
    return picture;
}

void Expect_View(const TGraph& graph, const TVector2& low, const TVector2& high)
{
    for (const int axis : {0, 1}) {
        EXPECT_NEAR(graph.Low()(axis), low(axis), 1e-9 * (high(axis) - low(axis)));
        EXPECT_NEAR(graph.High()(axis), high(axis), 1e-9 * (high(axis) - low(axis)));
    }
}

TEST(GraphWidget, DataSetsAndPalette)
{
    TGraph graph({{1, 2}}, 22);
    EXPECT_TRUE(graph.AddPoint(0, {3, 4}));
    EXPECT_TRUE(graph.AddPoint(0, {5, 6}));
    EXPECT_TRUE(graph.ModifyPoint(0, 1, {7, 8}));
    EXPECT_EQ(graph.GetPoint(0, 1).x, 7);
    EXPECT_TRUE(graph.DeletePoint(0, 1));
    EXPECT_EQ(graph.GetPoint(0, 0).x + graph.GetPoint(0, 1).y, 1 + 6);
    EXPECT_DEATH(graph.GetPoint(0, 2), "dataset_points.size");
    EXPECT_TRUE(graph.AddPoints(graph.CreateDataSet(COLOR, TGraphWidget::GRAPH_LINE), {{0, 9}}));
    graph.UpdateGraph();
    Expect_View(graph, {0, 2}, {5, 9}); // of both sets
    graph.DeletePoints(0);
    EXPECT_TRUE(graph.DeleteDataSet(0));
    EXPECT_EQ(graph.DataSetSize(0), 1);
    EXPECT_DEATH(graph.AddPoint(1, {1, 2}), "set < static_cast<int>\\(d_data_sets.size\\(\\)\\)");

    const std::pair<int, const char*> rows[] = {{0, "true 255 0 0"}, {3, "true 255 127 0"},
                                                {6, "true 128 0 0"}, {94, "true 0 8 16"},
                                                {97, "false 0 0 0"}, {-1, "false 0 0 0"}};
    for (const auto& [index, color] : rows) {
        int red = -1, green = -1, blue = -1;
        const bool valid = TGraphWidget::GenerateRGBColor(index, &red, &green, &blue);
        EXPECT_EQ(State(valid, red, green, blue), color) << index;
    }
}

TEST(GraphWidget, PixelsOfEveryStyleInAnyView)
{
    Points many; // steady, noisy and jumping points with many to a pixel
    for (int i = 1; i < 5000; ++i)
        many.push_back({i % 7 == 0 ? i * 0.3 : i, 3 + std::sin(i * 0.001) + std::sin(i * i)});
    const Points rows[] = {
        {{4, 5}, {1, -3}, {2, 0}, {3, 9}},
        {{1, 1}, {4, 5}, {5, NAN}, {NAN, HUGE_VAL}, {6, 5}, {8, 2}, {HUGE_VAL, 5}, {9, 3}},
        many,
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
    for (int style = TGraphWidget::GRAPH_LINE; style <= TGraphWidget::GRAPH_POINT; ++style) {
        // Twice in one place a translucent colour covers more.
        const auto color = [style](const Points& points) {
            TGraph graph(points, 22, style, QColor(0, 127, 0, 60));
            return graph.Seen().pixelColor(graph.Pixel({2, 2})).red();
        };
        const Points once{{1, 1}, {2, 1}, {2, 2}, {2, 3}, {3, 3}};
        EXPECT_LT(color({{1, 1}, {2, 1}, {2, 2}, {2, 3}, {2, 2}, {2, 1}, {3, 3}}), color(once)) << style;
    }
}

TEST(GraphWidget, FarPointsAndOtherDevices)
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
        EXPECT_FALSE(Is_White(line, QRect(graph.Pixel({at, at}) - QPoint(0, 1), QSize(1, 3)))) << at;
    // The same picture on a device of the same resolution, and one as large on a finer one.
    graph.d_show_cursor_position = false;
    EXPECT_TRUE(graph.Paint_To(&picture));
    EXPECT_EQ(picture, graph.Seen());
    for (const double ratio : {1.0, 2.0, 1.25, 1.5}) { // of pixels; at 1 the inches are twice as fine
        QImage fine(picture.size() * (ratio == 1.0 ? 2.0 : ratio), QImage::Format_RGB32);
        fine.setDotsPerMeterX(picture.dotsPerMeterX() * (ratio == 1.0 ? 2 : 1));
        fine.setDevicePixelRatio(ratio);
        fine.fill(Qt::white);
        EXPECT_TRUE(graph.Paint_To(&fine));
        const QPoint place = graph.Pixel({4.1, 4.1}) * (ratio == 1.0 ? 2.0 : ratio);
        EXPECT_FALSE(Is_White(fine, QRect(place - QPoint(0, 3), QSize(1, 6)))) << ratio;
    }
}

TEST(GraphWidget, BarsAsWideAsTheirBinsNeverOverlap)
{
    for (const double beyond : {0.0, 0.01, 0.1, 0.3}) { // that the axis reaches to both sides of the bins
        Points bins{{900 - beyond, 0}, {900.032 + beyond, 0}};
        for (int bin = 0; bin < 9; ++bin)
            bins.emplace_back(900 + 0.004 * bin, 1 + bin % 3);
        TGraph graph(bins, 22, TGraphWidget::GRAPH_BAR, QColor(0, 127, 0, 60)); // darker where they overlap
        const QImage before = graph.Seen();
        graph.d_largest_bar_width = 0.004;
        graph.UpdateGraph();
        const QImage after = graph.Seen();
        EXPECT_EQ(after == before, beyond == 0.0) << beyond;
        const QRect area = graph.Layout().graph;
        for (int x = area.left(); x <= area.right(); ++x)
            ASSERT_GT(after.pixelColor(x, area.bottom() - 3).red(), 160) << beyond << ", " << x;
    }
}

TEST(GraphWidget, WithoutPointsATextTakesThePlaceOfTheNumbers)
{
    TGraph graph({{NAN, 1}});
    const TGraphLayout layout = graph.Layout();
    const QRect numbers = layout.horizontal_labels.adjusted(0, 2, -1, -3);
    const auto expect = [&](bool text, bool labels) {
        graph.UpdateGraph();
        const QImage seen = graph.Seen();
        EXPECT_EQ(!Is_White(seen, layout.graph), text || labels);
        EXPECT_EQ(!Is_White(seen, numbers), labels);
        EXPECT_EQ(!Is_White(seen, layout.vertical_labels), labels);
        EXPECT_FALSE(Is_White(seen, layout.graph.adjusted(-1, -1, 1, 1))) << "no frame";
    };
    expect(false, false);
    graph.d_empty_text = QStringLiteral("Nothing yet");
    expect(true, false);
    graph.SetPoints(0, DIAGONAL);
    expect(false, true);
    graph.DeleteDataSets();
    expect(true, false);
}

TEST(GraphWidget, EveryTickHasItsNumber)
{
    const double rows[][3] = {
        {1, 899.9901, 900.0299}, {1, 900, 900.03}, {2, 1e9, 1e9 + 100}, {2, -1e6, 2e6}, {1, 1e195, 1e200},
        {3, 7e2, 7.7e7},         {3, 0.01, 1},     {3, 3, 5},           {2, 0.1, 0.9},  {1, 900, 900.00001}};
    for (const auto& [type, low, high] : rows) {
        for (int width = 330; width < 700; width += 23) {
            SCOPED_TRACE(testing::Message() << type << ": " << low << " to " << high << ", " << width);
            TGraph graph({{low, low}, {high, high}}, 11 * static_cast<int>(type));
            graph.resize(width, 200 + width / 4);
            const QImage picture = graph.Seen();
            // Labels are parted by more than the gaps between their characters.
            const QRect area = graph.Layout().graph;
            const int height = graph.Layout().horizontal_labels.height() - 8;
            int ticks = 0, labels = 0;
            for (int x = graph.Layout().horizontal_labels.left(); x < width; ++x) {
                const bool tick = !Is_White(picture, {x, area.bottom() + 3, 1, 1});
                ticks += tick;
                EXPECT_FALSE(tick && Is_White(picture, {x - 6, area.bottom() + 7, 13, height})) << x;
                labels += Is_White(picture, {x - 4, area.bottom() + 7, 4, height}) &&
                          !Is_White(picture, {x, area.bottom() + 7, 1, height});
            }
            EXPECT_EQ(labels, ticks);
            EXPECT_GT(labels, width > 480 ? 1 : 0);
            const QRect column = graph.Layout().vertical_labels.adjusted(0, 0, 4, 0);
            for (int y = column.top(); y <= area.bottom() + 5; ++y) {
                const bool tick = !Is_White(picture, {area.left() - 3, y, 1, 1});
                ticks -= tick;
                EXPECT_FALSE(tick && Is_White(picture, {area.right() - 1, y, 1, 1})) << "no grid";
                labels -= Is_White(picture, {column.left(), y - 1, column.width(), 1}) &&
                          !Is_White(picture, {column.left(), y, column.width(), 1});
            }
            EXPECT_EQ(labels, ticks);
        }
    }
}

TEST(GraphWidget, TitlesStandInTheirBands)
{
    TGraph graph(DIAGONAL);
    graph.d_show_cursor_position = false;
    const TGraphLayout layout = graph.Layout();
    for (const auto& [title, band] : {std::pair(&graph.d_graph_title, layout.graph_title),
                                      {&graph.d_horizontal_title, layout.horizontal_title},
                                      {&graph.d_vertical_title, layout.vertical_title}}) {
        const QRect inside = band.adjusted(3, 3, -3, -3); // away from frame and numbers
        EXPECT_FALSE(Is_White(graph.Seen(), inside));
        title->clear();
        graph.UpdateGraph();
        EXPECT_TRUE(Is_White(graph.Seen(), inside));
    }
    const QImage numbers = graph.Seen().copy(layout.horizontal_labels);
    graph.SetPoints(0, {{1, 1e13}, {100, 1e13 + 9}}); // too long for their column
    graph.UpdateGraph();
    EXPECT_EQ(graph.Seen().copy(layout.horizontal_labels), numbers) << "small letters where there is room";
    graph.SetPoints(0, DIAGONAL);
    graph.EnableYIncludesZero(true);
    graph.SetScaleMinimumY(200, false);
    graph.UpdateGraph();
    Expect_View(graph, {1 - 99 / 50.0, 1 - 199 / 50.0}, {100, 200}); // with margins
}

TEST(GraphMouse, ClickOrZoomBySize)
{
    const std::tuple<QPointF, QPointF, bool> rows[] = {
        {{100, 100}, {100, 100}, false},     {{100, 100}, {110, 109}, false},
        {{110, 109}, {100, 100}, false},     {{100, 100}, {110, 110}, true},
        {{110, 110}, {100, 100}, true},      {{100, 110}, {110, 100}, true},
        {{100, 100}, {109.6, 109.4}, false}, {{99.5, 99.5}, {110.4, 109.5}, true}, // rounded
        {{100, 100}, {120, 100}, true}, // no height: as little as can be shown
        {{-90, -5}, {110, 110}, true},  // from outside: starts in the corner
    };
    for (const auto& [press, release, zooms] : rows) {
        SCOPED_TRACE(testing::Message() << press.x() << ", " << press.y() << " to " << release.x());
        for (const int scales : {23, 32}) {
            TGraph graph(DIAGONAL, scales);
            const auto value = [&graph](const QPointF& at) {
                return graph.Value({std::max(0.0, std::round(at.x())), std::max(0.0, std::round(at.y()))});
            };
            const TVector2 from = value(press), to = value(release);
            const double widening = from.y == to.y ? 0.000005 : 0.0;
            const TVector2 low(std::min(from.x, to.x), std::min(from.y, to.y) - widening);
            const TVector2 high(std::max(from.x, to.x), std::max(from.y, to.y) + widening);
            graph.Drag(press, release, LEFT);
            Expect_View(graph, zooms ? low : DIAGONAL[0], zooms ? high : DIAGONAL[1]);
            EXPECT_EQ(graph.d_clicks.value(0), zooms ? QVariantList() : QVariantList({to.x, to.y}));
        }
    }
}

TEST(GraphMouse, RightButtonPansAndZoomsOut)
{
    for (const int scales : {22, 33}) {
        TGraph graph(DIAGONAL, scales);
        const TVector2 held = graph.Value({200, 200});
        graph.Press({200, 200}, RIGHT);
        for (const QPointF& pointer : {QPointF(210, 190), QPointF(260, 220), QPointF(150, 340)}) {
            graph.Move(pointer, RIGHT);
            EXPECT_TRUE(graph.d_painted_at_once) << "the view lags behind the pointer";
            EXPECT_LT((graph.Mapping().Position(held) - graph.In_Area(pointer)).manhattanLength(), 1e-6);
        }
        const TVector2 low = graph.Low();
        graph.Release({150, 340}, RIGHT);
        EXPECT_EQ(graph.Low().x, low.x) << "a pan is no click";

        graph.d_painted = QRegion();
        graph.ScaleToFit();
        QApplication::processEvents();
        EXPECT_EQ(graph.d_painted, graph.rect());
        Expect_View(graph, DIAGONAL[0], DIAGONAL[1]);
        const QSize size = graph.Layout().graph.size();
        const TVector2 corner = graph.Value({0, 0});
        graph.Click({9, 9}, RIGHT); // what stood in the corner is a quarter of the way in, to the pixel
        const QPointF moved = graph.Mapping().Position(corner) - graph.In_Area({0, 0});
        EXPECT_NEAR(moved.x(), size.width() / 4.0, 1.0);
        EXPECT_NEAR(moved.y(), size.height() / 4.0, 1.0);
        for (int i = 0; i < 12 && scales == 22; ++i)
            graph.Click({9, 9}, RIGHT);
        EXPECT_LE(graph.High().x - graph.Low().x, 50 * 99 + 1e-6);
        EXPECT_LE(graph.High().y - graph.Low().y, 50 * 99 + 1e-6);
    }
}

TEST(GraphMouse, HoverTextAndCursor)
{
    TGraph graph(DIAGONAL, 22);
    const QImage before = graph.Seen();
    const int top = graph.Layout().horizontal_title.top();
    const auto expect = [&](const QPointF& pointer, const char* text, bool answers) {
        graph.Move(pointer, Qt::NoButton);
        EXPECT_EQ(graph.Cursor_Position_Text(), text);
        EXPECT_EQ(graph.d_painted, answers ? QRegion(0, top, 600, 400 - top) : QRegion()) << text;
        EXPECT_EQ(graph.cursor().shape(), answers ? Qt::CrossCursor : Qt::ArrowCursor) << text;
    };
    expect({-1, 0}, "0.00000,   0.00000", false);
    expect({0, 0}, "1.00000,   100.00000", true);
    EXPECT_NE(graph.Seen(), before);
    EXPECT_EQ(graph.Seen().copy(0, 0, 600, top), before.copy(0, 0, 600, top)) << "text over the graph";
    graph.d_show_cursor_position = false;
    expect({50, 50}, "1.00000,   100.00000", false);
}

TEST(GraphMouse, OnlyTheOutlineIsRepaintedAndNoneIsLeft)
{
    TGraph graph(DIAGONAL);
    const QImage before = graph.Seen();
    graph.Press({100, 100}, LEFT);
    graph.Move({150, 130}, LEFT);
    graph.Move({95, 105}, LEFT);
    EXPECT_LT(graph.d_painted.boundingRect().width(), 60) << "more than the outline is painted";
    EXPECT_NE(graph.Seen(), before);
    graph.Release({95, 105}, LEFT);
    graph.Press({300, 200}, LEFT);
    EXPECT_EQ(graph.Seen(), before);
}

TEST(GraphMouse, ButtonsTogetherAndReleasesWithoutAPress)
{
    TGraph graph(DIAGONAL);
    graph.Press({100, 100}, LEFT);
    graph.Send(QEvent::MouseButtonPress, {200, 100}, RIGHT, LEFT | RIGHT);
    graph.Move({300, 160}, LEFT | RIGHT); // the left drag goes on, from where the right button was pressed
    const TVector2 low = graph.Value({200, 160}), high = graph.Value({300, 100});
    graph.Send(QEvent::MouseButtonRelease, {300, 160}, LEFT, RIGHT);
    Expect_View(graph, low, high);
    graph.Release({300, 160}, RIGHT); // never dragged: a click
    EXPECT_GT(graph.High().x - graph.Low().x, 1.9 * (high.x - low.x));

    TGraph other(DIAGONAL, 22);
    other.Click({1, 1}, LEFT);
    for (const TButton button : {LEFT, RIGHT, Qt::MiddleButton}) {
        other.Move({100, 100}, button);
        other.Move({200, 200}, button);
        other.Release({200, 200}, button);
    }
    Expect_View(other, DIAGONAL[0], DIAGONAL[1]);
    EXPECT_EQ(other.d_clicks.size(), 2); // no box was begun
}

TEST(GraphMouse, DirectRenderAndResizingKeepShowingAllTheData)
{
    TGraph direct(DIAGONAL, 22);
    direct.d_direct_render = true;
    const QImage before = direct.Seen();
    for (const TButton button : {LEFT, RIGHT})
        direct.Drag({10, 10}, {200, 200}, button);
    direct.Click({10, 10}, RIGHT);
    Expect_View(direct, DIAGONAL[0], DIAGONAL[1]);
    EXPECT_EQ(direct.Seen(), before);
    direct.Click({0, 0}, LEFT);
    EXPECT_NEAR(direct.d_clicks.value(0).value(1).toDouble(), 100, 1e-9);

    TGraph graph(DIAGONAL, 22);
    for (const QSize& size : {QSize(500, 300), QSize(0, 0), QSize(300, 0), QSize(30, 600)}) {
        for (const TButton button : {LEFT, RIGHT}) {
            graph.Press({100, 100}, button);
            graph.Move({300, 300}, button);
            graph.resize(size);
            graph.Drag({300, 300}, {200, 200}, button);
            graph.resize(600, 400);
        }
    }
    graph.Seen();
    Expect_View(graph, DIAGONAL[0], DIAGONAL[1]);
}

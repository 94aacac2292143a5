// SPDX-License-Identifier: MIT
#include "graphwidget.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cmath>

namespace
{

constexpr auto LEFT = Qt::LeftButton;
constexpr auto RIGHT = Qt::RightButton;

// A graph that notes what is painted. Its plotting area shows x and y from 0 to 100 or, on logarithmic axes,
// from 1 to 100. Positions are those in the plotting area.
class TGraph : public TGraphWidget
{
public:
    QRegion d_painted;
    int d_paints{0};
    QSignalSpy d_clicks{this, &TGraphWidget::Mouse_Click};

    explicit TGraph(int horizontal = 2, int vertical = 2, bool direct = false)
    {
        d_horizontal_scale_type = horizontal;
        d_vertical_scale_type = vertical;
        d_direct_render = direct;
        EnableYIncludesZero(false);
        CreateDataSet(Qt::blue, GRAPH_LINE);
        AddPoints(0, {{horizontal == 3 ? 1.0 : 0.0, vertical == 3 ? 1.0 : 0.0}, {100.0, 100.0}});
        resize(800, 600);
        show();
        Settle();
    }

    QPointF In_Area(const QPointF& position) const { return Layout().graph.topLeft() + position; }
    TVector2 Value(const QPointF& position) const { return Mapping().Value(In_Area(position)); }
    TVector2 Low() const { return Mapping().Value(Layout().graph.bottomLeft()); }
    TVector2 High() const { return Mapping().Value(Layout().graph.topRight()); }

    void Send(QEvent::Type type, const QPointF& position, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, In_Area(position), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(this, &event);
    }
    void Press(const QPointF& at, Qt::MouseButton button)
    {
        Send(QEvent::MouseButtonPress, at, button, button);
    }
    void Move(const QPointF& to, Qt::MouseButtons buttons = Qt::NoButton)
    {
        Send(QEvent::MouseMove, to, Qt::NoButton, buttons);
    }
    void Release(const QPointF& at, Qt::MouseButton button)
    {
        Send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void Click(const QPointF& at, Qt::MouseButton button)
    {
        Press(at, button);
        Release(at, button);
    }
    void Drag(const QPointF& from, const QPointF& to, Qt::MouseButton button)
    {
        Press(from, button);
        Move((from + to) / 2.0, button);
        Move(to, button);
        Release(to, button);
    }

    void Settle()
    {
        QApplication::processEvents();
        d_painted = QRegion();
        d_paints = 0;
    }
    QRegion Painted_Next()
    {
        QApplication::processEvents();
        return d_painted;
    }
    QImage Seen()
    {
        QApplication::processEvents();
        return grab().toImage();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        d_painted += event->region();
        ++d_paints;
        TGraphWidget::paintEvent(event);
    }
};

void Expect_View(const TGraph& graph, const TVector2& low, const TVector2& high)
{
    EXPECT_NEAR(graph.Low().x, low.x, 1e-9 * (high.x - low.x));
    EXPECT_NEAR(graph.Low().y, low.y, 1e-9 * (high.y - low.y));
    EXPECT_NEAR(graph.High().x, high.x, 1e-9 * (high.x - low.x));
    EXPECT_NEAR(graph.High().y, high.y, 1e-9 * (high.y - low.y));
}

} // namespace

TEST(GraphMouse, ClickOrZoomBySize)
{
    const struct
    {
        QPointF from, to;
        bool zooms;
    } rows[] = {
        {{100, 100}, {100, 100}, false}, {{100, 100}, {110, 109}, false}, {{110, 109}, {100, 100}, false},
        {{100, 100}, {110, 110}, true},  {{110, 110}, {100, 100}, true},  {{100, 110}, {110, 100}, true},
        {{100, 100}, {120, 100}, true}, // no height: as little as can be shown
        {{-90, -5}, {110, 110}, true},  // from outside: starts in the corner
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.from.x() << ", " << row.from.y() << " to " << row.to.x());
        for (const int type : {2, 3}) {
            TGraph graph(type, 5 - type);
            const TVector2 from = graph.Value({std::max(0.0, row.from.x()), std::max(0.0, row.from.y())});
            const TVector2 to = graph.Value(row.to);
            TVector2 low = row.zooms ? TVector2(std::min(from.x, to.x), std::min(from.y, to.y)) : graph.Low();
            TVector2 high =
                row.zooms ? TVector2(std::max(from.x, to.x), std::max(from.y, to.y)) : graph.High();
            if (high.y == low.y) {
                low.y -= 0.000005;
                high.y += 0.000005;
            }
            graph.Drag(row.from, row.to, LEFT);
            Expect_View(graph, low, high);
            ASSERT_EQ(graph.d_clicks.size(), row.zooms ? 0 : 1);
            if (!row.zooms) {
                EXPECT_DOUBLE_EQ(graph.d_clicks[0][0].toDouble(), to.x);
                EXPECT_DOUBLE_EQ(graph.d_clicks[0][1].toDouble(), to.y);
            }
        }
    }
}

TEST(GraphMouse, PositionsAreRounded)
{
    TGraph graph;
    for (const QPointF& offset : {QPointF(0.49, -0.49), QPointF(-0.5, -0.5), QPointF(-0.4, 0.3)}) {
        graph.Click(QPointF(40, 40) + offset, LEFT);
        EXPECT_DOUBLE_EQ(graph.d_clicks.takeFirst()[0].toDouble(), graph.Value({40, 40}).x);
    }
    graph.Click(QPointF(-20.5, 40) - graph.In_Area({0, 0}), LEFT); // halves go away from zero
    EXPECT_DOUBLE_EQ(graph.d_clicks.takeFirst()[0].toDouble(), graph.Mapping().Value({-21, 40}).x);
}

TEST(GraphMouse, RightButtonPansAndZoomsOut)
{
    for (const int type : {2, 3}) {
        TGraph graph(type, type);
        const TVector2 held = graph.Value({200, 200});
        graph.Press({200, 200}, RIGHT);
        for (const QPointF& pointer : {QPointF(210, 190), QPointF(260, 220), QPointF(150, 340)}) {
            graph.Settle();
            graph.Move(pointer, RIGHT);
            EXPECT_EQ(graph.d_paints, 1) << "the view lags behind the pointer";
            EXPECT_NEAR(graph.Mapping().Position(held).x(), graph.In_Area(pointer).x(), 1e-6);
            EXPECT_NEAR(graph.Mapping().Position(held).y(), graph.In_Area(pointer).y(), 1e-6);
        }
        const TVector2 low = graph.Low();
        graph.Release({150, 340}, RIGHT);
        graph.Settle();
        EXPECT_EQ(graph.Low().x, low.x) << "a pan is no click";

        graph.ScaleToFit();
        graph.Settle();
        const QRect area = graph.Layout().graph;
        const TVector2 corner = graph.Mapping().Value(area.topLeft());
        graph.Click({9, 9}, RIGHT);
        graph.Settle(); // what stood in the corner is a quarter of the way in, to the pixel
        EXPECT_NEAR(graph.Mapping().Position(corner).x(), area.left() + area.width() / 4.0, 1.0);
        EXPECT_NEAR(graph.Mapping().Position(corner).y(), area.top() + area.height() / 4.0, 1.0);
    }
    TGraph graph;
    for (int i = 0; i < 12; ++i) {
        graph.Click({9, 9}, RIGHT);
        graph.Settle();
    }
    EXPECT_NEAR(graph.High().x - graph.Low().x, 50 * 100, 1e-6);
    EXPECT_NEAR(graph.High().y - graph.Low().y, 50 * 100, 1e-6);
}

TEST(GraphMouse, HoverTextAndCursor)
{
    TGraph graph;
    const QRect band = graph.Layout().horizontal_title;
    const QRect row(0, band.top(), 800, 600 - band.top());
    const QImage before = graph.Seen();
    graph.Settle();
    graph.Move({-1, 0});
    EXPECT_TRUE(graph.Painted_Next().isEmpty());
    EXPECT_EQ(graph.cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(graph.Cursor_Position_Text(), QStringLiteral("0.00000,   0.00000"));

    graph.Move({0, 0});
    EXPECT_EQ(graph.Cursor_Position_Text(), QStringLiteral("0.00000,   100.00000"));
    EXPECT_EQ(graph.Painted_Next(), QRegion(row));
    EXPECT_EQ(graph.cursor().shape(), Qt::CrossCursor);
    const QImage hovered = graph.Seen();
    EXPECT_NE(hovered.copy(row), before.copy(row));
    EXPECT_EQ(hovered.copy(0, 0, 800, row.top()), before.copy(0, 0, 800, row.top())) << "text over the graph";

    graph.d_show_cursor_position = false;
    graph.Settle();
    graph.Move({50, 50});
    EXPECT_TRUE(graph.Painted_Next().isEmpty());
    EXPECT_EQ(graph.cursor().shape(), Qt::ArrowCursor);
}

TEST(GraphMouse, OnlyTheOutlineIsRepaintedAndNoneIsLeft)
{
    TGraph graph;
    const QImage before = graph.Seen();
    const auto outline = [&](int left, int top, int right, int bottom) {
        const QRect box(graph.In_Area(QPointF(left, top)).toPoint(),
                        graph.In_Area(QPointF(right + 1, bottom + 1)).toPoint());
        return QRegion(box) - QRegion(box.adjusted(1, 1, -1, -1));
    };
    graph.Press({100, 100}, LEFT);
    graph.Settle();
    graph.Move({150, 130}, LEFT);
    EXPECT_EQ(graph.Painted_Next(), outline(100, 100, 150, 130));
    EXPECT_NE(graph.Seen(), before);
    graph.Settle();
    graph.Move({95, 105}, LEFT);
    EXPECT_EQ(graph.Painted_Next(), outline(100, 100, 150, 130) + outline(95, 100, 100, 105));
    graph.Release({95, 105}, LEFT);
    EXPECT_EQ(graph.Seen(), before);
    graph.Press({300, 300}, LEFT);
    EXPECT_EQ(graph.Seen(), before);
}

TEST(GraphMouse, ButtonsTogetherAndReleasesWithoutAPress)
{
    TGraph graph;
    graph.Press({100, 100}, LEFT);
    graph.Send(QEvent::MouseButtonPress, {200, 200}, RIGHT, LEFT | RIGHT);
    graph.Move({300, 260}, LEFT | RIGHT); // the left drag goes on, from where the right button was pressed
    const TVector2 low = graph.Value({200, 260});
    const TVector2 high = graph.Value({300, 200});
    graph.Send(QEvent::MouseButtonRelease, {300, 260}, LEFT, RIGHT);
    Expect_View(graph, low, high);
    graph.Release({300, 260}, RIGHT); // never dragged: a click
    graph.Settle();
    EXPECT_GT(graph.High().x - graph.Low().x, 1.9 * (high.x - low.x));
    EXPECT_EQ(graph.d_clicks.size(), 0);

    TGraph other;
    other.Move({100, 100}, LEFT);
    other.Move({200, 200}, LEFT);
    other.Release({200, 200}, LEFT); // no box was begun
    EXPECT_EQ(other.d_clicks.size(), 1);
    other.Move({100, 100}, RIGHT);
    other.Release({100, 100}, RIGHT);
    other.Click({100, 100}, Qt::MiddleButton);
    other.Settle();
    Expect_View(other, {0, 0}, {100, 100});
    EXPECT_EQ(other.d_clicks.size(), 1);
}

TEST(GraphMouse, DirectRenderKeepsShowingAllTheData)
{
    TGraph graph(2, 2, true);
    const QImage before = graph.Seen();
    graph.Drag({10, 10}, {200, 200}, LEFT);
    Expect_View(graph, {0, 0}, {100, 100});
    graph.Drag({10, 10}, {200, 200}, RIGHT);
    Expect_View(graph, {0, 0}, {100, 100});
    graph.Click({10, 10}, RIGHT);
    EXPECT_EQ(graph.Seen(), before);
    EXPECT_EQ(graph.d_clicks.size(), 0);
    graph.Click({0, 0}, LEFT);
    ASSERT_EQ(graph.d_clicks.size(), 1);
    EXPECT_NEAR(graph.d_clicks[0][1].toDouble(), 100, 1e-9);
    graph.Move({50, 50});
    EXPECT_NE(graph.Seen(), before);
}

TEST(GraphMouse, ResizedInMidDragAndWithoutRoom)
{
    TGraph graph;
    for (const QSize& size : {QSize(500, 400), QSize(0, 0), QSize(300, 0), QSize(40, 40)}) {
        for (const Qt::MouseButton button : {LEFT, RIGHT}) {
            graph.resize(800, 600);
            graph.Settle();
            graph.Press({100, 100}, button);
            graph.Move({300, 300}, button);
            graph.resize(size);
            graph.Settle();
            graph.Move({200, 200}, button);
            graph.Release({200, 200}, button);
            graph.Click({1, 1}, button);
            graph.Settle();
            EXPECT_TRUE(std::isfinite(graph.Low().x) && std::isfinite(graph.High().y));
        }
    }
    graph.resize(800, 600);
    graph.Settle();
    Expect_View(graph, {0, 0}, {100, 100});
}

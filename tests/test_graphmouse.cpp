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

// A graph that notes what is painted. Its plotting area shows x and y from 0 to 100 or, on logarithmic axes,
// from 1 to 100.
class TGraph : public TGraphWidget
{
public:
    QRegion d_painted;
    int d_paints{0};

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

    QPoint Area_Point(int x, int y) const { return Layout().graph.topLeft() + QPoint(x, y); }

    void Send(QEvent::Type type, const QPointF& position, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, position, button, buttons, Qt::NoModifier);
        QApplication::sendEvent(this, &event);
    }
    void Press(const QPointF& at, Qt::MouseButton button)
    {
        Send(QEvent::MouseButtonPress, at, button, button);
    }
    void Move(const QPointF& to, Qt::MouseButtons buttons)
    {
        Send(QEvent::MouseMove, to, Qt::NoButton, buttons);
    }
    void Release(const QPointF& at, Qt::MouseButton button)
    {
        Send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
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

    // Values at the lower left and the upper right of the plotting area.
    TVector2 Low() const { return Mapping().Value(Layout().graph.bottomLeft()); }
    TVector2 High() const { return Mapping().Value(Layout().graph.topRight()); }

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
    const double width = std::abs(high.x - low.x);
    const double height = std::abs(high.y - low.y);
    EXPECT_NEAR(graph.Low().x, low.x, 1e-9 * width);
    EXPECT_NEAR(graph.Low().y, low.y, 1e-9 * height);
    EXPECT_NEAR(graph.High().x, high.x, 1e-9 * width);
    EXPECT_NEAR(graph.High().y, high.y, 1e-9 * height);
}

} // namespace

TEST(GraphMouse, ClickOrZoomBySize)
{
    const struct
    {
        const char* name;
        QPoint from, to;
        bool zooms;
    } rows[] = {
        {"no size", {100, 100}, {100, 100}, false},
        {"19", {100, 100}, {110, 109}, false},
        {"20", {100, 100}, {110, 110}, true},
        {"20, all width", {100, 100}, {120, 100}, true},
        {"20, all height", {100, 100}, {100, 80}, true},
        {"19, backwards", {110, 109}, {100, 100}, false},
        {"20, backwards", {110, 110}, {100, 100}, true},
        {"20, up right", {100, 110}, {110, 100}, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TGraph graph;
        const TGraphMapping before = graph.Mapping();
        QSignalSpy clicks(&graph, &TGraphWidget::Mouse_Click);
        const QPoint from = graph.Area_Point(row.from.x(), row.from.y());
        const QPoint to = graph.Area_Point(row.to.x(), row.to.y());
        graph.Drag(from, to, Qt::LeftButton);
        const TVector2 released = before.Value(to);
        if (!row.zooms) {
            ASSERT_EQ(clicks.size(), 1);
            EXPECT_DOUBLE_EQ(clicks[0][0].toDouble(), released.x);
            EXPECT_DOUBLE_EQ(clicks[0][1].toDouble(), released.y);
            Expect_View(graph, {0, 0}, {100, 100});
            continue;
        }
        EXPECT_EQ(clicks.size(), 0);
        const TVector2 pressed = before.Value(from);
        TVector2 low(std::min(pressed.x, released.x), std::min(pressed.y, released.y));
        TVector2 high(std::max(pressed.x, released.x), std::max(pressed.y, released.y));
        for (const int axis : {0, 1}) {
            if (high(axis) - low(axis) < 0.00001) {
                low(axis) -= 0.000005;
                high(axis) += 0.000005;
            }
        }
        Expect_View(graph, low, high);
    }
}

TEST(GraphMouse, LogarithmicZoomAndClick)
{
    for (const int horizontal : {1, 3}) {
        for (const int vertical : {2, 3}) {
            TGraph graph(horizontal, vertical);
            const TGraphMapping before = graph.Mapping();
            QSignalSpy clicks(&graph, &TGraphWidget::Mouse_Click);
            const QPoint from = graph.Area_Point(50, 300);
            const QPoint to = graph.Area_Point(350, 100);
            graph.Press(to, Qt::LeftButton);
            graph.Release(to, Qt::LeftButton);
            ASSERT_EQ(clicks.size(), 1);
            EXPECT_DOUBLE_EQ(clicks[0][0].toDouble(), before.Value(to).x);
            EXPECT_DOUBLE_EQ(clicks[0][1].toDouble(), before.Value(to).y);
            graph.Drag(from, to, Qt::LeftButton);
            Expect_View(graph, before.Value(from), before.Value(to));
            if (horizontal == 3) {
                const double part = 350.0 / (graph.Layout().graph.width() - 1);
                EXPECT_NEAR(before.Value(to).x, std::pow(100.0, part), 1e-6);
            }
        }
    }
}

TEST(GraphMouse, PressOutsideStartsAtTheCorner)
{
    TGraph graph;
    const TGraphMapping before = graph.Mapping();
    const QPoint to = graph.Area_Point(200, 150);
    graph.Drag(QPointF(3, 500), to, Qt::LeftButton);
    Expect_View(graph, {0, before.Value(to).y}, {before.Value(to).x, 100});
}

TEST(GraphMouse, PositionsAreRounded)
{
    TGraph graph;
    QSignalSpy clicks(&graph, &TGraphWidget::Mouse_Click);
    const QPoint at = graph.Area_Point(40, 40);
    for (const QPointF& offset : {QPointF(0.49, -0.49), QPointF(-0.5, -0.5), QPointF(-0.4, 0.3)}) {
        graph.Press(at + offset, Qt::LeftButton);
        graph.Release(at + offset, Qt::LeftButton);
        EXPECT_DOUBLE_EQ(clicks.takeFirst()[0].toDouble(), graph.Mapping().Value(at).x);
    }
    graph.Release(QPointF(-20.5, 40), Qt::LeftButton);
    EXPECT_DOUBLE_EQ(clicks.takeFirst()[0].toDouble(), graph.Mapping().Value(QPointF(-21, 40)).x);
}

TEST(GraphMouse, RightDragPans)
{
    for (const int type : {2, 3}) {
        TGraph graph(type, type);
        const TVector2 held = graph.Mapping().Value(graph.Area_Point(200, 200));
        graph.Press(graph.Area_Point(200, 200), Qt::RightButton);
        graph.Settle();
        int paints = 0;
        for (const QPoint& step : {QPoint(210, 190), QPoint(260, 220), QPoint(150, 340)}) {
            const QPoint pointer = graph.Area_Point(step.x(), step.y());
            graph.Move(pointer, Qt::RightButton);
            EXPECT_EQ(graph.d_paints, ++paints) << "the view lags behind the pointer";
            // The point that was picked up follows the pointer.
            EXPECT_NEAR(graph.Mapping().Position(held).x(), pointer.x(), 1e-6);
            EXPECT_NEAR(graph.Mapping().Position(held).y(), pointer.y(), 1e-6);
        }
        const TVector2 low = graph.Low();
        graph.Release(graph.Area_Point(150, 340), Qt::RightButton);
        QApplication::processEvents();
        EXPECT_EQ(graph.Low().x, low.x) << "a pan is no click";
    }
}

TEST(GraphMouse, RightClickZoomsOut)
{
    for (const int type : {2, 3}) {
        TGraph graph(type, type);
        const TGraphMapping before = graph.Mapping();
        const QRect area = graph.Layout().graph;
        graph.Press(area.center(), Qt::RightButton);
        graph.Release(area.center(), Qt::RightButton);
        QApplication::processEvents();
        // What stood at the edges stands at a quarter and three quarters, to the pixel.
        const QPointF corner = graph.Mapping().Position(before.Value(area.topLeft()));
        EXPECT_NEAR(corner.x(), area.left() + area.width() / 4.0, 1.0);
        EXPECT_NEAR(corner.y(), area.top() + area.height() / 4.0, 1.0);
        // A drag that comes back to where it began stays a drag.
        const TVector2 low = graph.Low();
        graph.Press(area.center(), Qt::RightButton);
        graph.Move(area.center(), Qt::RightButton);
        graph.Release(area.center(), Qt::RightButton);
        QApplication::processEvents();
        EXPECT_NEAR(graph.Low().x, low.x, 1e-9);
    }
}

TEST(GraphMouse, ZoomOutEndsAtFiftyTimesTheData)
{
    TGraph graph;
    for (int i = 0; i < 12; ++i) {
        graph.Press(graph.Area_Point(9, 9), Qt::RightButton);
        graph.Release(graph.Area_Point(9, 9), Qt::RightButton);
        QApplication::processEvents();
    }
    EXPECT_NEAR(graph.High().x - graph.Low().x, 5000, 1e-6);
    EXPECT_NEAR(graph.High().y - graph.Low().y, 5000, 1e-6);
    graph.ScaleToFit();
    QApplication::processEvents();
    Expect_View(graph, {0, 0}, {100, 100});
}

TEST(GraphMouse, HoverText)
{
    TGraph graph;
    const QRect area = graph.Layout().graph;
    const QRect row(0, graph.Layout().horizontal_title.top(), 800, graph.Layout().horizontal_title.height());
    const QImage before = graph.Seen();
    graph.Settle();

    graph.Move(QPoint(area.left() - 1, area.top()), Qt::NoButton);
    EXPECT_TRUE(graph.Painted_Next().isEmpty());
    EXPECT_EQ(graph.cursor().shape(), Qt::ArrowCursor);

    graph.Move(area.center(), Qt::NoButton);
    EXPECT_EQ(graph.Painted_Next(), QRegion(row).intersected(graph.rect()));
    EXPECT_EQ(graph.cursor().shape(), Qt::CrossCursor);
    const QImage hovered = graph.Seen();
    EXPECT_NE(hovered.copy(row), before.copy(row));
    const QRect above(0, 0, 800, row.top());
    EXPECT_EQ(hovered.copy(above), before.copy(above)) << "the text covers the graph";

    // Hidden: nothing is answered.
    graph.d_show_cursor_position = false;
    graph.Settle();
    graph.Move(area.center(), Qt::NoButton);
    EXPECT_TRUE(graph.Painted_Next().isEmpty());
    EXPECT_EQ(graph.cursor().shape(), Qt::ArrowCursor);
}

TEST(GraphMouse, OnlyTheOutlineIsRepainted)
{
    TGraph graph;
    graph.Press(graph.Area_Point(100, 100), Qt::LeftButton);
    graph.Settle();
    graph.Move(graph.Area_Point(150, 130), Qt::LeftButton);
    const auto outline = [&](int left, int top, int right, int bottom) {
        const QRect box(graph.Area_Point(left, top), graph.Area_Point(right + 1, bottom + 1));
        return QRegion(box) - QRegion(box.adjusted(1, 1, -1, -1));
    };
    EXPECT_EQ(graph.Painted_Next(), outline(100, 100, 150, 130));
    EXPECT_NE(graph.Seen().pixel(graph.Area_Point(100, 100)), 0xffffffff) << "no outline";

    graph.Settle();
    graph.Move(graph.Area_Point(60, 170), Qt::LeftButton);
    EXPECT_EQ(graph.Painted_Next(), outline(100, 100, 150, 130) + outline(60, 100, 100, 170));
}

TEST(GraphMouse, NoOutlineIsLeft)
{
    TGraph graph;
    const QImage before = graph.Seen();
    graph.Drag(graph.Area_Point(100, 100), graph.Area_Point(105, 105), Qt::LeftButton);
    EXPECT_EQ(graph.Seen(), before);
    graph.Press(graph.Area_Point(300, 300), Qt::LeftButton);
    EXPECT_EQ(graph.Seen(), before);
}

TEST(GraphMouse, LeftAndRightTogether)
{
    TGraph graph;
    QSignalSpy clicks(&graph, &TGraphWidget::Mouse_Click);
    const auto both = Qt::LeftButton | Qt::RightButton;
    graph.Press(graph.Area_Point(100, 100), Qt::LeftButton);
    graph.Send(QEvent::MouseButtonPress, graph.Area_Point(200, 200), Qt::RightButton, both);
    graph.Move(graph.Area_Point(300, 260),
               both); // the left drag goes on, from where the right button was pressed
    Expect_View(graph, {0, 0}, {100, 100});
    const TGraphMapping before = graph.Mapping();
    graph.Send(QEvent::MouseButtonRelease, graph.Area_Point(300, 260), Qt::LeftButton, Qt::RightButton);
    const TVector2 low = before.Value(graph.Area_Point(200, 260));
    const TVector2 high = before.Value(graph.Area_Point(300, 200));
    Expect_View(graph, low, high);
    graph.Release(graph.Area_Point(300, 260), Qt::RightButton); // never dragged: a click
    QApplication::processEvents();
    EXPECT_GT(graph.High().x - graph.Low().x, 1.9 * (high.x - low.x));
    EXPECT_EQ(clicks.size(), 0);
}

TEST(GraphMouse, WithoutAPress)
{
    TGraph graph;
    QSignalSpy clicks(&graph, &TGraphWidget::Mouse_Click);
    graph.Move(graph.Area_Point(100, 100), Qt::LeftButton);
    graph.Move(graph.Area_Point(200, 200), Qt::LeftButton);
    graph.Release(graph.Area_Point(200, 200), Qt::LeftButton);
    EXPECT_EQ(clicks.size(), 1); // no box was begun
    graph.Move(graph.Area_Point(100, 100), Qt::RightButton);
    graph.Release(graph.Area_Point(100, 100), Qt::RightButton);
    QApplication::processEvents();
    Expect_View(graph, {0, 0}, {100, 100});
    graph.Press(graph.Area_Point(100, 100), Qt::MiddleButton);
    graph.Release(graph.Area_Point(100, 100), Qt::MiddleButton);
    EXPECT_EQ(clicks.size(), 1);
}

TEST(GraphMouse, DirectRenderKeepsShowingAllTheData)
{
    TGraph graph(2, 2, true);
    const QImage before = graph.Seen();
    QSignalSpy clicks(&graph, &TGraphWidget::Mouse_Click);
    graph.Drag(graph.Area_Point(10, 10), graph.Area_Point(200, 200), Qt::LeftButton);
    EXPECT_EQ(graph.Seen(), before);
    Expect_View(graph, {0, 0}, {100, 100});
    graph.Drag(graph.Area_Point(10, 10), graph.Area_Point(200, 200), Qt::RightButton);
    Expect_View(graph, {0, 0}, {100, 100});
    graph.Press(graph.Area_Point(10, 10), Qt::RightButton);
    graph.Release(graph.Area_Point(10, 10), Qt::RightButton);
    EXPECT_EQ(graph.Seen(), before);
    EXPECT_EQ(clicks.size(), 0);
    graph.Press(graph.Layout().graph.bottomLeft(), Qt::LeftButton);
    graph.Release(graph.Layout().graph.bottomLeft(), Qt::LeftButton);
    ASSERT_EQ(clicks.size(), 1);
    EXPECT_NEAR(clicks[0][0].toDouble(), 0, 1e-9);
    graph.Move(graph.Layout().graph.center(), Qt::NoButton);
    EXPECT_NE(graph.Seen(), before);
}

TEST(GraphMouse, WithoutRoomAndResizedInMidDrag)
{
    TGraph graph;
    graph.Press(graph.Area_Point(100, 100), Qt::LeftButton);
    graph.Move(graph.Area_Point(300, 300), Qt::LeftButton);
    graph.resize(500, 400);
    graph.Settle();
    graph.Move(graph.Area_Point(200, 200), Qt::LeftButton);
    graph.Release(graph.Area_Point(200, 200), Qt::LeftButton);
    EXPECT_TRUE(std::isfinite(graph.Low().x) && graph.Low().x < graph.High().x);

    for (const QSize& size : {QSize(0, 0), QSize(300, 0), QSize(40, 40)}) {
        graph.resize(size);
        graph.Settle();
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            graph.Drag(QPointF(1, 1), QPointF(90, 90), button);
            graph.Drag(QPointF(1, 1), QPointF(1, 1), button);
        }
        QApplication::processEvents();
        EXPECT_TRUE(std::isfinite(graph.Mapping().Value(QPointF(5, 5)).x));
    }
    graph.resize(800, 600);
    QApplication::processEvents();
    Expect_View(graph, {0, 0}, {100, 100});
}

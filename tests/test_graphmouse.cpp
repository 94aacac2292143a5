// SPDX-License-Identifier: MIT
#include "graph_helpers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

constexpr auto LEFT = Qt::LeftButton;
constexpr auto RIGHT = Qt::RightButton;
const Points DIAGONAL{{1, 1}, {100, 100}};

void Expect_View(const TGraph& graph, const TVector2& low, const TVector2& high)
{
    for (const int axis : {0, 1}) {
        EXPECT_NEAR(graph.Low()(axis), low(axis), 1e-9 * (high(axis) - low(axis)));
        EXPECT_NEAR(graph.High()(axis), high(axis), 1e-9 * (high(axis) - low(axis)));
    }
}

} // namespace

TEST(GraphMouse, ClickOrZoomBySize)
{
    const struct
    {
        QPointF from, to;
        bool zooms;
    } rows[] = {
        {{100, 100}, {100, 100}, false},     {{100, 100}, {110, 109}, false},
        {{110, 109}, {100, 100}, false},     {{100, 100}, {110, 110}, true},
        {{110, 110}, {100, 100}, true},      {{100, 110}, {110, 100}, true},
        {{100, 100}, {109.6, 109.4}, false}, {{99.5, 99.5}, {110.4, 109.5}, true}, // rounded
        {{100, 100}, {120, 100}, true}, // no height: as little as can be shown
        {{-90, -5}, {110, 110}, true},  // from outside: starts in the corner
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.from.x() << ", " << row.from.y() << " to " << row.to.x());
        for (const int scales : {23, 32}) {
            TGraph graph(DIAGONAL, scales);
            const auto value = [&graph](const QPointF& at) {
                return graph.Value({std::max(0.0, std::round(at.x())), std::max(0.0, std::round(at.y()))});
            };
            const TVector2 from = value(row.from);
            const TVector2 to = value(row.to);
            const double widening = from.y == to.y ? 0.000005 : 0.0;
            const TVector2 low(std::min(from.x, to.x), std::min(from.y, to.y) - widening);
            const TVector2 high(std::max(from.x, to.x), std::max(from.y, to.y) + widening);
            graph.Drag(row.from, row.to, LEFT);
            Expect_View(graph, row.zooms ? low : DIAGONAL[0], row.zooms ? high : DIAGONAL[1]);
            ASSERT_EQ(graph.d_clicks.size(), row.zooms ? 0 : 1);
            if (!row.zooms) {
                EXPECT_DOUBLE_EQ(graph.d_clicks[0][0].toDouble(), to.x);
                EXPECT_DOUBLE_EQ(graph.d_clicks[0][1].toDouble(), to.y);
            }
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
            EXPECT_NEAR(graph.Mapping().Position(held).x(), graph.In_Area(pointer).x(), 1e-6);
            EXPECT_NEAR(graph.Mapping().Position(held).y(), graph.In_Area(pointer).y(), 1e-6);
        }
        const TVector2 low = graph.Low();
        graph.Release({150, 340}, RIGHT);
        EXPECT_EQ(graph.Low().x, low.x) << "a pan is no click";

        graph.ScaleToFit();
        graph.Seen();
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
    const auto expect = [&](const char* text, bool answers) {
        EXPECT_EQ(graph.Cursor_Position_Text(), QLatin1String(text));
        EXPECT_EQ(graph.d_painted, answers ? QRegion(0, top, 600, 400 - top) : QRegion()) << text;
        EXPECT_EQ(graph.cursor().shape(), answers ? Qt::CrossCursor : Qt::ArrowCursor) << text;
    };
    graph.Move({-1, 0}, Qt::NoButton);
    expect("0.00000,   0.00000", false);
    graph.Move({0, 0}, Qt::NoButton);
    expect("1.00000,   100.00000", true);
    EXPECT_NE(graph.Seen(), before);
    EXPECT_EQ(graph.Seen().copy(0, 0, 600, top), before.copy(0, 0, 600, top)) << "text over the graph";
    graph.d_show_cursor_position = false;
    graph.Move({50, 50}, Qt::NoButton);
    expect("1.00000,   100.00000", false);
}

TEST(GraphMouse, OnlyTheOutlineIsRepaintedAndNoneIsLeft)
{
    TGraph graph(DIAGONAL);
    const QImage before = graph.Seen();
    const auto outline = [&](int left, int top, int right, int bottom) {
        const QRect box(graph.In_Area(QPointF(left, top)).toPoint(),
                        QSize(right - left + 2, bottom - top + 2));
        return QRegion(box) - QRegion(box.adjusted(1, 1, -1, -1));
    };
    graph.Press({100, 100}, LEFT);
    graph.Move({150, 130}, LEFT);
    EXPECT_EQ(graph.d_painted, outline(100, 100, 150, 130));
    graph.Move({95, 105}, LEFT);
    EXPECT_EQ(graph.d_painted, outline(100, 100, 150, 130) + outline(95, 100, 100, 105));
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
    const TVector2 low = graph.Value({200, 160});
    const TVector2 high = graph.Value({300, 100});
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

TEST(GraphMouse, DirectRenderKeepsShowingAllTheData)
{
    TGraph graph(DIAGONAL, 22, TGraphWidget::GRAPH_LINE, true);
    const QImage before = graph.Seen();
    for (const TButton button : {LEFT, RIGHT}) {
        graph.Drag({10, 10}, {200, 200}, button);
        Expect_View(graph, DIAGONAL[0], DIAGONAL[1]);
    }
    graph.Click({10, 10}, RIGHT);
    EXPECT_EQ(graph.Seen(), before);
    graph.Click({0, 0}, LEFT);
    EXPECT_NEAR(graph.d_clicks.value(0).value(1).toDouble(), 100, 1e-9);
}

TEST(GraphMouse, ResizedInMidDragAndWithoutRoom)
{
    TGraph graph(DIAGONAL, 22);
    for (const QSize& size : {QSize(500, 300), QSize(0, 0), QSize(300, 0), QSize(30, 600)}) {
        for (const TButton button : {LEFT, RIGHT}) {
            graph.Press({100, 100}, button);
            graph.Move({300, 300}, button);
            graph.resize(size);
            graph.Move({200, 200}, button);
            graph.Release({200, 200}, button);
            graph.Click({1, 1}, button);
            EXPECT_TRUE(std::isfinite(graph.Low().x) && std::isfinite(graph.High().y));
            graph.resize(600, 400);
        }
    }
    graph.Seen();
    Expect_View(graph, DIAGONAL[0], DIAGONAL[1]);
}

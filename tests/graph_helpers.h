// SPDX-License-Identifier: MIT
#pragma once

#include "graphwidget.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QSignalSpy>

using Points = std::vector<TVector2>;
using TButton = Qt::MouseButton;
inline const QColor COLOR(0, 127, 0);

/// A graph on the screen with one data set in COLOR, that notes what the last mouse event made it paint.
/// Positions are those in the plotting area.
class TGraph : public TGraphWidget
{
public:
    QRegion d_painted;
    bool d_painted_at_once{false};
    QSignalSpy d_clicks{this, &TGraphWidget::Mouse_Click};

    /// `scales` holds the scale type of x and, as its last digit, that of y.
    explicit TGraph(const Points& points, int scales = 11, int type = GRAPH_LINE, bool direct = false)
    {
        d_horizontal_scale_type = scales / 10;
        d_vertical_scale_type = scales % 10;
        d_direct_render = direct;
        EnableYIncludesZero(false);
        CreateDataSet(COLOR, static_cast<TGraphType>(type));
        AddPoints(0, points);
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

// SPDX-License-Identifier: MIT
// Paints and real events for tests of the 3-D view. Positions are logical pixels of the widget.
#pragma once

#include "openglwidget.h"
#include "testing.h"

inline void Paint(QOpenGLWidget* view)
{
    QSignalSpy painted(view, &QOpenGLWidget::frameSwapped);
    view->update();
    ASSERT_TRUE(painted.wait());
}

inline void Fit(TOpenGLWidget* view)
{
    view->d_FitRequested = true;
    Paint(view);
}

inline void Show(QWidget* window, QOpenGLWidget* view)
{
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    Paint(view);
}

/// Where the view shows a model point.
inline QPointF Pixel(TOpenGLWidget* view, const TVector3& point)
{
    QPoint pixel;
    view->Point_Raster_Position(&pixel.rx(), &pixel.ry(), point);
    return pixel;
}

inline void Send_Mouse(QWidget* view, QEvent::Type type, const QPointF& position, Qt::MouseButton button,
                       Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QMouseEvent event(type, position, button, buttons, modifiers);
    QApplication::sendEvent(view, &event);
}

/// A drag along all the positions; with one position only it is a click.
inline void Drag(QWidget* view, Qt::MouseButton button, const QVector<QPointF>& positions,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    Send_Mouse(view, QEvent::MouseButtonPress, positions.first(), button, button, modifiers);
    for (int i = 1; i < positions.size(); ++i)
        Send_Mouse(view, QEvent::MouseMove, positions[i], Qt::NoButton, button, modifiers);
    Send_Mouse(view, QEvent::MouseButtonRelease, positions.last(), button, Qt::NoButton, modifiers);
}

/// With a tremble, as a hand has it.
inline void Click(QWidget* view, const QPointF& position)
{
    Drag(view, Qt::LeftButton, {position, position + QPointF(1, 0), position});
}

inline void Wheel(QWidget* view, int delta)
{
    const QPointF middle = view->rect().center();
    QWheelEvent event(middle, middle, {}, {0, delta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &event);
}

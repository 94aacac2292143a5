// SPDX-License-Identifier: MIT
#pragma once

#include "graphticks.h"
#include "vector2.h"

#include <QRect>
#include <QString>

#include <vector>

class QColor;
class QPainter;
class TGraphMapping;

/// The parts of a graph, pixels.
struct TGraphLayout
{
    QRect graph; ///< plotting area
    QRect vertical_labels;
    QRect vertical_title;
    QRect horizontal_labels;
    QRect horizontal_title;
    QRect graph_title;
    QRect widget; ///< all of it
};

/// The parts of a graph of `size` pixels, written in a font of `line_height` pixels. Where the graph is too
/// small, the plotting area is not valid.
TGraphLayout Graph_Layout(const QSize& size, int line_height);

/// What stands round the plotting area.
struct TGraphLegend
{
    QString vertical_title;
    QString horizontal_title;
    QString graph_title;
    TGraphLabelFormat horizontal;
    TGraphLabelFormat vertical;
    int cursor_text_width{0}; ///< pixels kept free on the left of the horizontal title
    bool empty{false};        ///< without data there are no numbers, but a text in the middle
    QString empty_text;
};

/// Draws grid, frame, ticks, tick labels and titles. Text that finds no room is shortened or made smaller.
void Draw_Graph_Legend(QPainter& painter, const TGraphLayout& layout, const TGraphMapping& mapping,
                       const TGraphLegend& legend);

/// Draws one line of text into `room`, in smaller letters where it would not fit.
void Draw_Fitted_Text(QPainter& painter, const QRect& room, int alignment, const QString& text);

/// @name Styles of a data set
/// Points are taken to whole pixels towards zero; such with an infinite coordinate or one that is no number
/// are left out. The caller clips to the plotting area `graph`.
/// @{

/// A polyline; a point left out parts it in two.
void Draw_Graph_Line(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                     const QColor& color);

/// How wide bars are.
struct TGraphBarWidth
{
    int half{1};         ///< pixels to both sides of the point,
    double largest{0.0}; ///< but no more than this in all, data units
};

/// Bars from each point to y = 0.
void Draw_Graph_Bars(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                     const QColor& color, const TGraphBarWidth& width);

void Draw_Graph_Crosses(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                        const QColor& color, const QRect& graph);

void Draw_Graph_Squares(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                        const QColor& color, const QRect& graph);
/// @}

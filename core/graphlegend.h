// SPDX-License-Identifier: MIT
#pragma once

#include "graphtexts.h"
#include "graphticks.h"

#include <QRect>
#include <QString>

class QPainter;
struct TGraphMapping;

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
    bool empty{false};        ///< without data a text in the middle takes the place of grid and numbers
    QString empty_text;
};

/// Draws frame and titles, and grid, ticks and tick labels or the text of an empty graph. Text that finds no
/// room is shortened or made smaller.
void Draw_Graph_Legend(QPainter* painter, const TGraphLayout& layout, const TGraphMapping& mapping,
                       const TGraphLegend& legend, TGraphTexts* texts);

/// Draws one line of text into `room`, in smaller letters where it would not fit.
void Draw_Fitted_Text(QPainter* painter, const QRect& room, int alignment, const QString& text);

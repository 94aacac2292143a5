// SPDX-License-Identifier: MIT
#pragma once

#include "vector2.h"

#include <QColor>
#include <QLine>
#include <QRect>
#include <QVector>

#include <vector>

class QPainter;
struct TGraphMapping;

/// Draws a horizontal or vertical line of one pixel's width, both ends included: the pixels that a pen would
/// draw, which goes from point to point and takes six times as long.
void Draw_Straight_Line(QPainter* painter, const QLine& line, const QColor& color);

/// Draws the points of one data set in any of the styles.
///
/// Positions are taken to whole pixels towards zero. Points with an infinite coordinate or one that is no
/// number are left out. The caller clips to the plotting area.
class TGraphPainter
{
public:
    /// `graph` is the plotting area.
    TGraphPainter(QPainter* painter, const TGraphMapping& mapping, const QRect& graph, const QColor& color)
        : d_painter(painter), d_mapping(mapping), d_graph(graph), d_color(color),
          d_opaque(color.alpha() == 255)
    {
    }

    /// A polyline; a point left out parts it in two.
    void Draw_Line(const std::vector<TVector2>& points);

    /// Bars from each point to y = 0, `half_width` pixels to both sides but not wider than `largest_width`
    /// in data units.
    void Draw_Bars(const std::vector<TVector2>& points, int half_width, double largest_width);

    void Draw_Crosses(const std::vector<TVector2>& points);
    void Draw_Squares(const std::vector<TVector2>& points);

private:
    struct TColumn;
    struct TMarkers;

    int Column_Pixel(double x) const;
    TColumn Column_Of(const TVector2& point, int pixel) const;
    void Append_Column(QVector<QLine>* columns, const TColumn& column) const;
    TMarkers Markers(const std::vector<TVector2>& points) const;
    void Fill_Squares_By_Rows(TMarkers* markers);

    QPainter* d_painter;
    const TGraphMapping& d_mapping;
    QRect d_graph;
    QColor d_color;
    bool d_opaque;
};

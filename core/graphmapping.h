// SPDX-License-Identifier: MIT
#pragma once

#include "vector2.h"

#include <QPointF>
#include <QRect>

#include <vector>

/// How the values of one axis are laid out.
enum TGraphScale
{
    GRAPH_SCALE_MARGIN = 1, ///< linear, with a margin below the smallest value
    GRAPH_SCALE_LINEAR = 2,
    GRAPH_SCALE_LOG10 = 3
};

/// One axis: maps values to pixels along it and back.
struct TGraphAxis
{
    double begin{0.0}; ///< pixel of the axis' lower end
    double end{1.0};   ///< pixel of its upper end; smaller than `begin` where the axis points upwards
    double scale{1.0}; ///< pixels per unit
    double offset{0.0};
    double low{0.0}; ///< value at the lower end of a linear axis
    double high{1.0};
    bool logarithmic{false};

    /// Where a logarithmic axis starts when its range reaches down to 0 or below.
    double log10_floor{0.1};

    /// The extent of the data last fitted, in data units and on a logarithmic axis in decades.
    double data_extent{0.00001};
    double data_decades{1.0};

    /// Shows the values from the first to the last, which must be greater.
    void Show(double first, double last);

    double Position(double value) const
    {
        return logarithmic ? Log10_Position(value) : Linear_Position(value);
    }
    double Value(double pixel) const { return logarithmic ? Log10_Value(pixel) : Linear_Value(pixel); }
    double Linear_Position(double value) const { return value * scale + offset; }
    double Linear_Value(double pixel) const { return (pixel - offset) / scale; }

    /// Pixel of `value` on the logarithmic axis that shows the present range. Values of 0 and below have no
    /// logarithm: they lie some hundred decades below the axis' lower end.
    double Log10_Position(double value) const;

    /// The inverse of Log10_Position.
    double Log10_Value(double pixel) const;

    /// The base-10 logarithm of that value, which may be too large or too small for a double.
    double Exponent(double pixel) const;

    /// Pixel on the logarithmic axis of the value that stands at `pixel` of the linear one, and back.
    double Forward_Log10(double pixel) const { return Log10_Position(Linear_Value(pixel)); }
    double Reverse_Log10(double pixel) const { return Log10_Value(pixel) * scale + offset; }

    /// Base-10 logarithms of the values at both ends.
    double Log10_Begin() const { return d_log10_begin; }
    double Log10_End() const { return d_log10_end; }
    double Decades() const { return d_log10_end - d_log10_begin; }

private:
    double Length() const;

    double d_log10_begin{-1.0};
    double d_log10_end{0.0};
};

/// What a fit to the data depends on besides the data.
struct TGraphScaling
{
    int horizontal_type{GRAPH_SCALE_MARGIN};
    int vertical_type{GRAPH_SCALE_MARGIN};
    bool bars{false}; ///< leave room for half a bar at both sides
    bool y_includes_zero{true};
    bool y_symmetric{true};
    bool lock_aspect{false};
    double y_minimum{DEFAULT_Y_MINIMUM}; ///< the smallest upper extent of y where y includes zero

    /// Of a graph that asks for no other.
    static constexpr double DEFAULT_Y_MINIMUM = 5e-05;
};

/// The extent of the data along one axis.
struct TGraphSpan
{
    double low{-0.000005}; ///< without a point the span is a small one round 0
    double high{0.000005};
    double positive{1e300}; ///< the smallest value above 0, 1e300 where there is none
};

/// The extent of the points that can be drawn. Infinite coordinates and such that are no number are left out.
struct TGraphRange
{
    bool empty{true};
    TGraphSpan x;
    TGraphSpan y;

    void Add(const std::vector<TVector2>& points);
};

/// The mapping between data units and pixels: pixel = value * scale + offset on linear axes.
struct TGraphMapping
{
    TGraphAxis horizontal;
    TGraphAxis vertical;

    QPointF Position(const TVector2& point) const
    {
        return {horizontal.Position(point.x), vertical.Position(point.y)};
    }
    TVector2 Value(const QPointF& pixel) const
    {
        return {horizontal.Value(pixel.x()), vertical.Value(pixel.y())};
    }

    /// Shows all of `range` in the plotting area `graph` (pixels).
    void Fit_To_Data(const TGraphRange& range, const TGraphScaling& scaling, const QRect& graph);

    /// Shows what the axes show within `rect` (pixels, corners in any order), or what the linear axes of the
    /// same ranges would. Zooming out ends at 50 times the data's extent: what is more shrinks towards the
    /// origin of the data. Logarithmic axes end at 50 times the decades of the data: what is more shrinks
    /// towards the middle of `rect`.
    void Fit_To_Rect(const QRect& rect, bool as_linear);

    /// The same data range in another plotting area.
    TGraphMapping Moved_To(const QRect& graph) const;

private:
    void Set_Area(const QRect& graph);
};

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
class TGraphAxis
{
public:
    double d_begin{0.0}; ///< pixel of the axis' lower end
    double d_end{1.0};   ///< pixel of its upper end; smaller than d_begin where the axis points upwards
    double d_scale{1.0}; ///< pixels per unit
    double d_offset{0.0};
    double d_low{0.0}; ///< value at the lower end of a linear axis
    double d_high{1.0};
    bool d_logarithmic{false};

    /// Where a logarithmic axis starts when its range reaches down to 0 or below.
    double d_log10_floor{0.1};

    /// Shows the values `low` to `high`; `low` must be less than `high`.
    void Show(double low, double high);

    double Position(double value) const
    {
        return d_logarithmic ? Log10_Position(value) : Linear_Position(value);
    }
    double Value(double pixel) const { return d_logarithmic ? Log10_Value(pixel) : Linear_Value(pixel); }
    double Linear_Position(double value) const { return value * d_scale + d_offset; }
    double Linear_Value(double pixel) const { return (pixel - d_offset) / d_scale; }

    /// Pixel of `value` on the logarithmic axis that shows the present range. Values of 0 and below have no
    /// logarithm: they lie some hundred decades below the axis' lower end.
    double Log10_Position(double value) const;

    /// The inverse of Log10_Position.
    double Log10_Value(double pixel) const;

    /// The base-10 logarithm of that value, which may be too large or too small for a double.
    double Exponent(double pixel) const;

    /// Pixel on the logarithmic axis of the value that stands at `pixel` of the linear one, and back.
    double Forward_Log10(double pixel) const { return Log10_Position(Linear_Value(pixel)); }
    double Reverse_Log10(double pixel) const { return Log10_Value(pixel) * d_scale + d_offset; }

    /// Base-10 logarithms of the values at both ends.
    double Log10_Begin() const { return d_log10_begin; }
    double Log10_End() const { return d_log10_end; }
    double Decades() const { return d_log10_end - d_log10_begin; }

private:
    double d_log10_begin{-1.0};
    double d_log10_end{0.0};

    double Length() const;
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
    double y_minimum{5e-05}; ///< the smallest upper extent of y where y includes zero
};

/// The extent of the points that can be drawn. Infinite coordinates and such that are no number are left out.
class TGraphRange
{
public:
    bool d_empty{true};
    double d_x_min{-0.000005}; ///< without a point the range is a small one round 0
    double d_x_max{0.000005};
    double d_y_min{-0.000005};
    double d_y_max{0.000005};
    double d_x_positive{1e300}; ///< the smallest x above 0, 1e300 where there is none
    double d_y_positive{1e300};

    void Add(const std::vector<TVector2>& points);
};

/// The mapping between data units and pixels: pixel = value * scale + offset on linear axes.
class TGraphMapping
{
public:
    TGraphAxis d_horizontal;
    TGraphAxis d_vertical;

    /// Extent of the data range last fitted, data units.
    double d_data_width{0.00001};
    double d_data_height{0.00001};
    double d_data_decades_x{1.0}; ///< the same on logarithmic axes
    double d_data_decades_y{1.0};

    QPointF Position(const TVector2& point) const
    {
        return {d_horizontal.Position(point.x), d_vertical.Position(point.y)};
    }
    TVector2 Value(const QPointF& pixel) const
    {
        return {d_horizontal.Value(pixel.x()), d_vertical.Value(pixel.y())};
    }

    /// Shows all of `range` in the plotting area `graph` (pixels).
    void Fit_To_Data(const TGraphRange& range, const TGraphScaling& scaling, const QRect& graph);

    /// Shows what linear axes of the present range show within `rect` (pixels, corners in any order). Zooming
    /// out ends at 50 times the data's extent: what is more shrinks towards the origin of the data.
    void Fit_To_Rect(const QRect& rect);

    /// The same for what the axes do show within `rect`, logarithmic ones too. Those end at 50 times the
    /// decades of the data: what is more shrinks towards the middle of `rect`.
    void Zoom_To(const QRect& rect);

    /// The same data range in another plotting area.
    TGraphMapping Moved_To(const QRect& graph) const;

private:
    void Set_Area(const QRect& graph);
};

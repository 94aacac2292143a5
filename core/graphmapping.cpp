// SPDX-License-Identifier: MIT
#include "graphmapping.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double SMALLEST_EXTENT = 0.00001;
constexpr double LARGEST_ZOOM_OUT = 50.0;

// Wider ranges would overflow while they are fitted.
constexpr double LARGEST_VALUE = 1e300;

// What is closer to zero counts as zero on logarithmic axes.
constexpr double SMALLEST_POSITIVE = 1e-300;
constexpr double LARGEST_EXPONENT = 299.0; // either way

// The power of ten below the value, so that the value itself stands clear of the axis.
double Decade_Below(double value)
{
    return std::max(std::pow(10.0, std::ceil(std::log10(value)) - 1.0), std::numeric_limits<double>::min());
}

void Widen(double& low, double& high, double amount)
{
    low -= amount;
    high += amount;
}

// Far from zero the fixed extent would vanish in the rounding of positions.
void Widen_If_Degenerate(double& low, double& high)
{
    const double finest = 1e-12 * std::max(std::abs(low), std::abs(high));
    if (high - low < std::max(SMALLEST_EXTENT, finest))
        Widen(low, high, finest > SMALLEST_EXTENT ? finest : SMALLEST_EXTENT / 2.0);
}

// The scaling is about the origin of the data, not about the middle of the range.
void Limit_Zoom_Out(double& low, double& high, double data_extent)
{
    const double limit = LARGEST_ZOOM_OUT * data_extent;
    if (high - low <= limit)
        return;
    const double factor = limit / (high - low);
    low *= factor;
    high *= factor;
}

// Shows the values between two, which come in any order.
void Fit_Axis(TGraphAxis& axis, double first, double second, double data_extent)
{
    double low = std::clamp(std::min(first, second), -LARGEST_VALUE, LARGEST_VALUE);
    double high = std::clamp(std::max(first, second), -LARGEST_VALUE, LARGEST_VALUE);
    Limit_Zoom_Out(low, high, data_extent);
    Widen_If_Degenerate(low, high);
    axis.Show(low, high);
}

// Shows what a logarithmic axis shows between two pixels.
void Zoom_Log10(TGraphAxis& axis, double first, double second, double data_decades)
{
    const double low = axis.Exponent(first);
    const double high = axis.Exponent(second);
    const double half =
        std::min({std::abs(high - low), LARGEST_ZOOM_OUT * data_decades, 2.0 * LARGEST_EXPONENT}) / 2.0;
    const double centre = std::clamp((low + high) / 2.0, half - LARGEST_EXPONENT, LARGEST_EXPONENT - half);
    Fit_Axis(axis, std::pow(10.0, centre - half), std::pow(10.0, centre + half), LARGEST_VALUE);
}

void Zoom_Axis(TGraphAxis& axis, double first, double second, double data_extent, double data_decades)
{
    if (axis.d_logarithmic)
        Zoom_Log10(axis, first, second, data_decades);
    else
        Fit_Axis(axis, axis.Value(first), axis.Value(second), data_extent);
}

void Include_Zero(TGraphRange& range, const TGraphScaling& scaling)
{
    if (!scaling.y_includes_zero)
        return;
    const double minimum = std::min(scaling.y_minimum, LARGEST_VALUE);
    range.d_y_max = std::max(range.d_y_max, minimum);
    if (scaling.y_symmetric)
        range.d_y_min = std::min(range.d_y_min, -minimum);
}

// The x range follows the bounds of y themselves, not their distance.
void Lock_Aspect(TGraphRange& range, const QRect& graph)
{
    const double width = std::abs(graph.right() - graph.left());
    const double height = std::abs(graph.top() - graph.bottom());
    const double aspect = height > 0.0 ? width / height : 1.0;
    const double centre = (range.d_x_min + range.d_x_max) / 2.0;
    range.d_x_max = centre + range.d_y_max * aspect;
    range.d_x_min = centre + range.d_y_min * aspect;
    Widen_If_Degenerate(range.d_x_min, range.d_x_max);
}

// Returns the extent without the margin.
double Show_Data(TGraphAxis& axis, double low, double high, double smallest_positive, int scale_type)
{
    const double extent = high - low;
    axis.d_logarithmic = scale_type == GRAPH_SCALE_LOG10;
    axis.d_log10_floor = Decade_Below(smallest_positive);
    axis.Show(scale_type == GRAPH_SCALE_MARGIN ? low - extent / 50.0 : low, high);
    return extent;
}

} // namespace

double TGraphAxis::Length() const
{
    // A plotting area without room would make the mapping impossible to invert.
    const double length = d_end - d_begin;
    return std::abs(length) < 1.0 ? 1.0 : length;
}

void TGraphAxis::Show(double low, double high)
{
    d_low = low;
    d_high = high;
    d_scale = Length() / (high - low);
    d_offset = d_begin - low * d_scale;
    // Positions are taken to whole pixels towards zero: the least rounding down would put the edge of the
    // data outside the axis.
    if (Linear_Position(low) < d_begin || Linear_Position(high) < d_begin + Length())
        d_offset += 4.0 * std::numeric_limits<double>::epsilon() *
                    (std::abs(d_offset) + std::abs(d_begin) + std::abs(d_end));

    const double log_high = high > SMALLEST_POSITIVE ? high : 1.0;
    const double log_low =
        low > SMALLEST_POSITIVE && low < log_high ? low : std::min(d_log10_floor, log_high / 10.0);
    d_log10_begin = std::log10(log_low);
    // Neighbouring doubles may have the same logarithm.
    d_log10_end = std::max(std::log10(log_high), d_log10_begin + 1e-12);
}

double TGraphAxis::Log10_Position(double value) const
{
    const double exponent = std::log10(std::max(value, std::numeric_limits<double>::min()));
    return d_begin + (exponent - d_log10_begin) / Decades() * Length();
}

double TGraphAxis::Exponent(double pixel) const
{
    return d_log10_begin + (pixel - d_begin) / Length() * Decades();
}

double TGraphAxis::Log10_Value(double pixel) const
{
    return std::pow(10.0, Exponent(pixel));
}

void TGraphRange::Add(const std::vector<TVector2>& points)
{
    // Local values: the compiler keeps them in registers, and graphs of a million points are fitted often.
    constexpr double huge = std::numeric_limits<double>::max();
    double x_min = huge;
    double x_max = -huge;
    double y_min = huge;
    double y_max = -huge;
    double x_positive = huge;
    double y_positive = huge;
    for (const TVector2& point : points) {
        // 0, but no number where one of the coordinates is none or is infinite; such never compare as less.
        const double valid = (point.x - point.x) + (point.y - point.y);
        const double x = point.x + valid;
        const double y = point.y + valid;
        x_min = std::min(x_min, x);
        x_max = std::max(x_max, x);
        y_min = std::min(y_min, y);
        y_max = std::max(y_max, y);
        x_positive = std::min(x_positive, x > 0.0 ? x : huge);
        y_positive = std::min(y_positive, y > 0.0 ? y : huge);
    }
    if (x_min > x_max)
        return;
    const auto extend = [this](double& low, double& high, double minimum, double maximum) {
        minimum = std::clamp(minimum, -LARGEST_VALUE, LARGEST_VALUE);
        maximum = std::clamp(maximum, -LARGEST_VALUE, LARGEST_VALUE);
        low = d_empty ? minimum : std::min(low, minimum);
        high = d_empty ? maximum : std::max(high, maximum);
    };
    extend(d_x_min, d_x_max, x_min, x_max);
    extend(d_y_min, d_y_max, y_min, y_max);
    d_x_positive = std::min(d_x_positive, x_positive);
    d_y_positive = std::min(d_y_positive, y_positive);
    d_empty = false;
}

void TGraphMapping::Set_Area(const QRect& graph)
{
    d_horizontal.d_begin = graph.left();
    d_horizontal.d_end = graph.right();
    d_vertical.d_begin = graph.bottom();
    d_vertical.d_end = graph.top();
}

void TGraphMapping::Fit_To_Data(const TGraphRange& data, const TGraphScaling& scaling, const QRect& graph)
{
    TGraphRange range = data;
    Include_Zero(range, scaling);
    if (scaling.bars)
        Widen(range.d_x_min, range.d_x_max,
              (range.d_x_max - range.d_x_min) / (scaling.horizontal_type == GRAPH_SCALE_LOG10 ? 40.0 : 20.0));
    Widen_If_Degenerate(range.d_x_min, range.d_x_max);
    if (scaling.lock_aspect)
        Lock_Aspect(range, graph);
    Widen_If_Degenerate(range.d_y_min, range.d_y_max);

    Set_Area(graph);
    d_data_width =
        Show_Data(d_horizontal, range.d_x_min, range.d_x_max, range.d_x_positive, scaling.horizontal_type);
    d_data_height =
        Show_Data(d_vertical, range.d_y_min, range.d_y_max, range.d_y_positive, scaling.vertical_type);
    d_data_decades_x = d_horizontal.Decades();
    d_data_decades_y = d_vertical.Decades();
}

void TGraphMapping::Fit_To_Rect(const QRect& rect)
{
    Fit_Axis(d_horizontal, d_horizontal.Linear_Value(rect.left()), d_horizontal.Linear_Value(rect.right()),
             d_data_width);
    Fit_Axis(d_vertical, d_vertical.Linear_Value(rect.top()), d_vertical.Linear_Value(rect.bottom()),
             d_data_height);
}

void TGraphMapping::Zoom_To(const QRect& rect)
{
    Zoom_Axis(d_horizontal, rect.left(), rect.right(), d_data_width, d_data_decades_x);
    Zoom_Axis(d_vertical, rect.top(), rect.bottom(), d_data_height, d_data_decades_y);
}

TGraphMapping TGraphMapping::Moved_To(const QRect& graph) const
{
    TGraphMapping moved = *this;
    moved.Set_Area(graph);
    moved.d_horizontal.Show(d_horizontal.d_low, d_horizontal.d_high);
    moved.d_vertical.Show(d_vertical.d_low, d_vertical.d_high);
    return moved;
}

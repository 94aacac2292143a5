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

// The power of ten below the value, so that the value itself stands clear of the axis.
double Decade_Below(double value)
{
    return std::max(std::pow(10.0, std::ceil(std::log10(value)) - 1.0), std::numeric_limits<double>::min());
}

// Far from zero a fixed amount would vanish in the rounding, and the range stay empty.
void Widen_If_Degenerate(double& low, double& high)
{
    if (high - low >= SMALLEST_EXTENT)
        return;
    const double magnitude = std::max(std::abs(low), std::abs(high));
    const double half = std::max(SMALLEST_EXTENT / 2.0, magnitude * 1e-12);
    low -= half;
    high += half;
}

void Widen(double& low, double& high, double amount)
{
    low -= amount;
    high += amount;
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

void Fit_Axis(TGraphAxis& axis, double first_pixel, double second_pixel, double data_extent)
{
    const double first = axis.Linear_Value(first_pixel);
    const double second = axis.Linear_Value(second_pixel);
    double low = std::clamp(std::min(first, second), -LARGEST_VALUE, LARGEST_VALUE);
    double high = std::clamp(std::max(first, second), -LARGEST_VALUE, LARGEST_VALUE);
    Limit_Zoom_Out(low, high, data_extent);
    Widen_If_Degenerate(low, high);
    axis.Show(low, high);
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
    d_scale = Length() / (high - low);
    d_offset = d_begin - low * d_scale;

    const double log_high = high > 0.0 ? high : 1.0;
    const double log_low = low > 0.0 && low < log_high ? low : std::min(d_log10_floor, log_high / 10.0);
    d_log10_begin = std::log10(log_low);
    d_log10_end = std::log10(log_high);
}

double TGraphAxis::Log10_Position(double value) const
{
    const double exponent = std::log10(std::max(value, std::numeric_limits<double>::min()));
    return d_begin + (exponent - d_log10_begin) / (d_log10_end - d_log10_begin) * Length();
}

double TGraphAxis::Log10_Value(double pixel) const
{
    const double part = (pixel - d_begin) / Length();
    return std::pow(10.0, d_log10_begin + part * (d_log10_end - d_log10_begin));
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
    const bool first = d_empty;
    const auto extend = [first](double& low, double& high, double minimum, double maximum) {
        minimum = std::clamp(minimum, -LARGEST_VALUE, LARGEST_VALUE);
        maximum = std::clamp(maximum, -LARGEST_VALUE, LARGEST_VALUE);
        low = first ? minimum : std::min(low, minimum);
        high = first ? maximum : std::max(high, maximum);
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

void TGraphMapping::Fit_To_Data(const TGraphRange& range, const TGraphScaling& scaling, const QRect& graph)
{
    double x_min = range.d_empty ? -SMALLEST_EXTENT / 2.0 : range.d_x_min;
    double x_max = range.d_empty ? SMALLEST_EXTENT / 2.0 : range.d_x_max;
    double y_min = range.d_empty ? -SMALLEST_EXTENT / 2.0 : range.d_y_min;
    double y_max = range.d_empty ? SMALLEST_EXTENT / 2.0 : range.d_y_max;

    if (scaling.y_includes_zero) {
        y_max = std::max(y_max, scaling.y_minimum);
        if (scaling.y_symmetric)
            y_min = std::min(y_min, -scaling.y_minimum);
    }
    if (scaling.bars)
        Widen(x_min, x_max, (x_max - x_min) / (scaling.horizontal_type == GRAPH_SCALE_LOG10 ? 40.0 : 20.0));
    Widen_If_Degenerate(x_min, x_max);
    if (scaling.lock_aspect) {
        const double width = std::abs(graph.right() - graph.left());
        const double height = std::abs(graph.top() - graph.bottom());
        const double aspect = height > 0.0 ? width / height : 1.0;
        // The x range follows the bounds of y themselves, not their distance.
        const double centre = (x_min + x_max) / 2.0;
        x_max = centre + y_max * aspect;
        x_min = centre + y_min * aspect;
        Widen_If_Degenerate(x_min, x_max);
    }
    Widen_If_Degenerate(y_min, y_max);

    d_data_width = x_max - x_min;
    d_data_height = y_max - y_min;
    if (scaling.horizontal_type == GRAPH_SCALE_MARGIN)
        x_min -= d_data_width / 50.0;
    if (scaling.vertical_type == GRAPH_SCALE_MARGIN)
        y_min -= d_data_height / 50.0;

    Set_Area(graph);
    d_horizontal.d_logarithmic = scaling.horizontal_type == GRAPH_SCALE_LOG10;
    d_horizontal.d_log10_floor = Decade_Below(range.d_x_positive);
    d_horizontal.Show(x_min, x_max);
    d_vertical.d_logarithmic = scaling.vertical_type == GRAPH_SCALE_LOG10;
    d_vertical.d_log10_floor = Decade_Below(range.d_y_positive);
    d_vertical.Show(y_min, y_max);
}

void TGraphMapping::Fit_To_Rect(const QRectF& rect)
{
    Fit_Axis(d_horizontal, rect.left(), rect.right(), d_data_width);
    Fit_Axis(d_vertical, rect.top(), rect.bottom(), d_data_height);
}

TGraphMapping TGraphMapping::Moved_To(const QRect& graph) const
{
    TGraphMapping moved = *this;
    moved.Set_Area(graph);
    moved.d_horizontal.Show(d_horizontal.Linear_Value(d_horizontal.d_begin),
                            d_horizontal.Linear_Value(d_horizontal.d_end));
    moved.d_vertical.Show(d_vertical.Linear_Value(d_vertical.d_begin),
                          d_vertical.Linear_Value(d_vertical.d_end));
    return moved;
}

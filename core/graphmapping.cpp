// SPDX-License-Identifier: MIT
#include "graphmapping.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double SMALLEST_EXTENT = 0.00001;
constexpr double LARGEST_ZOOM_OUT = 50.0;

constexpr double LARGEST_DOUBLE = std::numeric_limits<double>::max();

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

void Widen(TGraphSpan* span, double amount)
{
    span->low -= amount;
    span->high += amount;
}

// Far from zero the fixed extent would vanish in the rounding of positions.
void Widen_If_Degenerate(TGraphSpan* span)
{
    const double finest = 1e-12 * std::max(std::abs(span->low), std::abs(span->high));
    if (span->high - span->low < std::max(SMALLEST_EXTENT, finest))
        Widen(span, finest > SMALLEST_EXTENT ? finest : SMALLEST_EXTENT / 2.0);
}

// The scaling is about the origin of the data, not about the middle of the range.
void Limit_Zoom_Out(TGraphSpan* span, double data_extent)
{
    const double limit = LARGEST_ZOOM_OUT * data_extent;
    const double extent = span->high - span->low;
    if (extent <= limit)
        return;
    span->low *= limit / extent;
    span->high *= limit / extent;
}

// Shows the values between two, which come in any order.
void Fit_To_Values(TGraphAxis* axis, double first, double second, double data_extent)
{
    TGraphSpan span;
    span.low = std::clamp(std::min(first, second), -LARGEST_VALUE, LARGEST_VALUE);
    span.high = std::clamp(std::max(first, second), -LARGEST_VALUE, LARGEST_VALUE);
    Limit_Zoom_Out(&span, data_extent);
    Widen_If_Degenerate(&span);
    axis->Show(span.low, span.high);
}

// Shows the decades between two exponents, which come in any order.
void Fit_To_Decades(TGraphAxis* axis, double first, double second)
{
    const double decades =
        std::min({std::abs(second - first), LARGEST_ZOOM_OUT * axis->data_decades, 2.0 * LARGEST_EXPONENT});
    const double half = decades / 2.0;
    const double centre =
        std::clamp((first + second) / 2.0, half - LARGEST_EXPONENT, LARGEST_EXPONENT - half);
    Fit_To_Values(axis, std::pow(10.0, centre - half), std::pow(10.0, centre + half), LARGEST_VALUE);
}

void Fit_To_Pixels(TGraphAxis* axis, double first, double second, bool as_linear)
{
    if (axis->logarithmic && !as_linear)
        Fit_To_Decades(axis, axis->Exponent(first), axis->Exponent(second));
    else
        Fit_To_Values(axis, axis->Linear_Value(first), axis->Linear_Value(second), axis->data_extent);
}

void Include_Zero(TGraphSpan* y, const TGraphScaling& scaling)
{
    if (!scaling.y_includes_zero)
        return;
    const double minimum = std::min(scaling.y_minimum, LARGEST_VALUE);
    y->high = std::max(y->high, minimum);
    if (scaling.y_symmetric)
        y->low = std::min(y->low, -minimum);
}

// The x range follows the bounds of y themselves, not their distance.
void Lock_Aspect(TGraphRange* range, const QRect& graph)
{
    const double width = std::abs(graph.right() - graph.left());
    const double height = std::abs(graph.top() - graph.bottom());
    const double aspect = height > 0.0 ? width / height : 1.0;
    const double centre = (range->x.low + range->x.high) / 2.0;
    range->x.high = centre + range->y.high * aspect;
    range->x.low = centre + range->y.low * aspect;
    Widen_If_Degenerate(&range->x);
}

// The margin is no part of the data's extent.
void Show_Data(TGraphAxis* axis, const TGraphSpan& data, int scale_type)
{
    const double extent = data.high - data.low;
    axis->logarithmic = scale_type == GRAPH_SCALE_LOG10;
    axis->log10_floor = Decade_Below(data.positive);
    axis->Show(scale_type == GRAPH_SCALE_MARGIN ? data.low - extent / 50.0 : data.low, data.high);
    axis->data_extent = extent;
    axis->data_decades = axis->Decades();
}

// Values that are no number change nothing: std::min and std::max keep their first argument then.
void Include(TGraphSpan* span, double value)
{
    span->low = std::min(span->low, value);
    span->high = std::max(span->high, value);
    span->positive = std::min(span->positive, value > 0.0 ? value : LARGEST_DOUBLE);
}

// The least span that holds both, without what is too large to be fitted.
TGraphSpan Joined(const TGraphSpan& a, const TGraphSpan& b)
{
    return {std::clamp(std::min(a.low, b.low), -LARGEST_VALUE, LARGEST_VALUE),
            std::clamp(std::max(a.high, b.high), -LARGEST_VALUE, LARGEST_VALUE),
            std::min({a.positive, b.positive, LARGEST_VALUE})};
}

} // namespace

double TGraphAxis::Length() const
{
    // A plotting area without room would make the mapping impossible to invert.
    const double length = end - begin;
    return std::abs(length) < 1.0 ? 1.0 : length;
}

void TGraphAxis::Show(double first, double last)
{
    low = first;
    high = last;
    scale = Length() / (high - low);
    offset = begin - low * scale;
    // Positions are taken to whole pixels towards zero: the least rounding down would put the edge of the
    // data outside the axis.
    if (Linear_Position(low) < begin || Linear_Position(high) < begin + Length())
        offset += 4.0 * std::numeric_limits<double>::epsilon() *
                  (std::abs(offset) + std::abs(begin) + std::abs(end));

    const double log_high = high > SMALLEST_POSITIVE ? high : 1.0;
    const double log_low =
        low > SMALLEST_POSITIVE && low < log_high ? low : std::min(log10_floor, log_high / 10.0);
    d_log10_begin = std::log10(log_low);
    // Neighbouring doubles may have the same logarithm.
    d_log10_end = std::max(std::log10(log_high), d_log10_begin + 1e-12);
}

double TGraphAxis::Log10_Position(double value) const
{
    const double exponent = std::log10(std::max(value, std::numeric_limits<double>::min()));
    return begin + (exponent - d_log10_begin) / Decades() * Length();
}

double TGraphAxis::Exponent(double pixel) const
{
    return d_log10_begin + (pixel - begin) / Length() * Decades();
}

double TGraphAxis::Log10_Value(double pixel) const
{
    return std::pow(10.0, Exponent(pixel));
}

void TGraphRange::Add(const std::vector<TVector2>& points)
{
    // Local spans: the compiler keeps them in registers, and graphs of a million points are fitted often.
    const TGraphSpan nothing{LARGEST_DOUBLE, -LARGEST_DOUBLE, LARGEST_DOUBLE};
    TGraphSpan all_x = nothing;
    TGraphSpan all_y = nothing;
    for (const TVector2& point : points) {
        // A number minus itself is 0, but infinity minus itself is no number. Added to the coordinates, that
        // spoils both of a point that cannot be drawn, without a branch that would slow the loop down.
        const double spoiler = (point.x - point.x) + (point.y - point.y);
        Include(&all_x, point.x + spoiler);
        Include(&all_y, point.y + spoiler);
    }
    if (all_x.low > all_x.high)
        return;
    x = Joined(empty ? all_x : x, all_x);
    y = Joined(empty ? all_y : y, all_y);
    empty = false;
}

void TGraphMapping::Set_Area(const QRect& graph)
{
    horizontal.begin = graph.left();
    horizontal.end = graph.right();
    vertical.begin = graph.bottom();
    vertical.end = graph.top();
}

void TGraphMapping::Fit_To_Data(const TGraphRange& data, const TGraphScaling& scaling, const QRect& graph)
{
    TGraphRange range = data;
    Include_Zero(&range.y, scaling);
    if (scaling.bars) {
        const double parts = scaling.horizontal_type == GRAPH_SCALE_LOG10 ? 40.0 : 20.0;
        Widen(&range.x, (range.x.high - range.x.low) / parts);
    }
    Widen_If_Degenerate(&range.x);
    if (scaling.lock_aspect)
        Lock_Aspect(&range, graph);
    Widen_If_Degenerate(&range.y);

    Set_Area(graph);
    Show_Data(&horizontal, range.x, scaling.horizontal_type);
    Show_Data(&vertical, range.y, scaling.vertical_type);
}

void TGraphMapping::Fit_To_Rect(const QRect& rect, bool as_linear)
{
    Fit_To_Pixels(&horizontal, rect.left(), rect.right(), as_linear);
    Fit_To_Pixels(&vertical, rect.top(), rect.bottom(), as_linear);
}

TGraphMapping TGraphMapping::Moved_To(const QRect& graph) const
{
    TGraphMapping moved = *this;
    moved.Set_Area(graph);
    moved.horizontal.Show(horizontal.low, horizontal.high);
    moved.vertical.Show(vertical.low, vertical.high);
    return moved;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>

#include <vector>

struct TGraphAxis;

/// How the numbers along one axis are written.
struct TGraphLabelFormat
{
    QString text;     ///< with one placeholder, the blanks round it keep neighbours apart
    int width{8};     ///< characters of the field
    int decimals{4};  ///< in fixed notation
    QSize cell{1, 1}; ///< room of one label, pixels

    /// `value` in this format.
    QString Label(double value) const;
};

/// Field width and decimals for an axis of type `scale_type` that shows the values `first` to `last`. The
/// larger the span, the fewer decimals; `log10_width` is the field width of a logarithmic axis.
TGraphLabelFormat Graph_Label_Format(const QString& text, int scale_type, double first, double last,
                                     int log10_width);

/// A line across the plotting area.
struct TGraphTick
{
    double pixel{0.0};
    QString label; ///< empty between the labelled ones
};

/// The ticks of an axis from its lower to its upper end: at multiples of 1, 2 or 5 times a power of ten, on a
/// logarithmic axis at the powers of ten and what fits between them. Labels stand at least `spacing` pixels
/// apart and no two are alike.
std::vector<TGraphTick> Graph_Ticks(const TGraphAxis& axis, const TGraphLabelFormat& format, double spacing);

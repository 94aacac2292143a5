// SPDX-License-Identifier: MIT
#include "graphticks.h"

#include "graphmapping.h"
#include "numbers.h"

#include <algorithm>
#include <cmath>

namespace
{

struct TTickValue
{
    double value;
    bool labelled;
};

// The values to mark, and the distance that their labels must tell apart.
struct TTickValues
{
    std::vector<TTickValue> values;
    double resolution{1.0};
};

// The smallest of 1, 2, 5 times a power of ten that is not below `least`.
double Round_Step(double least)
{
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * decade >= least * (1.0 - 1e-9))
            return factor * decade;
    }
    return 10.0 * decade;
}

TTickValues Multiples(double low, double high, double step)
{
    TTickValues ticks;
    ticks.resolution = step;
    const double slack = 1e-6 * std::min(1.0, (high - low) / step);
    const double first = std::ceil(low / step - slack);
    const double count = std::floor(high / step + slack) - first + 1.0;
    for (int i = 0; i < static_cast<int>(std::min(count, 1000.0)); ++i)
        ticks.values.push_back({(first + i) * step + 0.0, true}); // + 0.0: no negative zero
    return ticks;
}

TTickValues Linear_Values(const TGraphAxis& axis, double spacing, int decimals)
{
    const double low = axis.Value(axis.d_begin);
    const double high = axis.Value(axis.d_end);
    const double densest = (high - low) * spacing / std::abs(axis.d_end - axis.d_begin);
    const double finest = std::pow(10.0, -decimals); // labels of a finer step would repeat
    return Multiples(low, high, Round_Step(std::max(densest, finest)));
}

// Within a part of a decade: round steps, as fine as their narrowest gap allows, which is the uppermost.
TTickValues Log10_Part_Values(const TGraphAxis& axis, double spacing)
{
    const double low = axis.Value(axis.d_begin);
    const double high = axis.Value(axis.d_end);
    const double length = std::abs(axis.d_end - axis.d_begin);
    double step = Round_Step(std::max((high - low) * spacing / length, high * 1e-12));
    while (step < high && std::abs(axis.Position(high) - axis.Position(high - step)) < spacing)
        step = Round_Step(step * 1.5);
    return Multiples(low, high, step);
}

TTickValues Log10_Decade_Values(const TGraphAxis& axis, double spacing)
{
    const double decades = axis.Log10_End() - axis.Log10_Begin();
    const double pixels = std::abs(axis.d_end - axis.d_begin) / decades;
    const int stride = static_cast<int>(std::ceil(spacing / pixels));
    const bool between = pixels >= 60.0;                            // below, the lines run together
    const bool label_between = pixels * std::log10(2.0) >= spacing; // 1, 2, 5, 10

    TTickValues ticks;
    ticks.resolution = 0.0;
    const int last = static_cast<int>(std::floor(axis.Log10_End() + 1e-9));
    for (int exponent = static_cast<int>(std::floor(axis.Log10_Begin())); exponent <= last; ++exponent) {
        for (int digit = 1; digit <= (between ? 9 : 1); ++digit) {
            const double value = digit * std::pow(10.0, exponent);
            const double place = std::log10(value);
            if (place < axis.Log10_Begin() - 1e-9 || place > axis.Log10_End() + 1e-9)
                continue;
            const bool labelled =
                digit == 1 ? exponent % stride == 0 : label_between && (digit == 2 || digit == 5);
            if (labelled || digit == 1 || stride == 1)
                ticks.values.push_back({value, labelled});
        }
    }
    return ticks;
}

TTickValues Tick_Values(const TGraphAxis& axis, double spacing, int decimals)
{
    if (!axis.d_logarithmic)
        return Linear_Values(axis, spacing, decimals);
    if (axis.Log10_End() - axis.Log10_Begin() < 1.0)
        return Log10_Part_Values(axis, spacing);
    return Log10_Decade_Values(axis, spacing);
}

// Digits that tell `value` from its neighbour `resolution` away; 1 where the neighbours are a decade apart.
int Significant_Digits(double value, double resolution)
{
    if (value == 0.0 || resolution <= 0.0)
        return 1;
    const double digits =
        std::floor(std::log10(std::abs(value)) + 1e-9) - std::floor(std::log10(resolution) + 1e-9);
    return static_cast<int>(std::clamp(digits + 1.0, 1.0, 15.0));
}

// Round numbers of up to five digits are easier to read in full than as powers of ten.
QString Short_Notation(double value, double resolution)
{
    return QString::number(value, 'g', std::max(5, Significant_Digits(value, resolution)));
}

// Fixed notation fails where it rounds digits away or needs more room than the field has.
bool Needs_Short_Notation(double value, double resolution, const TGraphLabelFormat& format)
{
    const double error = std::abs(Decimal_Or(Fixed(value, format.decimals), value) - value);
    const double tolerated = (resolution > 0.0 ? resolution : std::abs(value)) / 100.0;
    if (error > tolerated)
        return true;
    const int length = Fixed(value, format.decimals).length();
    return length > format.width + 1 || (length > 10 && Significant_Digits(value, resolution) <= 5);
}

} // namespace

QString TGraphLabelFormat::Label(double value) const
{
    return text.arg(Fixed(value, decimals, width));
}

TGraphLabelFormat Graph_Label_Format(const QString& text, int scale_type, double first, double last,
                                     int log10_width)
{
    TGraphLabelFormat format;
    format.text = text;
    if (scale_type == GRAPH_SCALE_LOG10) {
        format.width = log10_width;
        format.decimals = 1;
    } else if (scale_type == GRAPH_SCALE_LINEAR) {
        format.width = 5;
        format.decimals = 0;
    } else {
        const double span = std::max(1.0, last - first);
        const double magnitude = std::max(std::abs(first), std::abs(last));
        if (magnitude > 1.0) {
            format.decimals = std::max(0, 4 - static_cast<int>(std::log10(span)));
            format.width = static_cast<int>(std::log10(magnitude)) + format.decimals + 2;
        }
    }
    return format;
}

std::vector<TGraphTick> Graph_Ticks(const TGraphAxis& axis, const TGraphLabelFormat& format, double spacing)
{
    if (std::abs(axis.d_end - axis.d_begin) < 1.0)
        return {};
    const TTickValues ticks = Tick_Values(axis, spacing, format.decimals);
    const bool short_notation =
        std::any_of(ticks.values.begin(), ticks.values.end(), [&](const TTickValue& tick) {
            return tick.labelled && Needs_Short_Notation(tick.value, ticks.resolution, format);
        });

    std::vector<TGraphTick> placed;
    for (const TTickValue& tick : ticks.values) {
        QString label;
        if (tick.labelled)
            label = short_notation ? Short_Notation(tick.value, ticks.resolution)
                                   : Fixed(tick.value, format.decimals);
        placed.push_back({axis.Position(tick.value), label});
    }
    return placed;
}

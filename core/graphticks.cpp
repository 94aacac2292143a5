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
    double step; // distance to the neighbours that a label must tell it from
    bool labelled;
};

using TTickValues = std::vector<TTickValue>;

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
    const double slack = 1e-6 * std::min(1.0, (high - low) / step);
    const double first = std::ceil(low / step - slack);
    const double count = std::floor(high / step + slack) - first + 1.0;
    for (int i = 0; i < static_cast<int>(std::min(count, 1000.0)); ++i)
        ticks.push_back({(first + i) * step + 0.0, step, true}); // + 0.0: no negative zero
    return ticks;
}

// Steps that the decimals of the format tell apart; finer ones where the axis is shorter than those.
TTickValues Linear_Values(double low, double high, double densest, int decimals)
{
    const double coarse = std::max(densest, std::pow(10.0, -decimals));
    const TTickValues ticks = Multiples(low, high, Round_Step(coarse));
    return ticks.size() > 1 ? ticks : Multiples(low, high, Round_Step(densest));
}

// Within a part of a decade: round steps, as fine as their narrowest gap allows, which is the uppermost.
TTickValues Log10_Part_Values(const TGraphAxis& axis, double low, double high, double densest, double spacing)
{
    double step = Round_Step(densest);
    while (step < high && std::abs(axis.Position(high) - axis.Position(high - step)) < spacing)
        step = Round_Step(step * 1.5);
    return Multiples(low, high, step);
}

TTickValues Log10_Decade_Values(const TGraphAxis& axis, double spacing)
{
    const double pixels = std::abs(axis.end - axis.begin) / axis.Decades();
    const int stride = static_cast<int>(std::ceil(spacing / pixels));
    const bool between = pixels >= 60.0;                            // below, the lines run together
    const bool label_between = pixels * std::log10(2.0) >= spacing; // 1, 2, 5, 10

    TTickValues ticks;
    const int last = static_cast<int>(std::floor(axis.Log10_End() + 1e-9));
    for (int exponent = static_cast<int>(std::floor(axis.Log10_Begin())); exponent <= last; ++exponent) {
        const double decade = std::pow(10.0, exponent);
        for (int digit = 1; digit <= (between ? 9 : 1); ++digit) {
            const double place = std::log10(digit * decade);
            if (place < axis.Log10_Begin() - 1e-9 || place > axis.Log10_End() + 1e-9)
                continue;
            const bool labelled =
                digit == 1 ? exponent % stride == 0 : label_between && (digit == 2 || digit == 5);
            if (labelled || digit == 1 || stride == 1)
                ticks.push_back({digit * decade, decade, labelled});
        }
    }
    return ticks;
}

TTickValues Tick_Values(const TGraphAxis& axis, double spacing, int decimals)
{
    const double low = axis.Value(axis.begin);
    const double high = axis.Value(axis.end);
    const double room = (high - low) * spacing / std::abs(axis.end - axis.begin);
    const double densest = std::max(room, 1e-14 * std::max(std::abs(low), std::abs(high)));
    TTickValues ticks;
    if (!axis.logarithmic)
        ticks = Linear_Values(low, high, densest, decimals);
    else if (axis.Decades() < 1.0)
        ticks = Log10_Part_Values(axis, low, high, densest, spacing);
    else
        ticks = Log10_Decade_Values(axis, spacing);
    if (std::any_of(ticks.begin(), ticks.end(), [](const TTickValue& tick) { return tick.labelled; }))
        return ticks;
    // The round numbers stand further apart than the axis is long. One number at least tells where it is.
    ticks = Multiples(low, high, Round_Step((high - low) / 3.0));
    ticks.resize(std::min<size_t>(1, ticks.size()));
    return ticks;
}

// Fixed notation with the decimals of the format, or those that multiples of the step have.
QString Fixed_Label(const TTickValue& tick, int decimals)
{
    const int needed = static_cast<int>(-std::floor(std::log10(tick.step) + 1e-9));
    return Fixed(tick.value, std::max(decimals, needed));
}

// As few digits as tell neighbours apart, with a power of ten where that is shorter; but round numbers of up
// to five digits are easier to read in full.
QString Short_Label(const TTickValue& tick)
{
    const double magnitude = std::max(std::abs(tick.value), tick.step);
    const double digits = std::floor(std::log10(magnitude) + 1e-9) - std::floor(std::log10(tick.step) + 1e-9);
    return QString::number(tick.value, 'g', static_cast<int>(std::clamp(digits + 1.0, 5.0, 15.0)));
}

int Longest(const std::vector<QString>& labels)
{
    int length = 0;
    for (const QString& label : labels)
        length = std::max(length, label.length());
    return length;
}

// The labels of all ticks in one notation: fixed unless that is long and the other one clearly shorter.
std::vector<QString> Labels(const TTickValues& ticks, int decimals)
{
    constexpr int LONG_LABEL = 10;
    constexpr int CLEARLY = 3;
    std::vector<QString> fixed;
    for (const TTickValue& tick : ticks)
        fixed.push_back(tick.labelled ? Fixed_Label(tick, decimals) : QString());
    if (Longest(fixed) <= LONG_LABEL)
        return fixed;
    std::vector<QString> brief;
    for (const TTickValue& tick : ticks)
        brief.push_back(tick.labelled ? Short_Label(tick) : QString());
    return Longest(brief) + CLEARLY <= Longest(fixed) ? brief : fixed;
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
    if (std::abs(axis.end - axis.begin) < 1.0)
        return {};
    const TTickValues ticks = Tick_Values(axis, spacing, format.decimals);
    const std::vector<QString> labels = Labels(ticks, format.decimals);
    std::vector<TGraphTick> placed;
    for (size_t i = 0; i < ticks.size(); ++i)
        placed.push_back({axis.Position(ticks[i].value), labels[i]});
    return placed;
}

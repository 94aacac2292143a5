// SPDX-License-Identifier: MIT
#include "report.h"

#include "numbers.h"
#include "statistics.h"

#include <algorithm>
#include <array>

namespace
{

constexpr int NUMBER_WIDTH = 10;
constexpr int NUMBER_DECIMALS = 4;
constexpr int NAME_WIDTH = 20;
constexpr int POSITION_LINE_LENGTH = NAME_WIDTH + 4 * (NUMBER_WIDTH + 1) + 1;
constexpr double SMALLEST_BAND = 1e-6; // mm; narrower ranges and bands are numerical noise

constexpr int BIN_COUNT = 9;
using TBins = std::array<int, BIN_COUNT>;

QString Number(double value)
{
    return Fixed(value, NUMBER_DECIMALS, NUMBER_WIDTH);
}

// Collects the report line by line.
class TText
{
public:
    explicit TText(int expected_length) { d_text.reserve(expected_length); }

    void Append(const QString& line)
    {
        if (d_lines++ > 0)
            d_text += QLatin1Char('\n');
        d_text += line;
    }

    // `label` ends where the number begins.
    void Append(const char* label, const QString& number, const char* unit = "")
    {
        Append(QLatin1String(label) + number + QLatin1String(unit));
    }

    void Append_Blank() { Append(QString()); }
    void Append_Rule() { Append(QString(REPORT_WIDTH, QLatin1Char('-'))); }

    int Line_Count() const { return d_lines; }
    QString Text() const { return d_text; }

private:
    QString d_text;
    int d_lines{0};
};

void Append_Volume(const TBallBarData& data, TText* text)
{
    const TVector3 corner_min = data.Volume_Corner_Min();
    const TVector3 corner_max = data.Volume_Corner_Max();
    const char* const labels[3][3] = {{"          Start X: ", "            End X: ", "          Range X: "},
                                      {"          Start Y: ", "            End Y: ", "          Range Y: "},
                                      {"          Start Z: ", "            End Z: ", "          Range Z: "}};
    text->Append(QStringLiteral("Measurement Volume"));
    text->Append_Rule();
    for (int axis = 0; axis < 3; ++axis) {
        text->Append(labels[axis][0], Number(corner_min(axis)), " mm");
        text->Append(labels[axis][1], Number(corner_max(axis)), " mm");
        text->Append(labels[axis][2], Number(corner_max(axis) - corner_min(axis)), " mm");
    }
    text->Append_Blank();
}

void Append_Statistics(const TBallBarData& data, double tolerance, TText* text)
{
    text->Append(QStringLiteral("Measurement Statistics"));
    text->Append_Rule();
    text->Append("Measurement Count: ",
                 QString::number(data.Ballbar_Item_Count()).rightJustified(NUMBER_WIDTH));
    text->Append("   Minimum Length: ", Number(data.Minimum_Length()));
    text->Append("   Maximum Length: ", Number(data.Maximum_Length()));
    text->Append("     Range Length: ", Number(data.Maximum_Length() - data.Minimum_Length()));
    text->Append("      Mean Length: ", Number(data.Mean_Length()));
    text->Append("    Median Length: ", Number(data.Median_Length()));
    text->Append("    StdDev Length: ", Number(data.Stdev_Length()));
    text->Append("        Tolerance: ", Number(tolerance));
    text->Append_Blank();
}

int Count_Outside_Estimated_Range(const TBallBarData& data)
{
    const double half_range = Estimated_Range(data.Stdev_Length()) / 2.0;
    const double low = data.Mean_Length() - half_range;
    const double high = data.Mean_Length() + half_range;
    const auto& items = data.Ballbar_Items();
    return static_cast<int>(std::count_if(items.begin(), items.end(), [=](const Types::TBallbar_Item& item) {
        const double length = item.Length();
        return length < low || length > high;
    }));
}

void Append_Estimated_Range(const TBallBarData& data, TText* text)
{
    text->Append("Estimated Range for 99% of Measurements: ", Fixed(Estimated_Range(data.Stdev_Length()), 5));
    text->Append("Number Outside of Estimated Range: ", QString::number(Count_Outside_Estimated_Range(data)));
    text->Append_Blank();
}

// A name as one line of text. Names of stored sets may hold line breaks, which would shift all lines below.
QString Line_Of(QString name)
{
    for (QChar& c : name) {
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r') || c.category() == QChar::Separator_Line ||
            c.category() == QChar::Separator_Paragraph || c.isNonCharacter())
            c = QLatin1Char(' ');
    }
    return name;
}

void Append_Positions(const TBallBarData& data, TText* text)
{
    text->Append(QStringLiteral("Individual Measurement Results"));
    text->Append_Rule();
    text->Append_Blank();
    text->Append(QStringLiteral(" Position Name          Length    Mean Dev.  Sph1 Form  Sph2 Form"));
    text->Append_Rule();
    constexpr QLatin1Char BLANK(' ');
    for (const Types::TBallbar_Item& item : data.Ballbar_Items()) {
        const double length = item.Length();
        text->Append(Line_Of(item.name).leftJustified(NAME_WIDTH) + BLANK + Number(length) + BLANK +
                     Number(length - data.Mean_Length()) + BLANK + Number(item.sph1_form) + BLANK +
                     Number(item.sph2_form));
    }
}

std::vector<TPositionFlags> Judge_Positions(const TBallBarData& data, double tolerance, double sub_tolerance)
{
    const double median = data.Median_Length();
    std::vector<TPositionFlags> flags;
    flags.reserve(data.Ballbar_Items().size());
    for (const Types::TBallbar_Item& item : data.Ballbar_Items()) {
        const double length = item.Length();
        const bool outside = length > median + tolerance / 2.0 || length < median - tolerance / 2.0;
        const bool inside_sub = sub_tolerance > SMALLEST_BAND && median - sub_tolerance / 2.0 <= length &&
                                length <= median + sub_tolerance / 2.0;
        flags.push_back({outside, inside_sub});
    }
    return flags;
}

double Bin_Center(const TBallBarData& data, double bin_width, int bin)
{
    return data.Minimum_Length() + bin * bin_width;
}

// Counts the lengths into bins. Bins are open at both ends: a length exactly between two counts in neither.
TBins Count_Bins(const TBallBarData& data, double bin_width)
{
    TBins bins{};
    for (const Types::TBallbar_Item& item : data.Ballbar_Items()) {
        const double length = item.Length();
        for (int bin = 0; bin < BIN_COUNT; ++bin) {
            const double center = Bin_Center(data, bin_width, bin);
            if (length > center - bin_width / 2.0 && length < center + bin_width / 2.0) {
                ++bins[static_cast<size_t>(bin)];
                break;
            }
        }
    }
    return bins;
}

THistogram Build_Histogram(const TBallBarData& data, double tolerance)
{
    const double range = data.Maximum_Length() - data.Minimum_Length();
    const double bin_width = range * 0.125; // bins are centred on both ends: nine bins, eight steps
    const TBins bins = Count_Bins(data, bin_width);

    THistogram histogram;
    histogram.bin_width = bin_width;
    histogram.bars.emplace_back(data.Mean_Length(), 0.0);
    for (int bin = 0; bin < BIN_COUNT; ++bin)
        histogram.bars.emplace_back(Bin_Center(data, bin_width, bin), bins[static_cast<size_t>(bin)]);

    const double low = data.Median_Length() - tolerance / 2.0;
    const double high = data.Median_Length() + tolerance / 2.0;
    const double height = *std::max_element(bins.begin(), bins.end()) + 1;
    histogram.band = {{low, 0.0}, {low, height}, {high, height}, {high, 0.0}};
    return histogram;
}

} // namespace

TReport Build_Report(const TBallBarData& data, double tolerance, double sub_tolerance)
{
    TReport report;
    if (data.Ballbar_Item_Count() == 0)
        return report;

    TText text(2000 + data.Ballbar_Item_Count() * POSITION_LINE_LENGTH);
    Append_Volume(data, &text);
    Append_Statistics(data, tolerance, &text);
    Append_Estimated_Range(data, &text);
    Append_Positions(data, &text);
    report.first_position_line = text.Line_Count() - data.Ballbar_Item_Count();

    report.flags = Judge_Positions(data, tolerance, sub_tolerance);
    if (data.Maximum_Length() - data.Minimum_Length() > SMALLEST_BAND) {
        report.histogram = Build_Histogram(data, tolerance);
    } else {
        text.Append_Blank();
        text.Append(QStringLiteral("INF:  There range of the data is too small to graph"));
    }
    report.text = text.Text();
    return report;
}

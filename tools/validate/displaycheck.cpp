// SPDX-License-Identifier: MIT
#include "displaycheck.h"

#include "program.h"
#include "report.h"

#include <algorithm>

namespace
{

constexpr int DECIMALS = 4;
constexpr int BINS = 9;

/// Takes the numbers of a report one after the other, each behind its label.
class TReportText
{
public:
    explicit TReportText(const std::string& text) : d_lines(Split(text, '\n')) {}

    std::string After(const std::string& label)
    {
        for (size_t line = d_next; line < d_lines.size(); ++line) {
            if (d_lines[line].compare(0, label.size(), label) != 0)
                continue;
            d_next = line + 1;
            const std::string rest = d_lines[line].substr(label.size());
            const size_t begin = std::min(rest.find_first_not_of(' '), rest.size());
            return rest.substr(begin, rest.find(" mm", begin) - begin);
        }
        return "(not there)";
    }

    std::string Line() { return d_next < d_lines.size() ? d_lines[d_next++] : "(not there)"; }

private:
    std::vector<std::string> d_lines;
    size_t d_next{0};
};

/// The four numbers at the end of a position's line, and, at first, what stands before them.
std::array<std::string, 5> Columns(std::string line)
{
    std::array<std::string, 5> columns;
    for (size_t column = 4; column > 0; --column) {
        const size_t blank = line.rfind(' ');
        columns[column] = blank == std::string::npos ? line : line.substr(blank + 1);
        line.erase(std::min(blank, line.size()));
        line.erase(line.find_last_not_of(' ') + 1);
    }
    columns[0] = line;
    return columns;
}

int Whole(const std::string& text)
{
    const bool is_count = text.find_first_not_of("0123456789") == std::string::npos;
    return is_count && !text.empty() && text.size() < 9 ? std::stoi(text) : -1;
}

void Check_Volume(const TExactSet& set, TReportText* report, TTally* tally)
{
    const char* const axes[] = {"X: ", "Y: ", "Z: "};
    for (size_t axis = 0; axis < 3; ++axis) {
        const std::string name = axes[axis];
        const TExact low = set.corner_min[axis];
        const TExact high = set.corner_max[axis];
        tally->Number("Report, volume start", low, DECIMALS, report->After("          Start " + name));
        tally->Number("Report, volume end", high, DECIMALS, report->After("            End " + name));
        tally->Number("Report, volume range", high - low, DECIMALS, report->After("          Range " + name));
    }
}

void Check_Statistics(const TExactSet& set, const TExact& tolerance, TReportText* report, TTally* tally)
{
    const int count = static_cast<int>(set.positions.size());
    tally->Count("Report, count", count, count, Whole(report->After("Measurement Count: ")));
    const auto number = [&](const char* quantity, const TExact& value, const char* label) {
        tally->Number(quantity, value, DECIMALS, report->After(label));
    };
    number("Report, minimum length", set.minimum, "   Minimum Length: ");
    number("Report, maximum length", set.maximum, "   Maximum Length: ");
    number("Report, range of the lengths", set.range, "     Range Length: ");
    number("Report, mean length", set.mean, "      Mean Length: ");
    number("Report, median length", set.median, "    Median Length: ");
    number("Report, standard deviation", set.deviation, "    StdDev Length: ");
    number("Report, tolerance", tolerance, "        Tolerance: ");
}

void Check_Estimated_Range(const TExactSet& set, TReportText* report, TTally* tally)
{
    tally->Number("Report, estimated range", set.estimated_range, 5,
                  report->After("Estimated Range for 99% of Measurements: "));
    int certain = 0;
    int possible = 0;
    const TExact half = set.deviation * TExact("1.5");
    // The limits are rounded when they are computed with doubles, also on the grid, unless all are the same.
    const bool is_exact = set.on_grid && set.range == 0;
    for (const TExact& length : set.lengths) {
        const TSide low = Side_Of(length, set.mean - half, is_exact);
        const TSide high = Side_Of(length, set.mean + half, is_exact);
        if (low == TSide::BELOW || high == TSide::ABOVE)
            ++certain;
        else if (low == TSide::UNSURE || high == TSide::UNSURE)
            ++possible;
    }
    tally->Count("Report, number outside of the estimated range", certain, certain + possible,
                 Whole(report->After("Number Outside of Estimated Range: ")));
}

void Check_Position_Lines(const TExactSet& set, TReportText* report, TTally* tally)
{
    report->After(" Position Name          Length    Mean Dev.  Sph1 Form  Sph2 Form");
    report->Line();
    for (size_t i = 0; i < set.positions.size(); ++i) {
        const auto& numbers = set.positions[i].numbers;
        const auto [name, length, deviation, form1, form2] = Columns(report->Line());
        tally->Text("Report, position name", set.positions[i].name, name);
        tally->Number("Report, position length", set.lengths[i], DECIMALS, length);
        tally->Number("Report, deviation from the mean", set.lengths[i] - set.mean, DECIMALS, deviation);
        tally->Number("Report, form error of sphere 1", numbers[6], DECIMALS, form1);
        tally->Number("Report, form error of sphere 2", numbers[7], DECIMALS, form2);
    }
}

// Counts how often `length` certainly is in a bin, and where it may be in it.
void Count_Into_Bin(const TExactSet& set, const TExact& length, int bin, int* certain, int* possible)
{
    const TExact width = set.range / 8;
    const TExact center = set.minimum + bin * width;
    const TSide low = Side_Of(length, center - width / 2, set.on_grid);
    const TSide high = Side_Of(length, center + width / 2, set.on_grid);
    if (low == TSide::ABOVE && high == TSide::BELOW)
        ++*certain;
    else if (low == TSide::UNSURE || high == TSide::UNSURE)
        ++*possible;
}

// Tells the height of the largest bin that is shown.
double Check_Bins(const TExactSet& set, const std::vector<TVector2>& bars, TTally* tally)
{
    double height = 0.0;
    for (int bin = 0; bin < BINS; ++bin) {
        int certain = 0;
        int possible = 0;
        for (const TExact& length : set.lengths)
            Count_Into_Bin(set, length, bin, &certain, &possible);
        const TVector2& bar = bars[static_cast<size_t>(bin) + 1];
        tally->Drawn("Histogram, centre of a bin", set.minimum + bin * set.range / 8, bar.x);
        tally->Count("Histogram, count of a bin", certain, certain + possible, static_cast<int>(bar.y));
        height = std::max(height, bar.y);
    }
    return height;
}

void Check_Histogram(const TWindow& window, const TExactSet& set, const TExact& tolerance, TTally* tally)
{
    const std::vector<TVector2> bars = window.Histogram(0);
    const std::vector<TVector2> band = window.Histogram(1);
    const bool complete = bars.size() == BINS + 1 && band.size() == 4;
    tally->Decision("All there: nine bins and a band", true, false, complete);
    if (!complete)
        return;
    tally->Drawn("Histogram, point at the mean", set.mean, bars[0].x);
    const TExact height = Check_Bins(set, bars, tally) + 1;
    for (size_t corner = 0; corner < 4; ++corner) {
        const TExact half = (corner < 2 ? -tolerance : tolerance) / 2;
        tally->Drawn("Histogram, edge of the tolerance band", set.median + half, band[corner].x);
        tally->Drawn("Histogram, height of the tolerance band", corner % 3 == 0 ? TExact(0) : height,
                     band[corner].y);
    }
}

void Check_Tolerance_Panel(const TWindow& window, const TExactSet& set, const TExactTolerance& tolerance,
                           TTally* tally)
{
    const TExact at_median = tolerance.At(set.median);
    tally->Number("Tolerance panel, measured range", set.range, DECIMALS, window.Field("measured_range"));
    tally->Number("Tolerance panel, tolerance", at_median, DECIMALS, window.Field("tolerance"));
    tally->Number("Tolerance panel, sub tolerance range", at_median * tolerance.Fraction(), DECIMALS,
                  window.Field("sub_tolerance_range"));
}

void Check_Position_Panel(TWindow* window, const TExactSet& set, size_t position, TTally* tally)
{
    const char* const fields[] = {"sphere1_x", "sphere1_y", "sphere1_z",    "sphere2_x",
                                  "sphere2_y", "sphere2_z", "sphere1_form", "sphere2_form",
                                  "probe_x",   "probe_y",   "probe_z"};
    const char* const quantities[] = {"Position panel, sphere centres", "Position panel, form errors",
                                      "Position panel, probe offset"};
    const TExact length = set.lengths[position];
    const auto number = [&](const char* quantity, const TExact& value, const char* field) {
        tally->Number(quantity, value, DECIMALS, window->Field(field));
    };
    window->Select(static_cast<int>(position));
    tally->Text("Position panel, name", set.positions[position].name, window->Field("name"));
    number("Position panel, length", length, "length");
    number("Position panel, deviation from the mean", length - set.mean, "mean_deviation");
    number("Position panel, deviation from the median", length - set.median, "median_deviation");
    for (size_t i = 0; i < set.positions[position].numbers.size(); ++i)
        number(quantities[i < 6 ? 0 : i < 8 ? 1 : 2], set.positions[position].numbers[i], fields[i]);
}

} // namespace

void Check_Display(TWindow* window, const TExactSet& set, const TExactTolerance& tolerance,
                   const std::string& place, TTally* tally)
{
    tally->Set_Place(place);
    const TExact at_mean = tolerance.At(set.mean);
    const bool too_small = set.range <= TExact("1e-6");
    TReportText report(window->Report());
    Check_Volume(set, &report, tally);
    Check_Statistics(set, at_mean, &report, tally);
    Check_Estimated_Range(set, &report, tally);
    Check_Position_Lines(set, &report, tally);
    const std::string remark = report.After("INF:  There range of the data is too small to graph");
    tally->Decision("Report, remark on a small range", too_small, false, remark.empty());
    if (!too_small)
        Check_Histogram(*window, set, at_mean, tally);
    Check_Tolerance_Panel(*window, set, tolerance, tally);
    for (size_t i = 0; i < set.positions.size(); ++i) {
        tally->Set_Place(place + ", position " + std::to_string(i + 1));
        Check_Position_Panel(window, set, i, tally);
    }
}

void Check_Bars(const std::string& file, const TExactSet& set, const TExactTolerance& tolerance,
                const std::string& place, TTally* tally)
{
    TBallBarData data;
    data.Load_Data(QString::fromStdString(file));
    const TExact band = tolerance.At(set.mean);
    const TExact sub_band = band * tolerance.Fraction();
    const TReport report = Build_Report(data, band.convert_to<double>(), sub_band.convert_to<double>());
    for (size_t i = 0; i < set.lengths.size() && i < report.flags.size(); ++i) {
        tally->Set_Place(place + ", position " + std::to_string(i + 1));
        const auto side = [&](const TExact& edge) { return Side_Of(set.lengths[i], edge, set.on_grid); };
        const TSide low = side(set.median - band / 2);
        const TSide high = side(set.median + band / 2);
        tally->Decision("3-D view, bar outside the tolerance", low == TSide::BELOW || high == TSide::ABOVE,
                        low == TSide::UNSURE || high == TSide::UNSURE, report.flags[i].outside_tolerance);
        const TSide sub_low = side(set.median - sub_band / 2);
        const TSide sub_high = side(set.median + sub_band / 2);
        const bool none = sub_band <= TExact("1e-6");
        tally->Decision("3-D view, bar inside the sub tolerance",
                        !none && sub_low != TSide::BELOW && sub_high != TSide::ABOVE,
                        !none && (sub_low == TSide::UNSURE || sub_high == TSide::UNSURE),
                        report.flags[i].inside_sub_tolerance);
    }
}

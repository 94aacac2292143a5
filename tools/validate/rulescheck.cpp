// SPDX-License-Identifier: MIT
#include "checks.h"
#include "exactset.h"
#include "program.h"
#include "report.h"
#include "worked.h"

namespace
{

/// Imports a file made of these lengths and puts it into the record.
void Import_Lengths(const TPrivateHome& home, TWindow* window, TWorkedExample* example,
                    const std::vector<std::string>& lengths)
{
    const std::string file = File_Of(lengths);
    window->Import(home.Write("example.dat", file));
    example->Show("The file:", file);
}

void Apply(TWindow* window, const std::string& expression, int slider = 0)
{
    TExactTolerance tolerance;
    tolerance.expression = expression;
    tolerance.slider = slider;
    window->Set_Tolerance(tolerance);
}

struct TPrintedNumber
{
    const char* name;
    const char* field;
    const char* by_hand;
};

constexpr TPrintedNumber PRINTED_NUMBERS[] = {{"sphere 1, x", "sphere1_x", "0.0313"},
                                              {"sphere 1, y", "sphere1_y", "-0.0313"},
                                              {"sphere 1, z", "sphere1_z", "0.0000"},
                                              {"sphere 2, x", "sphere2_x", "-0.0000"},
                                              {"sphere 2, y", "sphere2_y", "0.0001"},
                                              {"sphere 2, z", "sphere2_z", "1234.5679"},
                                              {"form error of sphere 1", "sphere1_form", "0.0005"},
                                              {"form error of sphere 2", "sphere2_form", "0.0005"},
                                              {"probe offset, x", "probe_x", "-0.5000"},
                                              {"probe offset, y", "probe_y", "0.0000"},
                                              {"probe offset, z", "probe_z", "100.0000"}};

TCheck Printed_Numbers_Are_Rounded(const TPrivateHome& home, TWindow* window)
{
    TWorkedExample example(
        "Rounding of printed numbers",
        "printed numbers are rounded to the nearest, and away from zero where they are exactly "
        "halfway. A\nnegative number keeps its sign.");
    const std::string file =
        "B89.4.1_Data:Version=1:Type=BallBar\n"
        "P1,,0.03125,-0.03125,0.00004,-0.00004,0.00006,1234.56789,0.00049,0.00045001,-0.5,0,1e2\n";
    example.Show("The file; 0.03125 is 1/32, which a computer holds without rounding:", file);
    window->Import(home.Write("example.dat", file));
    window->Select(0);
    for (const auto& row : PRINTED_NUMBERS)
        example.Expect(row.name, row.by_hand, window->Field(row.field));
    return example.Check();
}

TCheck Median_Is_Mid_Range(const TPrivateHome& home, TWindow* window)
{
    TWorkedExample example("Median",
                           "the *median* is the mid-range, (minimum + maximum) / 2, and not the middle "
                           "one of the sorted lengths.");
    Import_Lengths(home, window, &example, {"500.000", "500.000", "500.013"});
    example.Expect("median, (500.000 + 500.013) / 2", "500.0065", In_Report(*window, "Median Length:"));
    example.Expect("mean, 1500.013 / 3", "500.0043", In_Report(*window, "Mean Length:"));
    window->Select(2);
    example.Expect("P3, deviation from the median", "0.0065", window->Field("median_deviation"));
    example.Expect("P3, deviation from the mean", "0.0087", window->Field("mean_deviation"));
    return example.Check();
}

TCheck Divisor_Is_One_Less(const TPrivateHome& home, TWindow* window)
{
    TWorkedExample example(
        "Standard deviation",
        "the standard deviation is that of a sample, √(Σ(L − mean)² / (n − 1)), and 0 for a "
        "single position.");
    Import_Lengths(home, window, &example, {"500.000", "500.002", "500.004"});
    example.Expect("standard deviation, √((0.002² + 0 + 0.002²) / 2); the divisor n would give 0.0016",
                   "0.0020", In_Report(*window, "StdDev Length:"));
    Import_Lengths(home, window, &example, {"500.000"});
    example.Expect("standard deviation of one position", "0.0000", In_Report(*window, "StdDev Length:"));
    return example.Check();
}

TCheck Estimated_Range_Is_Three_Sigma(const TPrivateHome& home, TWindow* window)
{
    TWorkedExample example(
        "Estimated range",
        "the *estimated range for 99% of measurements* is three standard deviations wide, mean "
        "± 1.5 σ; lengths\noutside of it are counted.");
    example.Show(
        "Eight lengths are 500.000 mm and one is 500.004 mm. Their mean is 500.000444, Σ(L − mean)² is "
        "0.0000142222,\nσ is √(0.0000142222 / 8):",
        "sigma = 0.0013333, mean + 1.5 sigma = 500.002444");
    std::vector<std::string> lengths(8, "500.000");
    lengths.emplace_back("500.004");
    window->Import(home.Write("example.dat", File_Of(lengths)));
    example.Expect("estimated range, 3 σ", "0.00400",
                   In_Report(*window, "Estimated Range for 99% of Measurements:"));
    example.Expect("number outside: 500.004 is above 500.002444", "1",
                   In_Report(*window, "Number Outside of Estimated Range:"));
    return example.Check();
}

struct TToleranceForm
{
    const char* expression;
    const char* by_hand; ///< in the report, and in the panel
};

constexpr TToleranceForm TOLERANCES[] = {{"0.010", "0.0100 and 0.0100"},
                                         {"1.0", "1.0000 and 1.0000"},
                                         {"1.0001", "marked, 0.0000 and 0.0000"},
                                         {"0.012 + 0.006L/1000", "0.0240 and 0.0270"},
                                         {"0.012+0.006l/1000", "0.0240 and 0.0270"},
                                         {"0.012 + 1.0L/100000", "0.0320 and 0.0370"},
                                         {"0.012 + 1.001L/100000", "marked, 0.0000 and 0.0000"},
                                         {"0.012 + 0.006L/0.1", "0.0120 and 0.0120"},
                                         {"0.012 + 0.0001L/0.11", "1.8302 and 2.2847"},
                                         {"0.012 + 0.006L/1000 | 0.0239", "0.0239 and 0.0239"},
                                         {"0.012 + 0.006L/1000 | 0.025", "0.0240 and 0.0250"},
                                         {"0.012 + 0.006L/1000 | 1.0", "0.0240 and 0.0270"},
                                         {"0.012 + 0.006L/1000 | 1.001", "marked, 0.0000 and 0.0000"},
                                         {"0.012 + 0.006L/1000 : 0.020", "marked, 0.0000 and 0.0000"},
                                         {"-0.010", "marked, 0.0000 and 0.0000"}};

TCheck Tolerance_Forms(const TPrivateHome& home, TWindow* window, TTally* tally)
{
    TWorkedExample example("Forms of the tolerance",
                           "the tolerance is A, or A + B·L/C, or the smaller of that and a limit D. A, B and "
                           "D are at most 1 mm; where C "
                           "is at\nmost 0.1 mm the term of the length is left out. The report evaluates it "
                           "at the mean, the panel at the "
                           "median. What is not\nunderstood is marked and counts as 0.");
    const std::string at_first = window->Field("expression"); // made of the numbers of the settings
    example.Expect("shown at the first start, for 0.012 + 0.006 L / 1000", "0.0120+0.0060L/1000", at_first);
    tally->Text("Tolerance panel, expression at the start", "0.0120+0.0060L/1000", at_first);
    Import_Lengths(home, window, &example, {"1000", "1000", "4000"});
    example.Show(
        "The mean is 2000 mm, the median 2500 mm; below are the tolerance in the report and in the panel:",
        "T(L) = A + B * L / C | D");
    for (const auto& row : TOLERANCES) {
        Apply(window, row.expression);
        const std::string verdict = window->Is_Marked("expression") ? "marked, " : "";
        window->Import(home.Write("example.dat", File_Of({"1000", "1000", "4000"})));
        std::string name = "`" + std::string(row.expression) + "`";
        const size_t bar = name.find('|');
        if (bar != std::string::npos)
            name.insert(bar, "\\"); // a bare one would end the cell of the table
        example.Expect(name, row.by_hand,
                       verdict + In_Report(*window, "Tolerance:") + " and " + window->Field("tolerance"));
    }
    return example.Check();
}

/// The positions that are outside the tolerance, or inside the sub tolerance, as the 3-D view colours them.
std::string Flagged(const TPrivateHome& home, const std::vector<std::string>& lengths, double tolerance,
                    double sub_tolerance, bool TPositionFlags::*flag)
{
    TBallBarData data;
    data.Load_Data(QString::fromStdString(home.Write("example.dat", File_Of(lengths))));
    const TReport report = Build_Report(data, tolerance, sub_tolerance);
    std::string names;
    for (size_t i = 0; i < report.flags.size(); ++i)
        if (report.flags[i].*flag)
            names += (names.empty() ? "P" : ", P") + std::to_string(i + 1);
    return names.empty() ? "none" : names;
}

TCheck Band_Edges_Are_Inside(const TPrivateHome& home)
{
    TWorkedExample example(
        "Edges of the tolerance band",
        "the band reaches half of the tolerance to each side of the median; a length exactly on its "
        "edge is inside, of the\ntolerance and of the sub tolerance.");
    const std::vector<std::string> lengths = {"500", "500.00390625", "500.0078125", "500.01171875",
                                              "500.015625"};
    example.Show(
        "Lengths of whole 1/1024 mm, which a computer holds without rounding; the median is 500.0078125:",
        File_Of(lengths));
    const auto outside = [&](double tolerance) {
        return Flagged(home, lengths, tolerance, 0.0, &TPositionFlags::outside_tolerance);
    };
    const auto inside = [&](double sub_tolerance) {
        return Flagged(home, lengths, 1.0, sub_tolerance, &TPositionFlags::inside_sub_tolerance);
    };
    example.Expect("outside a tolerance of 0.015625, whose edges are P1 and P5", "none", outside(0.015625));
    example.Expect("outside a tolerance of 0.0156", "P1, P5", outside(0.0156));
    example.Expect("outside a tolerance of 0.0078125, whose edges are P2 and P4", "P1, P5",
                   outside(0.0078125));
    example.Expect("inside a sub tolerance of 0.0078125", "P2, P3, P4", inside(0.0078125));
    example.Expect("inside a sub tolerance of 0.0078", "P3", inside(0.0078));
    example.Expect("inside a sub tolerance of 0", "none", inside(0.0));
    return example.Check();
}

TCheck Band_Is_Centred_On_The_Median(const TPrivateHome& home)
{
    TWorkedExample example("Centre of the tolerance band",
                           "the band is centred on the median, not on the mean.");
    const std::vector<std::string> uneven = {"500.000", "500.000", "500.020"};
    example.Show("The median is 500.010, the mean 500.0067:", File_Of(uneven));
    example.Expect("outside a tolerance of 0.0201", "none",
                   Flagged(home, uneven, 0.0201, 0.0, &TPositionFlags::outside_tolerance));
    example.Expect("outside a tolerance of 0.0199", "P1, P2, P3",
                   Flagged(home, uneven, 0.0199, 0.0, &TPositionFlags::outside_tolerance));
    return example.Check();
}

TCheck Bins_Are_Open(const TPrivateHome& home, TWindow* window)
{
    TWorkedExample example(
        "Bins of the histogram",
        "there are nine bins, an eighth of the range wide, the first centred on the minimum and the "
        "last on the maximum.\nThey are open at both ends: a length exactly between two bins is "
        "counted in neither.");
    Import_Lengths(home, window, &example,
                   {"800", "808", "800.5", "800.499", "800.501", "807.5", "803.9", "804.1"});
    const char* const counts[] = {"2", "1", "0", "0", "2", "0", "0", "0", "1"};
    const std::vector<TVector2> bars = window->Histogram(0);
    for (size_t bin = 0; bin < 9; ++bin) {
        const TVector2 bar = bin + 1 < bars.size() ? bars[bin + 1] : TVector2();
        const auto center = 800 + static_cast<int>(bin);
        const std::string name = "bin " + std::to_string(bin + 1) + ", from " + std::to_string(center - 1) +
                                 ".5 to " + std::to_string(center) + ".5, both excluded";
        example.Expect(name, counts[bin], Printed(TExact(bar.y), 0));
        example.Expect("bin " + std::to_string(bin + 1) + ", centre", std::to_string(center) + ".0000",
                       Printed(TExact(bar.x), 4));
    }
    return example.Check();
}

struct TOffsetExample
{
    const char* name;
    const char* file;
    const char* x;
    const char* z;
    const char* form;
};

constexpr TOffsetExample OFFSETS[] = {
    {"BallBar_V1", "BallBar_V1\nP1,,0,0,0,100,0,0,3,0,-5\n", "3.0000", "-5.0000", "0.0000"},
    {"BallBar_V2", "BallBar_V2\nP1,,0,0,0,100,0,0,0.001,0.002,3,0,-5\n", "3.0000", "-5.0000", "0.0010"},
    {"current format", "B89.4.1_Data:Version=1:Type=BallBar\nP1,,0,0,0,100,0,0,0.001,0.002,3,0,-5\n",
     "0.0000", "0.0000", "0.0010"}};

TCheck Older_Formats_Need_The_Offset(const TPrivateHome& home, TWindow* window)
{
    TWorkedExample example(
        "Probe offset of the older formats",
        "BallBar_V1 and BallBar_V2 state the centres without the probe offset, which is added to "
        "both; the current format\nstates them with it. BallBar_V1 has no form errors, which count "
        "as 0.");
    for (const auto& format : OFFSETS) {
        const std::string name = format.name;
        example.Show(name + ":", format.file);
        window->Import(home.Write("example.dat", format.file));
        window->Select(0);
        example.Expect(name + ", sphere 1 x", format.x, window->Field("sphere1_x"));
        example.Expect(name + ", sphere 1 z", format.z, window->Field("sphere1_z"));
        example.Expect(name + ", sphere 2 z", format.z, window->Field("sphere2_z"));
        example.Expect(name + ", form error of sphere 1", format.form, window->Field("sphere1_form"));
        example.Expect(name + ", length", "100.0000", window->Field("length"));
    }
    return example.Check();
}

/// The line of a position in a backup, up to its sixth number.
std::string In_Backup(const std::string& backup, const std::string& name)
{
    const size_t begin = backup.find("Entry:" + name);
    return begin == std::string::npos ? "(not there)" : backup.substr(begin, 42);
}

/// Saves a file in an empty database and writes a backup.
std::string Saved_Backup(const TPrivateHome& home, const std::string& path)
{
    home.Remove_Database();
    TStore store(home);
    store.Save(path, 0);
    return store.Written_Backup();
}

TCheck Database_Keeps_Five_Decimals(const TPrivateHome& home)
{
    TWorkedExample example(
        "Rounding in the database",
        "the database keeps 5 decimals of each coordinate, form error and offset, and statistics "
        "are computed again from\nthem. A length changes by at most 0.000018 mm (three coordinate "
        "differences, each by at most 0.00001), for a bar along an\naxis by at most 0.00001; so do "
        "mean and median, and the range by at most twice that. The standard deviation changes\nby "
        "at most √(n / (n − 1)) of it.");
    const std::string file = File_Of({"500.000004", "500.000004", "500.000026"});
    example.Show("Imported, the lengths are these; stored, they are 500.00000, 500.00000 and 500.00003:",
                 file);
    const std::string path = home.Write("example.dat", file);
    const auto estimated_range = [](const TWindow& window) {
        return In_Report(window, "Estimated Range for 99% of Measurements:");
    };
    const std::string stored = Saved_Backup(home, path);
    TWindow window;
    window.Import(path);
    example.Expect("estimated range before, 3 · 0.000022 / √3", "0.00004", estimated_range(window));
    window.Load(0);
    example.Expect("estimated range after, 3 · 0.00003 / √3", "0.00005", estimated_range(window));
    example.Expect("P1 in the backup", "Entry:P1,0.00000,0.00000,0.00000,500.00000", In_Backup(stored, "P1"));
    example.Expect("P3 in the backup", "Entry:P3,0.00000,0.00000,0.00000,500.00003", In_Backup(stored, "P3"));
    return example.Check();
}

struct TMachineLimit
{
    const char* name;
    const char* field;
    const char* at_first;
    const char* typed;
    const char* used;
};

constexpr TMachineLimit MACHINE_LIMITS[] = {{"Min X", "min_x", "0.000", "500", "100.000"},
                                            {"Max X", "max_x", "1200.000", "100", "500.000"},
                                            {"Min Y", "min_y", "0.000", "10", "10.000"},
                                            {"Max Y", "max_y", "2200.000", "15", "20.000"},
                                            {"Min Z", "min_z", "-1000.000", "-1000.5", "-1000.500"},
                                            {"Max Z", "max_z", "0.000", "0", "0.000"}};

TCheck Machine_Limits_Are_Ordered(TWindow* window, TTally* tally)
{
    TWorkedExample example("Limits of the machine",
                           "bounds in the wrong order are put in order, and an axis is at "
                           "least 10 mm long. They are shown with 3 decimals.");
    std::vector<std::string> typed;
    for (const auto& row : MACHINE_LIMITS) {
        typed.emplace_back(row.typed);
        example.Expect(std::string(row.name) + " at the first start", row.at_first, window->Field(row.field));
        tally->Number("Machine panel, limits", Exact(row.at_first), 3, window->Field(row.field));
    }
    const std::vector<double> limits = window->Machine_Limits(typed);
    for (size_t i = 0; i < limits.size(); ++i)
        example.Expect(std::string(MACHINE_LIMITS[i].name) + ", typed as " + MACHINE_LIMITS[i].typed,
                       MACHINE_LIMITS[i].used, Printed(TExact(limits[i]), 3));
    return example.Check();
}

} // namespace

std::vector<TCheck> Check_Rules(const TPrivateHome& home, TTally* tally)
{
    std::vector<TCheck> checks;
    {
        TWindow window;
        checks = {Printed_Numbers_Are_Rounded(home, &window),   Median_Is_Mid_Range(home, &window),
                  Divisor_Is_One_Less(home, &window),           Estimated_Range_Is_Three_Sigma(home, &window),
                  Tolerance_Forms(home, &window, tally),        Band_Edges_Are_Inside(home),
                  Band_Is_Centred_On_The_Median(home),          Bins_Are_Open(home, &window),
                  Older_Formats_Need_The_Offset(home, &window), Machine_Limits_Are_Ordered(&window, tally)};
    }
    checks.push_back(Database_Keeps_Five_Decimals(home));
    return checks;
}

// SPDX-License-Identifier: MIT
#include "report.h"
#include "testing.h"

namespace
{

/// A set of bars along X of the given lengths, named P1, P2 and so on.
void Fill(TBallBarData* data, const std::vector<double>& lengths)
{
    data->Clear();
    for (const double length : lengths) {
        Types::TBallbar_Item item;
        item.name = QString("P%1").arg(data->Ballbar_Item_Count() + 1);
        item.sph2 = {length, 0, 0};
        data->Add_Ballbar(item);
    }
    data->Update_Stats();
}

std::vector<double> Counts(const THistogram& histogram)
{
    std::vector<double> counts;
    for (size_t i = 1; i < histogram.bars.size(); ++i)
        counts.push_back(histogram.bars[i].y);
    return counts;
}

} // namespace

TEST(Report, TextToTheCharacter)
{
    TBallBarData data;
    Types::TBallbar_Item item;
    item.name = "P1";
    item.sph1 = {10, -20, 0.5};
    item.sph2 = {510.0123, -20, 0.5};
    item.sph1_form = 0.0012;
    item.sph2_form = 0.0009;
    data.Add_Ballbar(item);
    item.name = "A name of %2 and over 20";
    item.sph2 = {10, 479.9877, 0.5};
    item.sph2_form = 12345678.5;
    data.Add_Ballbar(item);
    item.name = "two\nlines";
    item.sph2 = {10, -20, 500.5};
    data.Add_Ballbar(item);
    data.Update_Stats();

    const TReport report = Build_Report(data, 0.015, 0.0);
    const QString rule(71, '-');
    const QStringList lines = {
        "Measurement Volume",
        rule,
        "          Start X:    10.0000 mm",
        "            End X:   510.0123 mm",
        "          Range X:   500.0123 mm",
        "          Start Y:   -20.0000 mm",
        "            End Y:   479.9877 mm",
        "          Range Y:   499.9877 mm",
        "          Start Z:     0.5000 mm",
        "            End Z:   500.5000 mm",
        "          Range Z:   500.0000 mm",
        "",
        "Measurement Statistics",
        rule,
        "Measurement Count:          3",
        "   Minimum Length:   499.9877",
        "   Maximum Length:   500.0123",
        "     Range Length:     0.0246",
        "      Mean Length:   500.0000",
        "    Median Length:   500.0000",
        "    StdDev Length:     0.0123",
        "        Tolerance:     0.0150",
        "",
        "Estimated Range for 99% of Measurements: 0.03690",
        "Number Outside of Estimated Range: 0",
        "",
        "Individual Measurement Results",
        rule,
        "",
        " Position Name          Length    Mean Dev.  Sph1 Form  Sph2 Form",
        rule,
        "P1                     500.0123     0.0123     0.0012     0.0009",
        "A name of %2 and over 20   499.9877    -0.0123     0.0012 12345678.5000",
        "two lines              500.0000     0.0000     0.0012 12345678.5000",
    };
    EXPECT_EQ(report.text.split('\n'), lines);
    EXPECT_EQ(lines.value(report.first_position_line).left(2), "P1");
}

TEST(Report, BandsAreCentredOnTheMidRange)
{
    TBallBarData data;
    Fill(&data, {100, 100, 100, 100.25, 100.5, 101}); // mid-range 100.5, far from the mean
    // Tolerance, sub-tolerance; per position: outside the tolerance, inside the sub-tolerance, both, neither.
    const std::tuple<double, double, const char*> rows[] = {
        {1.0, 0.0, "------"}, {0.5, 0.5, "ooosso"},  {0.0, 0.0, "oooo-o"},
        {0.0, 0.5, "ooobso"}, {2.0, 1e-6, "------"}, {2.0, 1e-5, "----s-"},
    };
    for (const auto& [tolerance, sub_tolerance, expected] : rows) {
        std::string flags;
        for (const TPositionFlags& position : Build_Report(data, tolerance, sub_tolerance).flags)
            flags += "-osb"[(position.outside_tolerance ? 1 : 0) + (position.inside_sub_tolerance ? 2 : 0)];
        EXPECT_EQ(flags, expected) << tolerance << ", " << sub_tolerance;
    }
}

TEST(Report, HistogramBins)
{
    const std::pair<std::vector<double>, std::vector<double>> rows[] = {
        {{800, 801, 802, 803, 804, 805, 806, 807, 808}, {1, 1, 1, 1, 1, 1, 1, 1, 1}},
        {{800, 808, 800.5}, {1, 0, 0, 0, 0, 0, 0, 0, 1}}, // a length between two bins counts in neither
        {{800, 800.25, 800.75, 808}, {2, 1, 0, 0, 0, 0, 0, 0, 1}},
        {{7, 7}, {}},
        {{7, 7 + 5e-7}, {}},
        {{7, 7 + 2e-6}, {1, 0, 0, 0, 0, 0, 0, 0, 1}},
        {{7}, {}},
    };
    TBallBarData data;
    for (const auto& [lengths, counts] : rows) {
        Fill(&data, lengths);
        const TReport report = Build_Report(data, 0.5, 0.0);
        EXPECT_EQ(Counts(report.histogram), counts);
        const bool too_small =
            report.text.endsWith("\n\nINF:  There range of the data is too small to graph");
        EXPECT_EQ(too_small, counts.empty());
    }
    EXPECT_TRUE(Build_Report(TBallBarData(), 1, 1).text.isEmpty());

    Fill(&data, {800, 800, 804, 816});
    const THistogram histogram = Build_Report(data, 3.0, 0.0).histogram;
    std::vector<TVector2> points = histogram.band;
    points.insert(points.end(), {histogram.bars[0], histogram.bars[1], histogram.bars[9]});
    QString text;
    for (const TVector2& point : points)
        text += QString("%1,%2 ").arg(point.x).arg(point.y);
    EXPECT_EQ(text, "806.5,0 806.5,3 809.5,3 809.5,0 805,0 800,2 816,1 "); // the mean, with no count, leads

    Fill(&data, {10, 10, 10, 10, 10, 10, 10, 10, 10, 20}); // mean 11, deviation 3.16: 11 +- 4.74
    EXPECT_THAT(Build_Report(data, 1, 0).text.toStdString(),
                testing::HasSubstr("Estimated Range for 99% of Measurements: 9.48683\n"
                                   "Number Outside of Estimated Range: 1\n\n"));
}

// SPDX-License-Identifier: MIT
#include "report.h"
#include "testing.h"

/// A set of bars along X of the given lengths.
void Fill(TBallBarData* data, const std::vector<double>& lengths)
{
    data->Clear();
    for (const double length : lengths)
        data->Add_Ballbar({"P", {}, {length, 0, 0}, {}, 0, 0});
    data->Update_Stats();
}

TEST(Report, TextToTheCharacter)
{
    TBallBarData data;
    const TVector3 corner(10, -20, 0.5);
    const TVector3 probe(900, -900, 900); // takes no part in the volume
    data.Add_Ballbar({"P1", corner, {510.0123, -20, 0.5}, probe, 0.0012, 0.0009});
    data.Add_Ballbar({"A name of %2 and over 20", {10, 479.9877, 0.5}, corner, probe, 0.0012, 12345678.5});
    data.Add_Ballbar({"two\nlines", {10, -20, 500.5}, corner, {}, 0.0012, 12345678.5});
    data.Update_Stats();

    const TReport report = Build_Report(data, 0.015, 0.0);
    EXPECT_EQ(report.text + '\n', Content(TEST_DATA "/report.txt"));
    EXPECT_EQ(report.text.split('\n').value(report.first_position_line).left(2), "P1");
}

TEST(Report, StatisticsOfLengths)
{
    TBallBarData data;
    const std::pair<std::vector<double>, const char*> rows[] = {
        // minimum, maximum, mean, mid-range, deviation
        {{}, "0 0 0 0 0"},
        {{7}, "7 7 7 7 0"},
        {{1, 2, 10}, "1 10 4.33333 5.5 4.93288"},
        {{1e8 + 1, 1e8 + 3, 1e8}, "1e+08 1e+08 1e+08 1e+08 1.52753"}}; // one pass would leave no digit of it
    for (const auto& [lengths, expected] : rows) {
        Fill(&data, lengths);
        EXPECT_EQ(State(data.Minimum_Length(), data.Maximum_Length(), data.Mean_Length(),
                        data.Median_Length(), data.Stdev_Length()),
                  expected);
    }
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
        // lengths and the bars' heights, of which the first leads to the others
        {{800, 801, 802, 803, 804, 805, 806, 807, 808}, {0, 1, 1, 1, 1, 1, 1, 1, 1, 1}},
        {{800, 808, 800.5}, {0, 1, 0, 0, 0, 0, 0, 0, 0, 1}}, // between two bins: counts in neither
        {{800, 800.25, 800.75, 808}, {0, 2, 1, 0, 0, 0, 0, 0, 0, 1}},
        {{7, 7 + 5e-7}, {}},
        {{7, 7 + 2e-6}, {0, 1, 0, 0, 0, 0, 0, 0, 0, 1}},
        {{7}, {}},
    };
    TBallBarData data;
    for (const auto& [lengths, counts] : rows) {
        Fill(&data, lengths);
        const TReport report = Build_Report(data, 0.5, 0.0);
        std::vector<double> found;
        for (const TVector2& bar : report.histogram.bars)
            found.push_back(bar.y);
        EXPECT_EQ(found, counts);
        EXPECT_EQ(report.text.endsWith("\n\nINF:  There range of the data is too small to graph"),
                  counts.empty());
    }
    EXPECT_TRUE(Build_Report(TBallBarData(), 1, 1).text.isEmpty());

    Fill(&data, {800, 800, 804, 816});
    const THistogram histogram = Build_Report(data, 3.0, 0.0).histogram;
    QString text;
    for (const auto& points : {histogram.band, histogram.bars}) // the mean, with no count, leads the bars
        for (const TVector2& point : points)
            text += QString("%1,%2 ").arg(point.x).arg(point.y);
    EXPECT_EQ(text, "806.5,0 806.5,3 809.5,3 809.5,0 "
                    "805,0 800,2 802,0 804,1 806,0 808,0 810,0 812,0 814,0 816,1 ");

    for (const double other : {20, 5}) { // both beyond 1.5 deviations from the mean
        Fill(&data, {10, 10, 10, 10, 10, 10, 10, 10, 10, other});
        EXPECT_TRUE(Build_Report(data, 1, 0).text.contains("Number Outside of Estimated Range: 1\n\n"));
    }
}

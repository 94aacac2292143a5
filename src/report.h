// SPDX-License-Identifier: MIT
#pragma once

#include "ballbardata.h"
#include "vector2.h"

#include <QString>

#include <vector>

/// Letters of the rules in the report, the widest of its lines unless a name is long.
constexpr int REPORT_WIDTH = 71;

/// How one position stands to the tolerance band and to the sub-tolerance band, both centred on the median.
struct TPositionFlags
{
    bool outside_tolerance{false};
    bool inside_sub_tolerance{false};
};

/// What the histogram draws, in mm and counts. Empty where the range of the lengths is too small to graph.
struct THistogram
{
    std::vector<TVector2> bars; ///< (mean, 0), then the centre and count of each bin
    double bin_width{0.0};      ///< distance of the centres
    std::vector<TVector2> band; ///< the outline of the tolerance band, from its lower left corner
};

/// A measurement set judged against a tolerance: everything the user is shown of it.
struct TReport
{
    QString text;                      ///< lines separated by line feeds
    std::vector<TPositionFlags> flags; ///< one per position, in the set's order
    int first_position_line{0};        ///< line of the text, from 0, that lists position 0; the others follow
    THistogram histogram;
};

/// Judges `data` against `tolerance` and `sub_tolerance`, the full widths of the two bands in mm.
/// An empty set gives an empty report.
TReport Build_Report(const TBallBarData& data, double tolerance, double sub_tolerance);

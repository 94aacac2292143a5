// SPDX-License-Identifier: MIT
#pragma once

#include "types.h"

#include <vector>

/// Summary statistics of the lengths of a measurement set, mm. All 0 for an empty set.
struct TStatistics
{
    double minimum{0.0};
    double maximum{0.0};
    double mean{0.0};
    double median{0.0};             ///< the mid-range, (minimum + maximum) / 2, not the middle length
    double standard_deviation{0.0}; ///< sample form, divisor n - 1; 0 for fewer than two positions
};

/// The statistics of the items' lengths. The standard deviation is computed in two passes, which keeps its
/// digits where lengths are large and spreads are small.
TStatistics Length_Statistics(const std::vector<Types::TBallbar_Item>& items);

/// The width of the range that holds nearly all lengths: three standard deviations, centred on the mean.
double Estimated_Range(double standard_deviation);

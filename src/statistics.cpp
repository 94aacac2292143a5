// SPDX-License-Identifier: MIT
#include "statistics.h"

#include <cmath>

TStatistics Length_Statistics(const std::vector<Types::TBallbar_Item>& items)
{
    TStatistics statistics;
    if (items.empty())
        return statistics;

    statistics.minimum = statistics.maximum = items.front().Length();
    double sum = 0.0;
    for (const Types::TBallbar_Item& item : items) {
        const double length = item.Length();
        if (length > statistics.maximum)
            statistics.maximum = length;
        else if (length < statistics.minimum)
            statistics.minimum = length;
        sum += length;
    }
    const auto count = static_cast<double>(items.size());
    statistics.median = (statistics.minimum + statistics.maximum) * 0.5;
    statistics.mean = sum / count;
    if (items.size() < 2)
        return statistics;

    // Sample standard deviation in two passes: the mean first, then the squares of the deviations from it.
    double squares = 0.0;
    for (const Types::TBallbar_Item& item : items) {
        const double deviation = item.Length() - statistics.mean;
        squares += deviation * deviation;
    }
    statistics.standard_deviation = std::sqrt(squares / (count - 1.0));
    return statistics;
}

double Estimated_Range(double standard_deviation)
{
    return 3.0 * standard_deviation;
}

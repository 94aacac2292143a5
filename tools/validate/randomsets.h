// SPDX-License-Identifier: MIT
#pragma once

#include "exactset.h"

#include <cstdint>
#include <random>
#include <string>

/// A measurement file that nobody measured, and the tolerance it is to be judged against.
struct TRandomSet
{
    std::string file;
    TExactTolerance tolerance;
    bool on_grid{false}; ///< see TExactSet
};

/// Makes measurement files of all three formats: lengths of 50 to 5,000 mm with deviations of micrometres, 1
/// to 200 positions, in places and directions all over a machine. The same seed gives the same files
/// everywhere.
class TRandomSets
{
public:
    explicit TRandomSets(std::uint64_t seed) : d_generator(seed) {}

    TRandomSet Next();

private:
    using TVector = std::array<double, 3>;

    int Random(int least, int most);
    double Random_Real(double least, double most);
    double Deviation(double sigma);
    TVector Direction(bool along_axis);
    TExactTolerance Tolerance(bool on_grid);
    std::string Grid_Tolerance();
    std::string Positions(bool on_grid);
    std::string Position_Line(int index, const TVector& first, const TVector& second);
    std::string Odd_Line();
    std::string Number(double value);

    std::mt19937_64 d_generator;
    int d_made{0};     ///< sets
    int d_format{0};   ///< 0, 1, 2: BallBar_V1, BallBar_V2, the current one
    int d_decimals{0}; ///< of the numbers in the file
};

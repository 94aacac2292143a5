// SPDX-License-Identifier: MIT
#include "randomsets.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace
{

constexpr double GRID = 1.0 / 1024; // mm; multiples of it, and of its sixteenth, are exact as doubles
constexpr int GRID_DECIMALS = 10;

const char* const HEADERS[] = {"BallBar_V1\n", "BallBar_V2\n", "B89.4.1_Data:Version=1:Type=BallBar\n"};

// As people and programs name positions, with letters that the database does not keep.
const char* const NAMES[] = {"P",   "Pos. ", "left/rear ", "X+ [top] ", "the third diagonal of the volume ",
                             "50% "};

std::string Fixed_Digits(double value, int decimals)
{
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    return {digits, end.ptr};
}

/// 0.00X to 0.0XX with as many digits as the field of the tolerance takes.
std::string Thousandths(int thousandths)
{
    return Fixed_Digits(thousandths / 1000.0, 3);
}

} // namespace

int TRandomSets::Random(int least, int most)
{
    return least + static_cast<int>(d_generator() % static_cast<unsigned>(most - least + 1));
}

double TRandomSets::Random_Real(double least, double most)
{
    return least + (most - least) * std::ldexp(static_cast<double>(d_generator() >> 11), -53);
}

// Twelve of them add up to a normal distribution that is near enough.
double TRandomSets::Deviation(double sigma)
{
    double sum = -6.0;
    for (int i = 0; i < 12; ++i)
        sum += Random_Real(0.0, 1.0);
    return sigma * sum;
}

TRandomSets::TVector TRandomSets::Direction(bool along_axis)
{
    TVector direction{};
    if (along_axis) {
        direction[static_cast<size_t>(Random(0, 2))] = Random(0, 1) == 0 ? 1.0 : -1.0;
        return direction;
    }
    for (double& component : direction)
        component = Random_Real(-1.0, 1.0);
    const double length = std::max(0.01, std::hypot(direction[0], direction[1], direction[2]));
    for (double& component : direction)
        component /= length;
    return direction;
}

std::string TRandomSets::Grid_Tolerance()
{
    const char* const tolerances[] = {"0.015625", "0.03125", "0.0625"};
    return tolerances[Random(0, 2)];
}

TExactTolerance TRandomSets::Tolerance(bool on_grid)
{
    const char* const divisors[] = {"100", "250", "1000.0", "1200", "33333.33"};
    TExactTolerance tolerance;
    tolerance.a = on_grid ? Grid_Tolerance() : Thousandths(Random(1, 40));
    tolerance.expression = tolerance.a;
    tolerance.slider = on_grid ? 5 * Random(0, 4) : Random(0, 20);
    const int form = on_grid ? 0 : Random(0, 2);
    if (form > 0) {
        tolerance.b = Thousandths(Random(1, 20));
        tolerance.c = divisors[Random(0, 4)];
        tolerance.expression += " + " + tolerance.b + "L/" + tolerance.c;
    }
    if (form > 1) {
        tolerance.d = Thousandths(Random(5, 60));
        tolerance.expression += " | " + tolerance.d;
    }
    return tolerance;
}

std::string TRandomSets::Number(double value)
{
    std::string text = Fixed_Digits(value, d_decimals);
    switch (Random(0, 19)) {
    case 0:
        return " " + text + " ";
    case 1:
        return text.front() == '-' ? text : "+" + text;
    case 2:
        return text + "e0";
    default:
        return text;
    }
}

// What is no position and must not be counted.
std::string TRandomSets::Odd_Line()
{
    const std::string zeros = d_format == 0 ? "0,0,0,0,0,0" : "0,0,0,0,0,0,0,0";
    switch (Random(0, 99)) {
    case 0:
        return "# a comment\n";
    case 1:
        return "\n";
    case 2:
        return "cut short,,0,0," + zeros + "\n";
    case 3:
        return "unreadable,,0,n/a,0," + zeros + "\n";
    default:
        return "";
    }
}

std::string TRandomSets::Position_Line(int index, const TVector& first, const TVector& second)
{
    std::string line = NAMES[Random(0, 5)] + std::to_string(index + 1) + ",";
    line += Random(0, 1) == 0 ? "" : "not read";
    for (const TVector& centre : {first, second})
        for (const double coordinate : centre)
            line += "," + Number(coordinate);
    if (d_format > 0)
        line += "," + Number(Random_Real(0.0, 0.005)) + "," + Number(Random_Real(0.0, 0.005));
    for (int axis = 0; axis < 3; ++axis)
        line += "," + Number(d_decimals == GRID_DECIMALS ? Random(-200, 200) : Random_Real(-200.0, 200.0));
    return line + "\n";
}

std::string TRandomSets::Positions(bool on_grid)
{
    const int count = d_made % 25 < 2 ? 1 + d_made % 25 : Random(1, 200);
    const double length = Random_Real(50.0, 5000.0);
    const double sigma = Random_Real(0.0005, 0.02);
    const int bins = Random(0, 3); // of a set on the grid: the width of the bins in steps of two
    const bool along_axis = on_grid || Random(0, 3) == 0;
    std::string lines;
    for (int i = 0; i < count; ++i) {
        // On the grid the shortest and the longest come first, so that edges and bounds fall on the grid too.
        const int step = i < 2 ? 16 * i : Random(0, 16);
        const double wanted =
            on_grid ? std::round(length / GRID) * GRID + bins * step * GRID : length + Deviation(sigma);
        const TVector direction = Direction(along_axis);
        TVector first{};
        TVector second{};
        for (size_t axis = 0; axis < 3; ++axis) {
            const double place = Random_Real(-2000.0, 2000.0);
            first[axis] = on_grid ? std::round(place / GRID) * GRID : place;
            second[axis] = first[axis] + wanted * direction[axis];
        }
        lines += Odd_Line() + Position_Line(i, first, second);
    }
    return lines;
}

TRandomSet TRandomSets::Next()
{
    TRandomSet set;
    d_format = d_made % 3;
    set.on_grid = d_made % 5 == 4;
    d_decimals = set.on_grid ? GRID_DECIMALS : Random(4, 8);
    set.file = HEADERS[d_format];
    if (d_format == 2 && Random(0, 1) == 0)
        set.file += "Name,Length,X1,Y1,Z1,X2,Y2,Z2,Form1,Form2,X,Y,Z\n";
    set.file += Positions(set.on_grid);
    set.tolerance = Tolerance(set.on_grid);
    ++d_made;
    return set;
}

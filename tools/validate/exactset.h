// SPDX-License-Identifier: MIT
#pragma once

#include "exact.h"

#include <array>
#include <string>
#include <vector>

/// A position as a measurement file or a backup states it. All numbers are mm.
struct TExactPosition
{
    std::string name;
    /// Centre of sphere 1 (x, y, z) and of sphere 2, form error of sphere 1 and of 2, probe offset (x, y, z).
    std::array<TExact, 11> numbers;
    std::vector<std::string> texts; ///< the numbers as a backup states them

    TExact Length() const;
};

/// A set with everything that follows from its positions, computed from the formulas of docs/numbers.md and
/// from nothing of the program.
struct TExactSet
{
    std::vector<TExactPosition> positions;
    /// Lengths, range and edges are such that doubles hold them without any rounding: there is no excuse for
    /// a decision that goes the other way.
    bool on_grid{false};

    std::vector<TExact> lengths;
    std::array<TExact, 3> corner_min;
    std::array<TExact, 3> corner_max;
    TExact minimum;
    TExact maximum;
    TExact range;
    TExact mean;
    TExact median;
    TExact deviation;
    TExact estimated_range;
};

/// The tolerance T(L) = a + b * L / c, at most d, and the place of the sub tolerance slider.
struct TExactTolerance
{
    std::string expression; ///< as it is typed
    std::string a{"0"};
    std::string b{"0"};
    std::string c{"0"};
    std::string d; ///< empty without a limit
    int slider{0}; ///< 0 to 20

    TExact At(const TExact& length) const;
    TExact Fraction() const { return TExact(slider) / 20; }
};

/// The set of a measurement file of any of the three formats.
TExactSet Read_Measurement(const std::string& text);

/// The sets of a backup file, in its order.
std::vector<TExactSet> Read_Backup(const std::string& text);

/// `name` without the characters that the database does not keep.
std::string Stored_Name(std::string name);

std::vector<std::string> Split(const std::string& text, char separator);

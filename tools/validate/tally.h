// SPDX-License-Identifier: MIT
#pragma once

#include "exact.h"

#include <map>
#include <string>
#include <vector>

/// Whether a number lies above an edge. What arithmetic with doubles cannot tell is UNSURE.
enum class TSide
{
    BELOW,
    ON,
    ABOVE,
    UNSURE
};

/// Where `value` lies. `is_exact` tells that doubles hold both without rounding, and so can tell ON.
TSide Side_Of(const TExact& value, const TExact& edge, bool is_exact);

/// Holds what the program shows against what it should show, and keeps count by quantity.
class TTally
{
public:
    static constexpr int WHOLE = -1; ///< decimals of a count, a yes or no, or a text
    static constexpr int DRAWN = -2; ///< of a number that is drawn and not printed

    /// A comparison that is worth telling of.
    struct TExample
    {
        std::string place;
        std::string quantity;
        std::string expected;
        std::string shown;
    };

    struct TCount
    {
        long long compared{0};
        long long ties{0};  ///< halfway between two texts or decisions, where both are right
        long long wrong{0}; ///< neither
        int decimals{WHOLE};
    };

    /// What the following comparisons are about, for whoever looks for a fault.
    void Set_Place(const std::string& place) { d_place = place; }

    /// A printed number. A tie is one so near to halfway between two printed numbers that doubles cannot
    /// tell.
    void Number(const std::string& quantity, const TExact& value, int decimals, const std::string& shown);
    /// A count of which `least` are certain and up to `most` are possible.
    void Count(const std::string& quantity, int least, int most, int shown);
    /// A number that is drawn, for instance the place of a bar.
    void Drawn(const std::string& quantity, const TExact& value, double drawn);
    void Decision(const std::string& quantity, bool expected, bool is_tie, bool shown);
    void Text(const std::string& quantity, const std::string& expected, const std::string& shown);

    /// Adds the counts and the examples of another tally.
    void Add(const TTally& other);

    const std::map<std::string, TCount>& Counts() const { return d_counts; }
    TCount Sum() const;
    /// The first ones of each.
    const std::vector<TExample>& Ties() const { return d_ties; }
    const std::vector<TExample>& Faults() const { return d_faults; }

private:
    enum TVerdict
    {
        RIGHT,
        TIE,
        WRONG
    };

    void Note(const std::string& quantity, int decimals, TVerdict verdict, const std::string& expected,
              const std::string& shown);

    std::string d_place;
    std::map<std::string, TCount> d_counts;
    std::vector<TExample> d_ties;
    std::vector<TExample> d_faults;
};

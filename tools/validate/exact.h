// SPDX-License-Identifier: MIT
#pragma once

#include <boost/multiprecision/cpp_dec_float.hpp>
#include <string>

/// Decimal arithmetic with 50 digits: the yardstick that the program's numbers are held against.
using TExact =
    boost::multiprecision::number<boost::multiprecision::cpp_dec_float<50>, boost::multiprecision::et_off>;

/// How near to each other, mm, two numbers may be for doubles to take one for the other. Those of a machine's
/// volume, and what is computed from them, are good to some 1e-12 mm.
const TExact& Noise();

/// The decimal number in `text`, with all of its digits; blanks around it do not count.
TExact Exact(const std::string& text);

/// `value` in fixed notation, rounded to `decimals` decimals, half away from zero. A negative number keeps
/// its sign, also where all of its digits are 0.
std::string Printed(const TExact& value, int decimals);

/// How many leading digits `value` shares with `certified`: the negative decimal logarithm of the relative
/// error, 17 (more than a double holds) where there is none.
TExact Shared_Digits(const TExact& value, const TExact& certified);

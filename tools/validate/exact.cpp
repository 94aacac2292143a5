// SPDX-License-Identifier: MIT
#include "exact.h"

namespace mp = boost::multiprecision;

const TExact& Noise()
{
    static const TExact NOISE("1e-10");
    return NOISE;
}

TExact Exact(const std::string& text)
{
    const size_t begin = text.find_first_not_of(" \t\r+");
    const size_t end = text.find_last_not_of(" \t\r");
    return TExact(text.substr(begin, end - begin + 1));
}

std::string Printed(const TExact& value, int decimals)
{
    const TExact scaled = mp::floor(mp::abs(value) * mp::pow(TExact(10), decimals) + TExact("0.5"));
    std::string digits = std::to_string(scaled.convert_to<long long>());
    const auto places = static_cast<size_t>(decimals);
    if (digits.size() <= places)
        digits.insert(0, places + 1 - digits.size(), '0');
    if (places > 0)
        digits.insert(digits.size() - places, ".");
    return (value < 0 ? "-" : "") + digits;
}

TExact Shared_Digits(const TExact& value, const TExact& certified)
{
    TExact most = 17;
    if (value == certified)
        return most;
    const TExact error = mp::abs(value - certified) / mp::abs(certified);
    return (std::min)(most, TExact(-mp::log10(error)));
}

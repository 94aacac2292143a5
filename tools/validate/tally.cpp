// SPDX-License-Identifier: MIT
#include "tally.h"

#include <algorithm>

namespace mp = boost::multiprecision;

namespace
{

constexpr size_t MOST_EXAMPLES = 12;

void Append_First(std::vector<TTally::TExample>* list, const std::vector<TTally::TExample>& more)
{
    const size_t room = MOST_EXAMPLES - std::min(MOST_EXAMPLES, list->size());
    const auto count = static_cast<std::ptrdiff_t>(std::min(room, more.size()));
    list->insert(list->end(), more.begin(), more.begin() + count);
}

} // namespace

TSide Side_Of(const TExact& value, const TExact& edge, bool is_exact)
{
    static const TExact LAST_DIGITS("1e-30"); // of a root, which the yardstick too must round
    const TExact difference = value - edge;
    if (mp::abs(difference) <= (is_exact ? LAST_DIGITS : Noise()))
        return is_exact ? TSide::ON : TSide::UNSURE;
    return difference > 0 ? TSide::ABOVE : TSide::BELOW;
}

void TTally::Number(const std::string& quantity, const TExact& value, int decimals, const std::string& shown)
{
    const std::string low = Printed(value - Noise(), decimals);
    const std::string high = Printed(value + Noise(), decimals);
    const bool is_zero = value == 0 && shown == Printed(value, decimals); // has no sign, but near ones have
    const TVerdict verdict = shown != low && shown != high ? WRONG : low == high || is_zero ? RIGHT : TIE;
    Note(quantity, decimals, verdict, verdict == RIGHT ? shown : Printed(value, 12), shown);
}

void TTally::Count(const std::string& quantity, int least, int most, int shown)
{
    const TVerdict verdict = shown < least || shown > most ? WRONG : least == most ? RIGHT : TIE;
    const std::string range = std::to_string(least) + " to " + std::to_string(most);
    Note(quantity, WHOLE, verdict, least == most ? std::to_string(least) : range, std::to_string(shown));
}

void TTally::Drawn(const std::string& quantity, const TExact& value, double drawn)
{
    const bool right = mp::abs(value - TExact(drawn)) <= Noise();
    Note(quantity, DRAWN, right ? RIGHT : WRONG, Printed(value, 12), Printed(TExact(drawn), 12));
}

void TTally::Decision(const std::string& quantity, bool expected, bool is_tie, bool shown)
{
    const TVerdict verdict = is_tie ? TIE : shown == expected ? RIGHT : WRONG;
    Note(quantity, WHOLE, verdict, is_tie ? "either" : expected ? "yes" : "no", shown ? "yes" : "no");
}

void TTally::Text(const std::string& quantity, const std::string& expected, const std::string& shown)
{
    Note(quantity, WHOLE, shown == expected ? RIGHT : WRONG, expected, shown);
}

void TTally::Note(const std::string& quantity, int decimals, TVerdict verdict, const std::string& expected,
                  const std::string& shown)
{
    TCount& count = d_counts[quantity];
    count.decimals = decimals;
    ++count.compared;
    if (verdict == RIGHT)
        return;
    ++(verdict == TIE ? count.ties : count.wrong);
    std::vector<TExample>& examples = verdict == TIE ? d_ties : d_faults;
    if (examples.size() < MOST_EXAMPLES)
        examples.push_back({d_place, quantity, expected, shown});
}

void TTally::Add(const TTally& other)
{
    for (const auto& [quantity, count] : other.d_counts) {
        TCount& sum = d_counts[quantity];
        sum.compared += count.compared;
        sum.ties += count.ties;
        sum.wrong += count.wrong;
        sum.decimals = count.decimals;
    }
    Append_First(&d_ties, other.d_ties);
    Append_First(&d_faults, other.d_faults);
}

TTally::TCount TTally::Sum() const
{
    TCount sum;
    for (const auto& [quantity, count] : d_counts) {
        sum.compared += count.compared;
        sum.ties += count.ties;
        sum.wrong += count.wrong;
    }
    return sum;
}

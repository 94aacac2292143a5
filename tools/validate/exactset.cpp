// SPDX-License-Identifier: MIT
#include "exactset.h"

#include <algorithm>

namespace mp = boost::multiprecision;

namespace
{

bool Is_Number(const std::string& text)
{
    return text.find_first_of("0123456789") != std::string::npos &&
           text.find_first_not_of("0123456789.eE+- \t\r") == std::string::npos;
}

bool Starts_With(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

TExact Sum(const std::vector<TExact>& values)
{
    TExact sum = 0;
    for (const TExact& value : values)
        sum += value;
    return sum;
}

void Compute_Volume(TExactSet* set)
{
    for (size_t axis = 0; axis < 3; ++axis) {
        std::vector<TExact> places;
        for (const TExactPosition& position : set->positions)
            places.insert(places.end(), {position.numbers[axis], position.numbers[axis + 3]});
        set->corner_min[axis] = *std::min_element(places.begin(), places.end());
        set->corner_max[axis] = *std::max_element(places.begin(), places.end());
    }
}

void Compute_Statistics(TExactSet* set)
{
    std::vector<TExact>& lengths = set->lengths;
    lengths.clear();
    lengths.reserve(set->positions.size());
    for (const TExactPosition& position : set->positions)
        lengths.push_back(position.Length());
    const TExact count = lengths.size();
    set->minimum = *std::min_element(lengths.begin(), lengths.end());
    set->maximum = *std::max_element(lengths.begin(), lengths.end());
    set->range = set->maximum - set->minimum;
    set->mean = Sum(lengths) / count;
    set->median = (set->minimum + set->maximum) / 2;

    std::vector<TExact> squares;
    squares.reserve(lengths.size());
    for (const TExact& length : lengths)
        squares.push_back((length - set->mean) * (length - set->mean));
    set->deviation = lengths.size() < 2 ? TExact(0) : TExact(mp::sqrt(Sum(squares) / (count - 1)));
    set->estimated_range = 3 * set->deviation;
}

void Complete(TExactSet* set)
{
    if (set->positions.empty())
        return;
    Compute_Volume(set);
    Compute_Statistics(set);
}

// The numbers from field `first` on; none where one of them is not a number.
std::vector<TExact> Numbers(const std::vector<std::string>& fields, size_t first)
{
    std::vector<TExact> numbers;
    for (size_t i = first; i < fields.size(); ++i) {
        if (!Is_Number(fields[i]))
            return {};
        numbers.push_back(Exact(fields[i]));
    }
    return numbers;
}

// In the older formats the centres lack the probe offset, in the oldest there are no form errors.
TExactPosition Position_Of(const std::string& name, std::vector<TExact> numbers, bool older)
{
    if (numbers.size() == 9)
        numbers.insert(numbers.begin() + 6, 2, TExact(0));
    TExactPosition position;
    position.name = name;
    std::copy(numbers.begin(), numbers.end(), position.numbers.begin());
    for (size_t i = 0; older && i < 6; ++i)
        position.numbers[i] += numbers[8 + i % 3];
    return position;
}

} // namespace

TExact TExactPosition::Length() const
{
    TExact square = 0;
    for (size_t axis = 0; axis < 3; ++axis)
        square += (numbers[axis + 3] - numbers[axis]) * (numbers[axis + 3] - numbers[axis]);
    return mp::sqrt(square);
}

TExact TExactTolerance::At(const TExact& length) const
{
    TExact tolerance = Exact(a);
    if (Exact(c) > Exact("0.1"))
        tolerance += Exact(b) * length / Exact(c);
    return d.empty() ? tolerance : (std::min)(tolerance, Exact(d));
}

TExactSet Read_Measurement(const std::string& text)
{
    const bool oldest = Starts_With(text, "BallBar_V1");
    const bool older = oldest || Starts_With(text, "BallBar_V2");
    TExactSet set;
    for (const std::string& line : Split(text, '\n')) {
        const std::vector<std::string> fields = Split(line, ',');
        if (Starts_With(line, "#") || fields.size() != (oldest ? 11 : 13))
            continue;
        const std::vector<TExact> numbers = Numbers(fields, 2);
        if (!numbers.empty())
            set.positions.push_back(Position_Of(fields[0], numbers, older));
    }
    Complete(&set);
    return set;
}

std::vector<TExactSet> Read_Backup(const std::string& text)
{
    const std::string key = "Entry:";
    std::vector<TExactSet> sets;
    for (const std::string& line : Split(text, '\n')) {
        if (Starts_With(line, "Entry_Time:"))
            sets.emplace_back();
        if (!Starts_With(line, key) || sets.empty())
            continue;
        const std::vector<std::string> fields = Split(line.substr(key.size()), ',');
        const std::vector<TExact> numbers = Numbers(fields, 1);
        if (numbers.size() != 11)
            continue;
        sets.back().positions.push_back(Position_Of(fields[0], numbers, false));
        sets.back().positions.back().texts.assign(fields.begin() + 1, fields.end());
    }
    for (TExactSet& set : sets)
        Complete(&set);
    return sets;
}

std::string Stored_Name(std::string name)
{
    const std::string lost = "'\"%*[]^\\/,:";
    const auto is_lost = [&lost](char c) { return lost.find(c) != std::string::npos; };
    name.erase(std::remove_if(name.begin(), name.end(), is_lost), name.end());
    return name;
}

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    size_t begin = 0;
    for (size_t end = text.find(separator); end != std::string::npos; end = text.find(separator, begin)) {
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

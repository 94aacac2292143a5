// SPDX-License-Identifier: MIT
#include "ballbardata.h"

#include "numbers.h"
#include "statistics.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstring>
#include <string_view>

namespace
{

constexpr std::string_view HEADER_LEGACY_V1 = "BallBar_V1";
constexpr std::string_view HEADER_LEGACY_V2 = "BallBar_V2";
constexpr std::string_view HEADER_V1 = "B89.4.1_Data:Version=1:Type=BallBar";

const QString TOO_LARGE = QStringLiteral("Input file '%1' is too large to be a ball bar measurement file.");

constexpr size_t LONGEST_LINE = 4096; // characters; with a longer name no line is a measurement
constexpr size_t MAXIMUM_NUMBER_COUNT = 11;

// What tells one measurement format from another once its lines are found.
struct TFormat
{
    std::string_view header;
    size_t number_count;      // behind the name and a field that nobody needs
    bool has_column_headings; // a line with "Name" and "Length" names the columns
    bool has_form_errors;     // two fields before the probe offset
    bool centres_need_offset; // centres were written without the probe offset
};

constexpr TFormat FORMAT_LEGACY_V1{HEADER_LEGACY_V1, 9, false, false, true};
constexpr TFormat FORMAT_LEGACY_V2{HEADER_LEGACY_V2, 11, false, true, true};
constexpr TFormat FORMAT_V1{HEADER_V1, 11, true, true, false};

constexpr char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool Same_Letter(char a, char b)
{
    return Lower(a) == Lower(b);
}

bool Starts_With(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(), Same_Letter);
}

bool Contains(std::string_view text, std::string_view word)
{
    return std::search(text.begin(), text.end(), word.begin(), word.end(), Same_Letter) != text.end();
}

std::string_view View(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

// Takes the text up to the next `end`, or all of it, off the front of `text`.
std::string_view Take_Until(char end, std::string_view* text)
{
    const size_t length = std::min(text->find(end), text->size());
    const std::string_view taken = text->substr(0, length);
    text->remove_prefix(std::min(length + 1, text->size()));
    return taken;
}

bool Take_Comma(std::string_view* text)
{
    if (text->empty() || text->front() != ',')
        return false;
    text->remove_prefix(1);
    return true;
}

// True where all white space of `text` is single blanks.
bool Is_Simple(std::string_view text)
{
    char previous = '\0';
    for (const char c : text) {
        if (Is_Blank(c) && (c != ' ' || previous == ' '))
            return false;
        previous = c;
    }
    return true;
}

// The position's name: runs of white space are one blank, and so is one before the comma.
QString Name_Of(std::string_view field)
{
    QString name = QString::fromLatin1(field.data(), static_cast<int>(field.size()));
    if (Is_Simple(field))
        return name;
    constexpr QLatin1Char END_MARK('|'); // keeps simplified() from taking the blank at the end
    QString simplified = (name + END_MARK).simplified();
    simplified.chop(1);
    return simplified;
}

// Reads a line's numbers, exactly `count`. Numbers so large that sums of their squares would overflow are no
// measurement; one of them would make every statistic of the set infinite.
bool Parse_Numbers(std::string_view text, size_t count, double* numbers)
{
    constexpr double LARGEST_NUMBER = 1e140;
    for (size_t i = 0; i < count; ++i, ++numbers) {
        if (i > 0 && !Take_Comma(&text))
            return false;
        if (!Take_Decimal(&text, numbers) || std::abs(*numbers) > LARGEST_NUMBER)
            return false;
    }
    return text.empty();
}

// Reads one data line; false for a line that is none. The second field holds nothing the set needs.
bool Parse_Line(std::string_view line, const TFormat& format, Types::TBallbar_Item* item)
{
    std::string_view rest = line;
    const std::string_view name = Take_Until(',', &rest);
    Take_Until(',', &rest);
    // Only the first two fields may hold words; with a word in any other the line is no data anyway.
    const std::string_view words = line.substr(0, line.size() - rest.size());
    if (format.has_column_headings && Contains(words, "Name") && Contains(words, "Length"))
        return false;
    std::array<double, MAXIMUM_NUMBER_COUNT> numbers{};
    if (!Parse_Numbers(rest, format.number_count, numbers.data()))
        return false;

    item->name = Name_Of(name);
    item->sph1 = {numbers[0], numbers[1], numbers[2]};
    item->sph2 = {numbers[3], numbers[4], numbers[5]};
    const double* next = numbers.data() + 6;
    item->sph1_form = format.has_form_errors ? *next++ : 0.0;
    item->sph2_form = format.has_form_errors ? *next++ : 0.0;
    item->tool = {next[0], next[1], next[2]};
    if (format.centres_need_offset) {
        item->sph1 = item->sph1 + item->tool;
        item->sph2 = item->sph2 + item->tool;
    }
    return true;
}

// The most positions that `text` can hold: its shortest line has a digit for each number, the commas and the
// line feed. Reserving that many at once keeps a large set from being held twice while the list grows; what
// is not filled takes no memory.
size_t Most_Positions(std::string_view text, size_t number_count)
{
    return std::min(text.size() / (2 * number_count + 2) + 1, TBallBarData::MAXIMUM_POSITION_COUNT + 1);
}

void Parse_Lines(const QByteArray& contents, const TFormat& format, std::vector<Types::TBallbar_Item>* items)
{
    std::string_view text = View(contents);
    items->reserve(Most_Positions(text, format.number_count));
    Types::TBallbar_Item item;
    while (!text.empty()) {
        const std::string_view line = Trimmed(Take_Until('\n', &text));
        if (line.empty() || line.front() == '#' || Starts_With(line, format.header))
            continue;
        if (line.size() > LONGEST_LINE || !Parse_Line(line, format, &item))
            continue;
        items->push_back(std::move(item));
        if (items->size() > TBallBarData::MAXIMUM_POSITION_COUNT)
            return;
    }
}

// Per axis the value that `pick` picks of the two points.
template<typename TPick> TVector3 Widened(const TVector3& corner, const TVector3& point, TPick pick)
{
    return {pick(corner.x, point.x), pick(corner.y, point.y), pick(corner.z, point.z)};
}

// The corner, for each axis the value that `pick` picks, of all sphere centres; of a non-empty set.
template<typename TPick> TVector3 Volume_Corner(const std::vector<Types::TBallbar_Item>& items, TPick pick)
{
    TVector3 corner = items.front().sph1;
    for (const Types::TBallbar_Item& item : items)
        corner = Widened(Widened(corner, item.sph1, pick), item.sph2, pick);
    return corner;
}

} // namespace

bool TBallBarData::Fail(const QString& message, const QString& path)
{
    d_last_error = message.arg(path);
    return false;
}

bool TBallBarData::Load_Data(const QString& path)
{
    Clear();
    QByteArray contents;
    if (!Read_File(path, &contents))
        return false;
    if (DetermineFileEncoding(contents) == ENCODING_BINARY)
        return Fail(QStringLiteral("Input file '%1' appears to be binary and is not supported."), path);

    bool loaded = false;
    switch (DetermineAsciiFileContents(contents)) {
    case CONTENTS_LEGACY_V1:
        loaded = Load_Data_Legacy_V1(contents);
        break;
    case CONTENTS_LEGACY_V2:
        loaded = Load_Data_Legacy_V2(contents);
        break;
    case CONTENTS_V1:
        loaded = Load_Data_V1(contents);
        break;
    case CONTENTS_UNKNOWN:
        return Fail(QStringLiteral("Input file '%1' is not recognized as a ball bar measurement file."),
                    path);
    }
    if (d_ballbar_items.size() > MAXIMUM_POSITION_COUNT) {
        Clear();
        return Fail(TOO_LARGE, path);
    }
    if (loaded)
        Update_Stats();
    return loaded;
}

bool TBallBarData::Read_File(const QString& path, QByteArray* contents)
{
    const QString cannot_open = QStringLiteral("Cannot open file '%1'");
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return Fail(cannot_open, path);
    if (file.size() > MAXIMUM_FILE_SIZE)
        return Fail(TOO_LARGE, path);
    *contents = file.read(file.size()); // and no more, should it be growing
    if (file.error() != QFileDevice::NoError)
        return Fail(cannot_open, path);
    return true;
}

void TBallBarData::Clear()
{
    d_ballbar_items.clear();
    Update_Stats();
}

void TBallBarData::Add_Ballbar(const Types::TBallbar_Item& item)
{
    d_ballbar_items.push_back(item);
}

void TBallBarData::Update_Stats()
{
    const TStatistics statistics = Length_Statistics(d_ballbar_items);
    d_minimum_length = statistics.minimum;
    d_maximum_length = statistics.maximum;
    d_mean_length = statistics.mean;
    d_median_length = statistics.median;
    d_stdev_length = statistics.standard_deviation;
}

Types::TBallbar_Item TBallBarData::Ballbar_Item(int index) const
{
    assert(static_cast<unsigned int>(index) < d_ballbar_items.size());
    return d_ballbar_items[static_cast<unsigned int>(index)];
}

int TBallBarData::Ballbar_Item_Count() const
{
    return static_cast<int>(d_ballbar_items.size());
}

TVector3 TBallBarData::Volume_Corner_Min() const
{
    if (d_ballbar_items.empty())
        return {-100.0, -100.0, -100.0};
    return Volume_Corner(d_ballbar_items, [](double a, double b) { return std::min(a, b); });
}

TVector3 TBallBarData::Volume_Corner_Max() const
{
    if (d_ballbar_items.empty())
        return {100.0, 100.0, 100.0};
    return Volume_Corner(d_ballbar_items, [](double a, double b) { return std::max(a, b); });
}

TBallBarData::TFileEncoding TBallBarData::DetermineFileEncoding(const QByteArray& contents) const
{
    // As signed characters all bytes from 128 on are negative: accented letters are refused like controls.
    // Without branches the loop takes many bytes at a time.
    signed char refused = 0;
    for (const char byte : contents) {
        const auto c = static_cast<signed char>(byte);
        refused |= static_cast<signed char>((c < 32) & (c != 9) & (c != 10) & (c != 11) & (c != 13));
    }
    return refused == 0 ? ENCODING_ASCII : ENCODING_BINARY;
}

TBallBarData::TFileContents TBallBarData::DetermineAsciiFileContents(const QByteArray& contents) const
{
    std::string_view text = View(contents);
    text = text.substr(0, text.find('\0'));
    if (text.size() < 11)
        return CONTENTS_UNKNOWN;

    text = Trimmed(text);
    const std::string_view first_line = Take_Until('\n', &text);
    if (Starts_With(first_line, HEADER_LEGACY_V1))
        return CONTENTS_LEGACY_V1;
    if (Starts_With(first_line, HEADER_LEGACY_V2))
        return CONTENTS_LEGACY_V2;
    if (Starts_With(first_line, HEADER_V1))
        return CONTENTS_V1;
    return CONTENTS_UNKNOWN;
}

bool TBallBarData::Load_Data_Legacy_V1(const QByteArray& contents)
{
    Parse_Lines(contents, FORMAT_LEGACY_V1, &d_ballbar_items);
    return true;
}

bool TBallBarData::Load_Data_Legacy_V2(const QByteArray& contents)
{
    Parse_Lines(contents, FORMAT_LEGACY_V2, &d_ballbar_items);
    return true;
}

bool TBallBarData::Load_Data_V1(const QByteArray& contents)
{
    Parse_Lines(contents, FORMAT_V1, &d_ballbar_items);
    return true;
}

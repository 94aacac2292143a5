// SPDX-License-Identifier: MIT
#include "numbers.h"

#include <QByteArray>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

namespace
{

// The magnitude did not fit: Qt tells an underflow (0) from an overflow (infinity), from_chars does not.
bool Parse_Out_Of_Range(std::string_view text, double* value)
{
    const double limit = QByteArray(text.data(), static_cast<int>(text.size())).toDouble();
    if (!std::isfinite(limit))
        return false;
    *value = limit;
    return true;
}

std::string_view Without_Leading_Blanks(std::string_view text)
{
    while (!text.empty() && Is_Blank(text.front()))
        text.remove_prefix(1);
    return text;
}

} // namespace

std::string_view Trimmed(std::string_view text)
{
    text = Without_Leading_Blanks(text);
    while (!text.empty() && Is_Blank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool Take_Decimal(std::string_view* text, double* value)
{
    const std::string_view start = Without_Leading_Blanks(*text);
    std::string_view digits = start;
    if (!digits.empty() && (digits.front() == '+' || digits.front() == '-'))
        digits.remove_prefix(1);
    // What from_chars would take besides decimal numbers ("inf", "nan", a second sign) starts otherwise.
    if (digits.empty() || !(digits.front() == '.' || (digits.front() >= '0' && digits.front() <= '9')))
        return false;

    const char* begin = start.front() == '+' ? digits.data() : start.data();
    double number = 0.0;
    const auto [stop, error] = std::from_chars(begin, start.data() + start.size(), number);
    const auto length = static_cast<size_t>(stop - start.data());
    if (error == std::errc::invalid_argument ||
        (error == std::errc::result_out_of_range && !Parse_Out_Of_Range(start.substr(0, length), &number)))
        return false;
    *text = Without_Leading_Blanks(start.substr(length));
    *value = number;
    return true;
}

bool Parse_Decimal(std::string_view text, double* value)
{
    double number = 0.0;
    if (!Take_Decimal(&text, &number) || !text.empty())
        return false;
    *value = number;
    return true;
}

bool Parse_Decimal(const QString& text, double* value)
{
    // Characters outside Latin-1 become '?', which no number holds.
    const QByteArray bytes = text.toLatin1();
    return Parse_Decimal(std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())), value);
}

double Decimal_Or(const QString& text, double fallback)
{
    Parse_Decimal(text, &fallback);
    return fallback;
}

QString Fixed(double value, int decimals, int width)
{
    QString text;
    Append_Fixed(&text, value, decimals);
    return text.rightJustified(width);
}

// What QString::number() writes, in a third of the time: the value in units of the last decimal, rounded to a
// whole one. The product is off by less than 2^-10 units as long as it is below 2^43; where that could decide
// how it is rounded, Qt writes the number.
void Append_Fixed(QString* text, double value, int decimals)
{
    constexpr std::uint64_t POWERS_OF_TEN[] = {1, 10, 100, 1000, 10000, 100000};
    constexpr double LARGEST = 8796093022208.0; // 2^43
    constexpr double TOO_CLOSE = 1.0 / 512.0;
    const std::uint64_t unit = decimals >= 0 && decimals <= 5 ? POWERS_OF_TEN[decimals] : 0;
    const double units = std::abs(value) * static_cast<double>(unit);
    if (unit == 0 || !(units < LARGEST) || std::abs(units - std::floor(units) - 0.5) < TOO_CLOSE) {
        text->append(QString::number(value, 'f', decimals));
        return;
    }
    const auto rounded = static_cast<std::uint64_t>(std::llround(units));
    char digits[24] = "-";
    char* const begin = value < 0.0 ? digits + 1 : digits;
    char* end = std::to_chars(begin, std::end(digits), rounded / unit).ptr;
    if (decimals > 0) {
        char* const point = end;
        end = std::to_chars(point, std::end(digits), unit + rounded % unit).ptr; // a 1 and all decimals
        *point = '.';
    }
    text->append(QLatin1String(digits, static_cast<int>(end - digits)));
}

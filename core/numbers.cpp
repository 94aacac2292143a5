// SPDX-License-Identifier: MIT
#include "numbers.h"

#include <QByteArray>

#include <charconv>
#include <cmath>

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

} // namespace

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && Is_Blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && Is_Blank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool Parse_Decimal(std::string_view text, double* value)
{
    text = Trimmed(text);
    std::string_view digits = text;
    if (!digits.empty() && (digits.front() == '+' || digits.front() == '-'))
        digits.remove_prefix(1);
    // What from_chars would take besides decimal numbers ("inf", "nan", a second sign) starts otherwise.
    if (digits.empty() || !(digits.front() == '.' || (digits.front() >= '0' && digits.front() <= '9')))
        return false;

    const char* begin = text.front() == '+' ? digits.data() : text.data();
    const char* end = text.data() + text.size();
    double number = 0.0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (stop != end || error == std::errc::invalid_argument)
        return false;
    if (error == std::errc::result_out_of_range)
        return Parse_Out_Of_Range(text, value);
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

// Writes what QString::number() does, in half the time. The two round differently where a value lies halfway
// between two texts, and only a multiple of 2^-(decimals + 1) can. Such values are left to Qt, and so is 0,
// which is one of them: Qt drops its sign.
void Append_Fixed(QString* text, double value, int decimals)
{
    const double multiple = std::ldexp(value, decimals + 1);
    if (std::floor(multiple) < multiple) {
        char digits[400]; // the largest double has 309 of them before the point
        const auto [end, error] =
            std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
        if (error == std::errc()) {
            text->append(QLatin1String(digits, static_cast<int>(end - digits)));
            return;
        }
    }
    text->append(QString::number(value, 'f', decimals));
}

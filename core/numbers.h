// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string_view>

/// True for the characters that count as white space in measurement files: blank, tab, line feed,
/// vertical tab, form feed and carriage return.
constexpr bool Is_Blank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// `text` without the white space at both ends.
std::string_view Trimmed(std::string_view text);

/// Reads a decimal number: point as separator in any locale, leading sign and exponent allowed, surrounding
/// blanks ignored. Returns false and leaves `value` alone for everything else: empty text, "nan", "inf",
/// hexadecimal, and numbers too large for a double. A number too small for a double reads as 0.
bool Parse_Decimal(std::string_view text, double* value);

/// The same for a text of the interface or of a file.
bool Parse_Decimal(const QString& text, double* value);

/// Reads such a number, with the blanks around it, off the front of a text. Returns false and leaves both
/// alone where the text does not start with one.
bool Take_Decimal(std::string_view* text, double* value);

/// The decimal number in `text`, or `fallback` where there is none.
double Decimal_Or(const QString& text, double fallback);

/// `value` in fixed notation with `decimals` decimals and a point as separator in any locale, padded with
/// blanks on the left to at least `width` characters.
QString Fixed(double value, int decimals, int width = 0);
/// Appends such a text, not padded, to another: the quickest way to a line of many numbers.
void Append_Fixed(QString* text, double value, int decimals);

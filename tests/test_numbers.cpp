// SPDX-License-Identifier: MIT
#include "numbers.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

TEST(Numbers, DecimalTexts)
{
    const struct
    {
        const char* text;
        bool valid;
    } rows[] = {
        {"1.25", true},
        {"+1.25", true},
        {"-.5", true},
        {"5.", true},
        {" \t12 ", true},
        {"1e-3", true},
        {"1E+3", true},
        {"1e-400", true},
        {"-1e-400", true},
        {"5e-324", true},
        {"-0", true},
        {"0012", true},
        {"0.1000000000000000055511151231257827", true},
        {"", false},
        {"  ", false},
        {".", false},
        {"+", false},
        {"1.2.3", false},
        {"1e", false},
        {"1 2", false},
        {"nan", false},
        {"-nan", false},
        {"inf", false},
        {"Infinity", false},
        {"0x10", false},
        {"1e309", false},
        {"-1e400", false},
        {"1,5", false},
        {"+-1", false},
        {"--1", false},
        {"1f", false},
        {"mm", false},
    };
    for (const auto& row : rows) {
        double value = 42.0;
        ASSERT_EQ(Parse_Decimal(std::string_view(row.text), &value), row.valid) << row.text;
        const double expected = row.valid ? QString::fromLatin1(row.text).toDouble() : 42.0;
        EXPECT_EQ(std::memcmp(&value, &expected, sizeof value), 0) << row.text << " reads as " << value;
    }
    EXPECT_EQ(Decimal_Or(QString::fromUtf8("١٢"), 7.0), 7.0);
    EXPECT_EQ(Decimal_Or(QStringLiteral(" 2.5 "), 7.0), 2.5);
}

TEST(Numbers, FixedTexts)
{
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(Fixed(500.0123, 4, 10), QStringLiteral("  500.0123"));
    EXPECT_EQ(Fixed(-0.00314, 4), QStringLiteral("-0.0031"));
    EXPECT_EQ(Fixed(123456789.5, 4, 10), QStringLiteral("123456789.5000"));
    EXPECT_EQ(Fixed(0.03125, 4), QStringLiteral("0.0313"));
    QLocale::setDefault(QLocale::c());
}

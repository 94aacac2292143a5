// SPDX-License-Identifier: MIT
#include "numbers.h"
#include "testing.h"

#include <cmath>
#include <cstring>

TEST(Numbers, DecimalTexts)
{
    // clang-format off
    const char* const valid[] = {"1.25", "+1.25", "-.5", "5.", " \t12 ", "1e-3", "1E+3", "1e-400", "-1e-400", "5e-324",
                                 "-0", "0012", "0.1000000000000000055511151231257827"};
    const char* const invalid[] = {"", "  ", ".", "+", "1.2.3", "1e", "1 2", "nan", "-nan", "inf", "Infinity", "0x10",
                                   "1e309", "-1e400", "1,5", "+-1", "--1", "1f", "mm", "١٢"};
    // clang-format on
    for (const char* text : valid) {
        const double expected = QString(text).toDouble();
        const double value = Decimal_Or(text, 42.0);
        EXPECT_EQ(std::memcmp(&value, &expected, sizeof value), 0) << text << " reads as " << value;
    }
    for (const char* text : invalid)
        EXPECT_EQ(Decimal_Or(text, 42.0), 42.0) << text;
}

TEST(Numbers, FixedTexts)
{
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(Fixed(500.0123, 4, 10) + Fixed(-0.00314, 4) + Fixed(0.03125, 4), "  500.0123-0.00310.0313");
    EXPECT_EQ(Fixed(123456789.5, 4, 10), "123456789.5000");
    QLocale::setDefault(QLocale::c());
    for (const double value : {0.0, -0.0, -1e-9, 0.015625, -0.046875, 2.5, 0.3, 1.000005, -999.99999951, 1e9,
                               -1e300 / 3, std::nan(""), -HUGE_VAL})
        for (const int decimals : {0, 4, 5, 6})
            EXPECT_EQ(Fixed(value, decimals), QString::number(value, 'f', decimals));
}

// SPDX-License-Identifier: MIT
// Compares our reading of decimal numbers with Qt's over ten million generated texts, to the bit.
#include "numbers.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>

namespace
{

std::mt19937_64 generator(20260101);

int Random(int count)
{
    return static_cast<int>(generator() % static_cast<unsigned>(count));
}

QByteArray Random_Digits(int most)
{
    QByteArray digits;
    for (int i = Random(most + 1); i > 0; --i)
        digits += static_cast<char>('0' + Random(10));
    return digits;
}

/// A number as people and programs write them, most often a coordinate.
QByteArray Random_Text()
{
    const char* const signs[] = {"", "", "-", "+"};
    QByteArray text = signs[Random(4)];
    switch (Random(4)) {
    case 0: // a coordinate
        return text + QByteArray::number(Random(3000)) + '.' + Random_Digits(5);
    case 1: // any double, with more or fewer digits than it needs
    {
        const std::uint64_t bits = generator();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        return std::isfinite(value) ? QByteArray::number(value, "efg"[Random(3)], Random(25)) : text + '1';
    }
    case 2: // long runs of digits
        text += Random_Digits(40) + '.' + Random_Digits(40);
        break;
    default:
        text += Random_Digits(20) + (Random(2) != 0 ? "." : "") + Random_Digits(20);
    }
    if (Random(2) != 0)
        text += "eE"[Random(2)] + QByteArray(signs[Random(4)]) + QByteArray::number(Random(340));
    return text;
}

/// True where both read `text` alike: the same verdict and the same bits. What underflows is 0 to us and an
/// error with the value 0 to Qt.
bool Same(const QByteArray& text)
{
    bool qt_valid = false;
    const double qt_value = QString::fromLatin1(text).toDouble(&qt_valid);
    double value = 0.0;
    const bool valid =
        Parse_Decimal(std::string_view(text.constData(), static_cast<size_t>(text.size())), &value);
    if (qt_valid && !valid)
        return false;
    return !valid || std::memcmp(&value, &qt_value, sizeof value) == 0;
}

} // namespace

int main()
{
    constexpr int count = 10000000;
    int different = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray text = Random_Text();
        if (!Same(text)) {
            ++different;
            std::printf("differs: '%s'\n", text.constData());
        }
    }
    std::printf("%d number texts, %d read differently\n", count, different);
    return different == 0 ? 0 : 1;
}

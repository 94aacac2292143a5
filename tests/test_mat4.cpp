// SPDX-License-Identifier: MIT
#include "mat4.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace
{

const double PI = std::acos(-1.0);

void Expect_Near(const TVector3& v, const TVector3& expected)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(v(i), expected(i), 1e-12) << "component " << i;
}

void Expect_Equal(const TMat4& m, const std::vector<double>& expected)
{
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(m(i), expected[static_cast<size_t>(i)]) << "element " << i;
}

const std::vector<double> COUNTED{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

} // namespace

TEST(Mat4, ElementsAndTransposition)
{
    TMat4 m;
    Expect_Equal(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    m.Set(COUNTED.data());
    Expect_Equal(m, COUNTED);
    m.Transpose();
    Expect_Equal(m, {1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16});
    m.Transpose();
    Expect_Equal(m, COUNTED);
    m.Identity();
    m(7) = 2.5;
    Expect_Near(m * TVector3(1, 2, 3), {1, 4.5, 3});
    EXPECT_DEATH(m(16), "index < 16");
}

TEST(Mat4, ProductAppliesTheRightHandLast)
{
    TMat4 shift;
    shift(3) = 10.0;
    TMat4 stretch;
    stretch(0) = 2.0;
    EXPECT_EQ((shift * stretch)(3), 20.0);
    EXPECT_EQ((stretch * shift)(3), 10.0);

    TMat4 m(COUNTED.data());
    const TMat4 returned = m *= shift; // row 0 gains ten times row 3
    Expect_Equal(m, {131, 142, 153, 164, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    Expect_Equal(returned, {131, 142, 153, 164, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    TMat4& same = m;
    m *= same;
    EXPECT_EQ(m(0), 131.0);
}

TEST(Mat4, NormalTouchesOnlyTheRotation)
{
    TMat4 m(COUNTED.data());
    m.Normal();
    for (int row = 0; row < 12; row += 4)
        EXPECT_NEAR(std::hypot(m(row), m(row + 1), m(row + 2)), 1.0, 1e-15);
    EXPECT_NEAR(m(4) / m(6), 5.0 / 7.0, 1e-15);
    EXPECT_EQ(m(3) + m(7) + m(11), 4.0 + 8.0 + 12.0);
    EXPECT_EQ(m(13), 14.0);
}

TEST(Mat4, RotationSense)
{
    // Each turn by a quarter about the axis takes `from` to `to`, minus the right-hand sense.
    const struct
    {
        TVector3 axis, from, to;
    } rows[] = {
        {{0, 0, 1}, {1, 0, 0}, {0, -1, 0}},
        {{1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
        {{0, 1, 0}, {0, 0, 1}, {-1, 0, 0}},
    };
    for (const auto& row : rows) {
        TMat4 m;
        m.Rotate(row.axis, PI / 2);
        Expect_Near(m * row.from, row.to);
    }
    TMat4 zero_axis;
    zero_axis.Rotate(TVector3(), PI / 3);
    Expect_Near(zero_axis * TVector3(2, 4, 6), {1, 2, 3});
}

TEST(Mat4, EulerIsTiltBetweenTwoTurns)
{
    TMat4 euler;
    euler.Rotate(0.3, 0.5, 0.7);
    TMat4 turns;
    turns.Rotate(TVector3(0, 0, 1), 0.5);
    turns.Rotate(TVector3(1, 0, 0), 0.3);
    turns.Rotate(TVector3(0, 0, 1), 0.7);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(euler(i), turns(i), 1e-15) << "element " << i;
}

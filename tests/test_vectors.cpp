// SPDX-License-Identifier: MIT
#include "vector2.h"
#include "vector3.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

void Expect_Equal(const TVector2& v, double x, double y)
{
    EXPECT_DOUBLE_EQ(v.x, x);
    EXPECT_DOUBLE_EQ(v.y, y);
}

void Expect_Equal(const TVector3& v, double x, double y, double z)
{
    EXPECT_DOUBLE_EQ(v.x, x);
    EXPECT_DOUBLE_EQ(v.y, y);
    EXPECT_DOUBLE_EQ(v.z, z);
}

} // namespace

TEST(Vectors, Operators)
{
    const TVector2 a(5, 7);
    Expect_Equal(2.0 - a, 3, 5); // a scalar on the left is subtracted all the same
    Expect_Equal(a - 2.0, 3, 5);
    Expect_Equal(2.0 + a, 7, 9);
    Expect_Equal(a - TVector2(1, 2), 4, 5);
    Expect_Equal(2.0 * a / 4.0, 2.5, 3.5);
    EXPECT_DOUBLE_EQ(a ^ TVector2(2, 3), 31);

    const TVector3 u(1, 2, 3);
    const TVector3 v(4, 5, 6);
    Expect_Equal(u * v, -3, 6, -3);
    Expect_Equal(10.0 - u, -9, -8, -7);
    Expect_Equal(u - 10.0, -9, -8, -7);
    Expect_Equal(1.0 + u + v, 6, 8, 10);
    Expect_Equal(v - u * 2.0, 2, 1, 0);
    Expect_Equal(v / 2.0, 2, 2.5, 3);
    EXPECT_DOUBLE_EQ(u ^ v, 32);
    EXPECT_DOUBLE_EQ(Length(TVector3(2, -3, 6)), 7);
}

TEST(Vectors, InPlace)
{
    TVector3 v(1, 2, 3);
    v *= v;
    Expect_Equal(v, 1, 2, 3);
    TVector3 w(2, 4, 8);
    w /= w.x; // a component as its own vector's divisor
    Expect_Equal(w, 1, 2, 4);
    TVector3 n(3, 0, 4);
    EXPECT_EQ(&n.Normal(), &n);
    Expect_Equal(n, 0.6, 0, 0.8);
    TVector2 m(-3, 4);
    Expect_Equal(m.Normal(), -0.6, 0.8);
    v(1) = 9;
    EXPECT_EQ(v.y, 9);
    const TVector3 c = v;
    EXPECT_EQ(c(0) + c(1) + c(2), 13);
}

TEST(VectorsDeathTest, Misuse)
{
    TVector2 a(1, 1);
    TVector3 v(1, 1, 1);
    const TVector3 c(v);
    EXPECT_DEATH(a(2), "false");
    EXPECT_DEATH(v(3), "false");
    EXPECT_DEATH(c(-1), "false");
    EXPECT_DEATH(TVector3().Normal(), "Length > std::numeric_limits<double>::epsilon\\(\\)");
    EXPECT_DEATH(TVector2(1e-17, 0).Normal(), "Length > std::numeric_limits<double>::epsilon\\(\\)");
    EXPECT_DEATH(v / -1.0, "d > std::numeric_limits<double>::epsilon\\(\\)");
    EXPECT_DEATH(a /= 0.0, "d > std::numeric_limits<double>::epsilon\\(\\)");
}

TEST(Vectors, PointInTriangle)
{
    const TVector2 a(0, 0);
    const TVector2 b(4, 0);
    const TVector2 c(0, 4);
    const struct
    {
        TVector2 point;
        bool inside;
    } rows[] = {
        {{1, 1}, true},  {{2, 2}, true},  {{0, 0}, false},  {{2, 0}, false},
        {{0, 2}, false}, {{3, 3}, false}, {{-1, 1}, false}, {{1, -1}, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TVector2::Is_Point_In_Triangle(row.point, a, b, c), row.inside)
            << row.point.x << "," << row.point.y;
        EXPECT_EQ(TVector2::Is_Point_In_Triangle(row.point, a, c, b), row.inside)
            << row.point.x << "," << row.point.y;
    }
}

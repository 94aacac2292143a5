// SPDX-License-Identifier: MIT
#include "vector2.h"
#include "vector3.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using TList = std::vector<double>;

TList List(const TVector2& v)
{
    return {v.x, v.y};
}

TList List(const TVector3& v)
{
    return {v.x, v.y, v.z};
}

} // namespace

TEST(Vectors, Arithmetic)
{
    const TVector2 a(5, 7);
    const TVector3 u(1, 2, 3);
    const TVector3 v(4, 5, 6);
    const struct
    {
        TList result, expected;
    } rows[] = {
        {List(2.0 - a), {3, 5}}, // a scalar on the left is subtracted all the same
        {List(a - 2.0), {3, 5}},
        {List(2.0 + a), {7, 9}},
        {List(a - TVector2(1, 2)), {4, 5}},
        {List(2.0 * a / 4.0), {2.5, 3.5}},
        {List(u * v), {-3, 6, -3}},
        {List(10.0 - u), {-9, -8, -7}},
        {List(1.0 + u + v), {6, 8, 10}},
        {List(v - u * 2.0), {2, 1, 0}},
        {List(v / 2.0), {2, 2.5, 3}},
        {List(TVector3(3, 0, 4).Normal()), {3.0 / 5, 0, 4.0 / 5}},
        {List(TVector2(-3, 4).Normal()), {-3.0 / 5, 4.0 / 5}},
        {{a ^ TVector2(2, 3), u ^ v, Length(TVector3(2, -3, 6))}, {31, 32, 7}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.result, row.expected);

    TVector3 w(2, 4, 8);
    w *= w; // the same object: unchanged
    w /= w.x;
    w(1) = 9;
    EXPECT_EQ(List(w), (TList{1, 9, 4}));
    const TVector3 constant = w;
    EXPECT_EQ(constant(0) + constant(1) + constant(2), 14);
}

TEST(VectorsDeathTest, Misuse)
{
    TVector2 a(1, 1);
    const TVector3 v(1, 1, 1);
    EXPECT_DEATH(a(2), "false");
    EXPECT_DEATH(v(3), "false");
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
    } rows[] = {{{1, 1}, true},  {{2, 2}, true},  {{0, 0}, false},  {{2, 0}, false},
                {{0, 2}, false}, {{3, 3}, false}, {{-1, 1}, false}, {{1, -1}, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(TVector2::Is_Point_In_Triangle(row.point, a, b, c), row.inside)
            << row.point.x << row.point.y;
        EXPECT_EQ(TVector2::Is_Point_In_Triangle(row.point, a, c, b), row.inside)
            << row.point.x << row.point.y;
    }
}

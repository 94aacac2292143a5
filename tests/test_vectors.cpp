// SPDX-License-Identifier: MIT
#include "mat4.h"
#include "testing.h"
#include "vector2.h"

#include <cmath>

using TList = std::vector<double>;

/// The components of a vector of either kind.
template<typename TVector> TList List(const TVector& v)
{
    return {&v.x, &v.x + sizeof v / sizeof v.x};
}

TEST(Vectors, Arithmetic)
{
    const TVector2 a(5, 7);
    const TVector3 u(1, 2, 3), v(4, 5, 6);
    TVector3 w(2, 4, 8);
    w *= w; // the same object: unchanged
    w /= w.x;
    w(1) = 9;
    const std::pair<TList, TList> rows[] = {
        {List(2.0 - a), {3, 5}}, // a scalar on the left is subtracted all the same
        {List(10.0 - u), {-9, -8, -7}},
        {List(2.0 + (a - 2.0) + TVector2(1, 2)), {6, 9}},
        {List(2.0 * (a - TVector2(1, 2)) / 4.0), {2, 2.5}},
        {List(u * v), {-3, 6, -3}},
        {List(1.0 + u + v / 2.0 - u * 2.0), {2, 1.5, 1}},
        {List(TVector3(3, 0, 4).Normal()), {3.0 / 5, 0, 4.0 / 5}},
        {List(TVector2(-3, 4).Normal()), {-3.0 / 5, 4.0 / 5}},
        {{a ^ TVector2(2, 3), u ^ v, TVector3(2, -3, 6).Length()}, {31, 32, 7}},
        {List(w), {1, 9, 4}},
        {{a(0), a(1), u(0), u(1), u(2)}, {5, 7, 1, 2, 3}},
    };
    for (const auto& [result, expected] : rows)
        EXPECT_EQ(result, expected);
    EXPECT_DEATH(TVector3().Normal(), "epsilon");
}

TEST(Vectors, PointInTriangle)
{
    const TVector2 a(0, 0), b(4, 0), c(0, 4);
    for (const TVector2& p : {TVector2(1, 1), {2, 2}, {0, 0}, {2, 0}, {0, 2}, {3, 3}, {-1, 1}, {1, -1}}) {
        const bool inside = p.x > 0 && p.y > 0 && p.x < 3;
        EXPECT_EQ(TVector2::Is_Point_In_Triangle(p, a, b, c), inside) << p.x << ", " << p.y;
        EXPECT_EQ(TVector2::Is_Point_In_Triangle(p, a, c, b), inside) << p.x << ", " << p.y;
    }
}

TEST(Mat4, RotatesAgainstTheRightHand)
{
    const double third = 2 * std::acos(-1.0) / 3;
    TMat4 oblique; // a third of a turn about the diagonal takes z to y
    oblique.Rotate(TVector3(1, 1, 1).Normal(), third);
    EXPECT_NEAR((oblique * TVector3(1, 2, 3) - TVector3(2, 3, 1)).Length(), 0.0, 1e-14);
    TMat4 euler, turns;
    euler.Rotate(0.3, 0.5, 0.7);
    for (const auto& [axis, angle] : {std::pair(TVector3(0, 0, 1), 0.5), {{1, 0, 0}, 0.3}, {{0, 0, 1}, 0.7}})
        turns.Rotate(axis, angle);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(euler(i), turns(i), 1e-15) << "element " << i;
    TMat4 same(turns);
    same *= same;
    EXPECT_EQ(same(0), turns(0)); // never squares itself
    TMat4 moved;                  // applied after the rotation, in that order
    moved(3) = 5;
    EXPECT_NEAR((oblique * moved * TVector3(1, 2, 3) - TVector3(7, 3, 1)).Length(), 0.0, 1e-14);
}

// SPDX-License-Identifier: MIT
#pragma once

/// A point or direction in the plane; carries no unit of its own.
class TVector2
{
public:
    double x{0.0};
    double y{0.0};

    TVector2() = default;
    TVector2(const double& x_value, const double& y_value) : x(x_value), y(y_value) {}

    /// Component 0 (x) or 1 (y); any other index is a programming error (assertion).
    double operator()(int index) const;
    double& operator()(int index);

    /// Divides the vector in place by its Euclidean length, which must exceed the double epsilon (assertion).
    TVector2& Normal();

    /// Divides each component by d, which must exceed the double epsilon: a negative divisor fails too.
    TVector2& operator/=(const double& d);

    /// Barycentric test that does not depend on the triangle's orientation. The edges a-b and a-c are
    /// outside, the edge b-c is inside.
    static bool Is_Point_In_Triangle(const TVector2& p, const TVector2& a, const TVector2& b,
                                     const TVector2& c);
};

/// Dot product.
double operator^(const TVector2& a, const TVector2& b);

TVector2 operator*(const TVector2& v, const double& d);
TVector2 operator*(const double& d, const TVector2& v);
TVector2 operator/(const TVector2& v, const double& d);
TVector2 operator+(const TVector2& a, const TVector2& b);
TVector2 operator-(const TVector2& a, const TVector2& b);
TVector2 operator+(const TVector2& v, const double& d);
TVector2 operator+(const double& d, const TVector2& v);
TVector2 operator-(const TVector2& v, const double& d);

/// The same as v - d: the scalar is taken from every component whichever side it stands on.
TVector2 operator-(const double& d, const TVector2& v);

// SPDX-License-Identifier: MIT
#pragma once

/// A point or direction in space; millimetres where it holds measured data, otherwise without a unit.
class TVector3
{
public:
    double x{0.0};
    double y{0.0};
    double z{0.0};

    constexpr TVector3() = default;
    constexpr TVector3(const double& x_value, const double& y_value, const double& z_value)
        : x(x_value), y(y_value), z(z_value)
    {
    }

    /// Component 0 (x), 1 (y) or 2 (z); any other index is a programming error (assertion).
    double operator()(int index) const;
    double& operator()(int index);

    /// The Euclidean length.
    double Length() const;

    /// Divides the vector in place by its length, which must exceed the double epsilon (assertion).
    TVector3& Normal();

    /// Replaces this vector by the cross product this x o. A vector multiplied by itself stays unchanged.
    TVector3& operator*=(const TVector3& o);

    /// Divides each component by d, which must exceed the double epsilon: a negative divisor fails too.
    TVector3& operator/=(const double& d);
};

/// Dot product.
double operator^(const TVector3& a, const TVector3& b);

/// Cross product a x b (right-handed).
TVector3 operator*(const TVector3& a, const TVector3& b);

TVector3 operator*(const TVector3& v, const double& d);
TVector3 operator*(const double& d, const TVector3& v);
TVector3 operator/(const TVector3& v, const double& d);
TVector3 operator+(const TVector3& a, const TVector3& b);
TVector3 operator-(const TVector3& a, const TVector3& b);
TVector3 operator+(const TVector3& v, const double& d);
TVector3 operator+(const double& d, const TVector3& v);
TVector3 operator-(const TVector3& v, const double& d);

/// The same as v - d: the scalar is taken from every component whichever side it stands on.
TVector3 operator-(const double& d, const TVector3& v);

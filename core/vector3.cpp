// SPDX-License-Identifier: MIT
#include "vector3.h"

#include <cassert>
#include <cmath>
#include <limits>

double TVector3::operator()(int index) const
{
    return const_cast<TVector3&>(*this)(index); // which changes nothing by itself
}

double& TVector3::operator()(int index)
{
    switch (index) {
    case 0:
        return x;
    case 1:
        return y;
    case 2:
        return z;
    default:
        assert(false);
        return z;
    }
}

double TVector3::Length() const
{
    return std::sqrt(*this ^ *this);
}

TVector3& TVector3::Normal()
{
    const double Length = this->Length();
    assert(Length > std::numeric_limits<double>::epsilon());
    x /= Length;
    y /= Length;
    z /= Length;
    return *this;
}

TVector3& TVector3::operator*=(const TVector3& o)
{
    if (this != &o)
        *this = {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    return *this;
}

TVector3& TVector3::operator/=(const double& d)
{
    assert(d > std::numeric_limits<double>::epsilon());
    const double divisor = d; // d may be one of the components
    x /= divisor;
    y /= divisor;
    z /= divisor;
    return *this;
}

double operator^(const TVector3& a, const TVector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

TVector3 operator*(const TVector3& a, const TVector3& b)
{
    TVector3 product(a);
    return product *= b;
}

TVector3 operator*(const TVector3& v, const double& d)
{
    return {v.x * d, v.y * d, v.z * d};
}

TVector3 operator*(const double& d, const TVector3& v)
{
    return v * d;
}

TVector3 operator/(const TVector3& v, const double& d)
{
    TVector3 quotient(v);
    return quotient /= d;
}

TVector3 operator+(const TVector3& a, const TVector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

TVector3 operator-(const TVector3& a, const TVector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

TVector3 operator+(const TVector3& v, const double& d)
{
    return {v.x + d, v.y + d, v.z + d};
}

TVector3 operator+(const double& d, const TVector3& v)
{
    return v + d;
}

TVector3 operator-(const TVector3& v, const double& d)
{
    return {v.x - d, v.y - d, v.z - d};
}

TVector3 operator-(const double& d, const TVector3& v)
{
    return v - d;
}

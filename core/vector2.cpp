// SPDX-License-Identifier: MIT
#include "vector2.h"

#include <cassert>
#include <cmath>
#include <limits>

double TVector2::operator()(int index) const
{
    return const_cast<TVector2&>(*this)(index); // which changes nothing by itself
}

double& TVector2::operator()(int index)
{
    switch (index) {
    case 0:
        return x;
    case 1:
        return y;
    default:
        assert(false);
        return y;
    }
}

TVector2& TVector2::Normal()
{
    const double Length = std::sqrt(*this ^ *this);
    assert(Length > std::numeric_limits<double>::epsilon());
    x /= Length;
    y /= Length;
    return *this;
}

TVector2& TVector2::operator/=(const double& d)
{
    assert(d > std::numeric_limits<double>::epsilon());
    const double divisor = d; // d may be one of the components
    x /= divisor;
    y /= divisor;
    return *this;
}

bool TVector2::Is_Point_In_Triangle(const TVector2& p, const TVector2& a, const TVector2& b,
                                    const TVector2& c)
{
    double s = a.y * c.x - a.x * c.y + (c.y - a.y) * p.x + (a.x - c.x) * p.y;
    double t = a.x * b.y - a.y * b.x + (a.y - b.y) * p.x + (b.x - a.x) * p.y;
    if ((s < 0) != (t < 0))
        return false;

    double area = -b.y * c.x + a.y * (c.x - b.x) + a.x * (b.y - c.y) + b.x * c.y;
    if (area < 0) {
        s = -s;
        t = -t;
        area = -area;
    }
    return s > 0 && t > 0 && s + t <= area;
}

double operator^(const TVector2& a, const TVector2& b)
{
    return a.x * b.x + a.y * b.y;
}

TVector2 operator*(const TVector2& v, const double& d)
{
    return {v.x * d, v.y * d};
}

TVector2 operator*(const double& d, const TVector2& v)
{
    return v * d;
}

TVector2 operator/(const TVector2& v, const double& d)
{
    TVector2 quotient(v);
    return quotient /= d;
}

TVector2 operator+(const TVector2& a, const TVector2& b)
{
    return {a.x + b.x, a.y + b.y};
}

TVector2 operator-(const TVector2& a, const TVector2& b)
{
    return {a.x - b.x, a.y - b.y};
}

TVector2 operator+(const TVector2& v, const double& d)
{
    return {v.x + d, v.y + d};
}

TVector2 operator+(const double& d, const TVector2& v)
{
    return v + d;
}

TVector2 operator-(const TVector2& v, const double& d)
{
    return {v.x - d, v.y - d};
}

TVector2 operator-(const double& d, const TVector2& v)
{
    return v - d;
}

// SPDX-License-Identifier: MIT
#include "mat4.h"

#include <algorithm>
#include <cassert>
#include <cmath>

TMat4::TMat4()
{
    Identity();
}

TMat4::TMat4(const double* elements)
{
    Set(elements);
}

void TMat4::Set(const double* elements)
{
    std::copy_n(elements, 16, d_elements);
}

double TMat4::operator()(int index) const
{
    assert(index >= 0 && index < 16);
    return d_elements[index];
}

double& TMat4::operator()(int index)
{
    assert(index >= 0 && index < 16);
    return d_elements[index];
}

void TMat4::Identity()
{
    std::fill_n(d_elements, 16, 0.0);
    for (int i = 0; i < 16; i += 5)
        d_elements[i] = 1.0;
}

void TMat4::Transpose()
{
    for (int i = 0; i < 4; ++i)
        for (int j = i + 1; j < 4; ++j)
            std::swap(d_elements[4 * i + j], d_elements[4 * j + i]);
}

void TMat4::Normal()
{
    for (int i = 0; i < 12; i += 4) {
        TVector3 row(d_elements[i], d_elements[i + 1], d_elements[i + 2]);
        row.Normal();
        for (int j = 0; j < 3; ++j)
            d_elements[i + j] = row(j);
    }
}

TMat4 TMat4::operator*=(const TMat4& other)
{
    if (this != &other) {
        double product[16];
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) {
                double sum = 0.0;
                for (int k = 0; k < 4; ++k)
                    sum += other.d_elements[4 * i + k] * d_elements[4 * k + j];
                product[4 * i + j] = sum;
            }
        }
        Set(product);
    }
    return *this;
}

void TMat4::Rotate(const TVector3& axis, const double& angle)
{
    const double x = axis.x;
    const double y = axis.y;
    const double z = axis.z;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double t = 1.0 - c;
    const double rotation[16] = {
        x * x * t + c,
        x * y * t + z * s,
        x * z * t - y * s,
        0.0, //
        x * y * t - z * s,
        y * y * t + c,
        y * z * t + x * s,
        0.0, //
        x * z * t + y * s,
        y * z * t - x * s,
        z * z * t + c,
        0.0, //
        0.0,
        0.0,
        0.0,
        1.0,
    };
    *this *= TMat4(rotation);
}

void TMat4::Rotate(const double& a, const double& b, const double& c)
{
    const double ca = std::cos(a);
    const double sa = std::sin(a);
    const double cb = std::cos(b);
    const double sb = std::sin(b);
    const double cc = std::cos(c);
    const double sc = std::sin(c);
    const double rotation[16] = {
        cb * cc - ca * sb * sc,
        sb * cc + ca * cb * sc,
        sa * sc,
        0.0, //
        -cb * sc - ca * sb * cc,
        ca * cb * cc - sb * sc,
        sa * cc,
        0.0, //
        sa * sb,
        -sa * cb,
        ca,
        0.0, //
        0.0,
        0.0,
        0.0,
        1.0,
    };
    *this *= TMat4(rotation);
}

TMat4 operator*(const TMat4& a, const TMat4& b)
{
    TMat4 product(a);
    product *= b;
    return product;
}

TVector3 operator*(const TMat4& m, const TVector3& v)
{
    const double* e = m.Data();
    return {e[0] * v.x + e[1] * v.y + e[2] * v.z + e[3], //
            e[4] * v.x + e[5] * v.y + e[6] * v.z + e[7], //
            e[8] * v.x + e[9] * v.y + e[10] * v.z + e[11]};
}

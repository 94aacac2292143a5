// SPDX-License-Identifier: MIT
#include "mat4.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

TMat4 Rotation(const TVector3& first_row, const TVector3& second_row, const TVector3& third_row)
{
    TMat4 rotation;
    int element = 0;
    for (const TVector3& row : {first_row, second_row, third_row}) {
        std::copy_n(&row.x, 3, rotation.Data() + element);
        element += 4;
    }
    return rotation;
}

} // namespace

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

// By the formula of Rodrigues.
void TMat4::Rotate(const TVector3& axis, const double& angle)
{
    const auto& [x, y, z] = axis;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double t = 1.0 - c;
    *this *= Rotation({x * x * t + c, x * y * t + z * s, x * z * t - y * s},
                      {x * y * t - z * s, y * y * t + c, y * z * t + x * s},
                      {x * z * t + y * s, y * z * t - x * s, z * z * t + c});
}

// By the Euler angles of the sequence Z-X-Z.
void TMat4::Rotate(const double& a, const double& b, const double& c)
{
    const double ca = std::cos(a);
    const double sa = std::sin(a);
    const double cb = std::cos(b);
    const double sb = std::sin(b);
    const double cc = std::cos(c);
    const double sc = std::sin(c);
    *this *= Rotation({cb * cc - ca * sb * sc, sb * cc + ca * cb * sc, sa * sc},
                      {-cb * sc - ca * sb * cc, ca * cb * cc - sb * sc, sa * cc}, //
                      {sa * sb, -sa * cb, ca});
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

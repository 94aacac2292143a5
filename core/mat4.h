// SPDX-License-Identifier: MIT
#pragma once

#include "vector3.h"

/// A 4x4 matrix for rotations with an optional translation.
///
/// The sixteen elements are stored contiguously. The operations here read them row by row: element 4*i + j
/// is row i, column j, the translation is in elements 3, 7 and 11. OpenGL gets the same array unchanged and
/// reads it column by column, that is, transposed: what `m * v` does here is the inverse of what OpenGL
/// does with a rotation `m`.
class TMat4
{
public:
    /// Identity.
    TMat4();

    /// Copies 16 doubles in storage order.
    explicit TMat4(const double* elements);
    void Set(const double* elements);

    /// Element 0 to 15; any other index is a programming error (assertion).
    double operator()(int index) const;
    double& operator()(int index);

    /// The sixteen elements in storage order, as OpenGL takes and gives them.
    const double* Data() const { return d_elements; }
    double* Data() { return d_elements; }

    void Identity();
    void Transpose();

    /// Normalises the first three rows as 3-vectors, which removes the drift of a rotation that has been
    /// multiplied many times. The fourth column and the bottom row stay.
    void Normal();

    /// Pre-multiplies: this becomes other x this, so `other` is applied after what was there. A matrix
    /// multiplied by itself stays unchanged. Returns a copy of the result.
    TMat4 operator*=(const TMat4& other);

    /// Pre-multiplies by the rotation about `axis` by `angle` radians (Rodrigues' formula; column vectors
    /// turn by minus the angle). The axis is used as it is: normalise it for a pure rotation.
    void Rotate(const TVector3& axis, const double& angle);

    /// Pre-multiplies by the Euler rotation Z-X-Z: `a` is the tilt about X, `b` the first and `c` the last
    /// turn about Z, all in radians.
    void Rotate(const double& a, const double& b, const double& c);

private:
    double d_elements[16];
};

/// The matrix b x a: `b` is applied after `a`.
TMat4 operator*(const TMat4& a, const TMat4& b);

/// The point v transformed by the rows of m. The bottom row is ignored, nothing is divided by w.
TVector3 operator*(const TMat4& m, const TVector3& v);

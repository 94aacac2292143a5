// SPDX-License-Identifier: MIT
#pragma once

#include "mat4.h"
#include "vector3.h"

#include <vector>

/// Turns simple solids into triangle meshes. Every mesh is counter-clockwise seen from outside (from the side
/// the normal points to), solids are closed. All lengths are in the unit of the points, here millimetres.
class TOpenGLGeometryFactory
{
public:
    struct TOpenGLTriangleVertex
    {
        TVector3 position;
        TVector3 normal; ///< unit length
    };
    /// Three consecutive vertices are one triangle.
    using TMesh = std::vector<TOpenGLTriangleVertex>;

    /// Radii and axes below 1e-6, or too long to be measured in a double, make no shape.
    static bool Makes_Shape(double length);

    /// Takes the plane z = 0 to the plane through `origin` with the unit vector `normal`. For the opposite
    /// normal the x axis turns round and the y axis stays, so that both sides of a disc share their rim to
    /// the last bit.
    static TMat4 Frame(const TVector3& origin, const TVector3& normal);

    /// Fineness of curved shapes: a sphere has 8 * 4^level triangles, a circle 4 * 2^level corners. A
    /// negative level makes every curved shape empty. A new factory has level 1.
    void Set_Subdivision_Level(int level) { d_level = level; }

    /// v scaled so that (x, y) has length 1; z stays. A vector on the z axis is not guarded.
    TVector3 Normalize_XY(const TVector3& v) const;

    TMesh RenderSphere(const TVector3& center, const double& radius) const;

    /// Appends the triangle a, b, c of the first octant of the unit sphere, subdivided `level` times and
    /// mirrored into all eight octants, as part of the sphere of that centre and radius.
    void RenderSphereTriangle(const TVector3& a, const TVector3& b, const TVector3& c, const TVector3& center,
                              const double& radius, int level, TMesh* mesh) const;

    /// The closed cylinder from `start` to `end`, or the cone where the two radii differ; an end without a
    /// radius is a tip.
    TMesh RenderCylinder(const TVector3& start, const TVector3& end, const double& start_radius,
                         const double& end_radius) const;

    /// The flat quadrilateral a, b, c, d (counter-clockwise from the visible side).
    TMesh RenderPlane(const TVector3& a, const TVector3& b, const TVector3& c, const TVector3& d) const;

    /// Appends the flat triangle a, b, c; nothing when it has no area.
    void RenderPlaneTriangle(const TVector3& a, const TVector3& b, const TVector3& c, TMesh* mesh) const;

    /// The disc that is seen from the side `normal` (of any length) points to.
    TMesh RenderCircularPlane(const TVector3& center, const TVector3& normal, const double& radius) const;

    /// Appends the sector between the points a and b of the unit circle: the frame takes the circle's plane
    /// z = 0 to its place, its third column is the normal.
    void RenderCircleTriangle(const TMat4& frame, const TVector3& a, const TVector3& b, const double& radius,
                              TMesh* mesh) const;

    /// The regular polygon of `sides` (at least 3) corners on the circle of that radius.
    TMesh RenderPolygon(const TVector3& center, const TVector3& normal, const double& radius,
                        int sides) const;

private:
    std::vector<TVector3> Unit_Circle() const;
    TMesh Render_Fan(const TVector3& center, const TVector3& normal, const double& radius,
                     const std::vector<TVector3>& rim) const;

    int d_level{1};
};

// SPDX-License-Identifier: MIT
#include "ballbarmeshes.h"

#include <algorithm>
#include <cmath>

namespace
{

using TMesh = TOpenGLGeometryFactory::TMesh;

void Append(TMesh* mesh, const TMesh& addition)
{
    mesh->insert(mesh->end(), addition.begin(), addition.end());
}

bool Is_Drawable(const TVector3& point)
{
    constexpr double limit = 1e12;
    return std::fabs(point.x) <= limit && std::fabs(point.y) <= limit && std::fabs(point.z) <= limit;
}

TVector3 Unit_Axis(const TVector3& from, const TVector3& to)
{
    const double length = Length(to - from);
    return TOpenGLGeometryFactory::Makes_Shape(length) ? (to - from) / length : TVector3();
}

/// A tetrahedron with one edge across each end of the axis: the least that is closed and seen from
/// everywhere.
TMesh Sliver(const TVector3& start, const TVector3& end, double radius)
{
    TMesh mesh;
    const TVector3 axis = Unit_Axis(start, end);
    const TVector3 helper = std::fabs(axis.x) > 0.7 ? TVector3(0, 1, 0) : TVector3(1, 0, 0);
    TVector3 across = helper * axis;
    if (Length(across) < 0.5)
        return mesh;
    across.Normal();
    const TVector3 up = axis * across;
    const TVector3 a = start - radius * across;
    const TVector3 b = start + radius * across;
    const TVector3 c = end - radius * up;
    const TVector3 d = end + radius * up;
    const TOpenGLGeometryFactory factory;
    factory.RenderPlaneTriangle(a, b, c, &mesh);
    factory.RenderPlaneTriangle(b, a, d, &mesh);
    factory.RenderPlaneTriangle(a, c, d, &mesh);
    factory.RenderPlaneTriangle(c, b, d, &mesh);
    return mesh;
}

} // namespace

double BallBarMeshes::Sphere_Radius(double bar_length)
{
    return std::max(std::clamp(0.05 * bar_length, 6.0, 40.0), 0.01 * bar_length);
}

int BallBarMeshes::Level(size_t bar_count)
{
    constexpr size_t most_bars[] = {20000, 10000, 1000, 40}; // at level 0, 1, 2 and 3
    int level = -1;
    for (const size_t most : most_bars)
        level += bar_count <= most ? 1 : 0;
    return level;
}

BallBarMeshes::TMeshes BallBarMeshes::Build(const TVector3& sphere1, const TVector3& sphere2,
                                            const TVector3& probe, int level)
{
    TMeshes meshes;
    if (!Is_Drawable(sphere1) || !Is_Drawable(sphere2) || !Is_Drawable(probe))
        return meshes;
    const double sphere_radius = Sphere_Radius(Length(sphere2 - sphere1));
    const double rod_radius = 0.5 * sphere_radius;
    if (level < 0) {
        meshes[ROD] = Sliver(sphere1, sphere2, rod_radius);
        return meshes;
    }

    TOpenGLGeometryFactory factory;
    factory.Set_Subdivision_Level(level);
    meshes[ROD] = factory.RenderCylinder(sphere1, sphere2, rod_radius, rod_radius);
    for (const TVector3& center : {sphere1, sphere2})
        Append(&meshes[SPHERES], factory.RenderSphere(center, sphere_radius));

    const TVector3 towards_tip = Unit_Axis(TVector3(), probe);
    if (Length(towards_tip) < 0.5)
        return meshes;
    // A ruby is small in the picture and needs fewer triangles than a sphere.
    factory.Set_Subdivision_Level(std::max(level - 1, 0));
    const double ruby_radius = 0.4 * sphere_radius;
    const double stem_radius = 0.5 * ruby_radius;
    for (const TVector3& center : {sphere1, sphere2}) {
        const TVector3 tip = center - (sphere_radius + ruby_radius) * towards_tip;
        Append(&meshes[STEMS], factory.RenderCylinder(tip, tip - probe, stem_radius, stem_radius));
        Append(&meshes[RUBIES], factory.RenderSphere(tip, ruby_radius));
    }
    return meshes;
}

TVector3 BallBarMeshes::Label_Position(const TVector3& sphere1, const TVector3& sphere2)
{
    const double radius = Sphere_Radius(Length(sphere2 - sphere1));
    return sphere2 + 1.5 * radius * Unit_Axis(sphere1, sphere2);
}

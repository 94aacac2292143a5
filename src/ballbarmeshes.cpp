// SPDX-License-Identifier: MIT
#include "ballbarmeshes.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace
{

using TMesh = TOpenGLGeometryFactory::TMesh;

void Append(TMesh* mesh, const TMesh& addition)
{
    mesh->insert(mesh->end(), addition.begin(), addition.end());
}

bool Is_Drawable(const TVector3& point)
{
    constexpr double LIMIT = 1e12;
    return std::fabs(point.x) <= LIMIT && std::fabs(point.y) <= LIMIT && std::fabs(point.z) <= LIMIT;
}

// Nothing where the two points are too near to each other, or too far apart, to tell a direction.
std::optional<TVector3> Unit_Axis(const TVector3& from, const TVector3& to)
{
    const double length = (to - from).Length();
    if (!TOpenGLGeometryFactory::Makes_Shape(length))
        return std::nullopt;
    return (to - from) / length;
}

// A tetrahedron with one edge across each end of the axis: the least that is closed and seen from
// everywhere.
TMesh Sliver(const TVector3& start, const TVector3& end, double radius)
{
    TMesh mesh;
    const auto axis = Unit_Axis(start, end);
    if (!axis)
        return mesh;
    const TMat4 start_frame = TOpenGLGeometryFactory::Frame(start, *axis);
    const TMat4 end_frame = TOpenGLGeometryFactory::Frame(end, *axis);
    const TVector3 a = start_frame * TVector3(-radius, 0.0, 0.0);
    const TVector3 b = start_frame * TVector3(radius, 0.0, 0.0);
    const TVector3 c = end_frame * TVector3(0.0, -radius, 0.0);
    const TVector3 d = end_frame * TVector3(0.0, radius, 0.0);
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
    constexpr size_t MOST_BARS[] = {20000, 10000, 1000, 40}; // at level 0, 1, 2 and 3
    int level = -1;
    for (const size_t most : MOST_BARS)
        level += bar_count <= most ? 1 : 0;
    return level;
}

BallBarMeshes::TMeshes BallBarMeshes::Build(const TVector3& sphere1, const TVector3& sphere2,
                                            const TVector3& probe, int level)
{
    TMeshes meshes;
    if (!Is_Drawable(sphere1) || !Is_Drawable(sphere2) || !Is_Drawable(probe))
        return meshes;
    const double sphere_radius = Sphere_Radius((sphere2 - sphere1).Length());
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

    const auto towards_tip = Unit_Axis(TVector3(), probe);
    if (!towards_tip)
        return meshes;
    // A ruby is small in the picture and needs fewer triangles than a sphere.
    factory.Set_Subdivision_Level(std::max(level - 1, 0));
    const double ruby_radius = 0.4 * sphere_radius;
    const double stem_radius = 0.5 * ruby_radius;
    for (const TVector3& center : {sphere1, sphere2}) {
        const TVector3 tip = center - (sphere_radius + ruby_radius) * *towards_tip;
        Append(&meshes[STEMS], factory.RenderCylinder(tip, tip - probe, stem_radius, stem_radius));
        Append(&meshes[RUBIES], factory.RenderSphere(tip, ruby_radius));
    }
    return meshes;
}

TVector3 BallBarMeshes::Label_Position(const TVector3& sphere1, const TVector3& sphere2)
{
    const double radius = Sphere_Radius((sphere2 - sphere1).Length());
    const auto axis = Unit_Axis(sphere1, sphere2);
    return axis ? sphere2 + 1.5 * radius * *axis : sphere2;
}

// SPDX-License-Identifier: MIT
#include "openglgeometryfactory.h"

#include <cmath>
#include <limits>

namespace
{

using TVertex = TOpenGLGeometryFactory::TOpenGLTriangleVertex;
using TMesh = TOpenGLGeometryFactory::TMesh;

// One end of a wall; without a radius it is the tip of a cone.
struct TRim
{
    TMat4 frame;
    double radius;
};

// Turned as the frame turns, of unit length. Far from the origin the translation would swallow it.
TVector3 Direction(TMat4 frame, const TVector3& v)
{
    for (const int translation : {3, 7, 11})
        frame(translation) = 0.0;
    TVector3 direction = frame * v;
    return direction.Normal();
}

// The wall between two ends. Its normals lean towards the thinner one by the slope of the cone.
void Append_Wall(const TRim& start, const TRim& end, double height, const std::vector<TVector3>& circle,
                 TMesh* mesh)
{
    const auto vertex = [&](const TRim& rim, const TVector3& point) {
        const TVector3 normal(height * point.x, height * point.y, start.radius - end.radius);
        return TVertex{rim.frame * (rim.radius * point), Direction(start.frame, normal)};
    };
    for (size_t i = 0; i < circle.size(); ++i) {
        const TVector3& from = circle[i];
        const TVector3& to = circle[(i + 1) % circle.size()];
        if (start.radius > 0.0)
            mesh->insert(mesh->end(), {vertex(start, from), vertex(start, to), vertex(end, to)});
        if (end.radius > 0.0)
            mesh->insert(mesh->end(), {vertex(start, from), vertex(end, to), vertex(end, from)});
    }
}

} // namespace

bool TOpenGLGeometryFactory::Makes_Shape(double length)
{
    return length >= 1e-6 && std::isfinite(length);
}

TMat4 TOpenGLGeometryFactory::Frame(const TVector3& origin, const TVector3& normal)
{
    const bool near_x = std::fabs(normal.x) > 0.7;
    TVector3 x_axis = (near_x ? TVector3(0.0, 1.0, 0.0) : TVector3(1.0, 0.0, 0.0)) * normal;
    x_axis.Normal();
    const TVector3 y_axis = normal * x_axis;

    TMat4 frame;
    for (int row = 0; row < 3; ++row) {
        frame(4 * row) = x_axis(row);
        frame(4 * row + 1) = y_axis(row);
        frame(4 * row + 2) = normal(row);
        frame(4 * row + 3) = origin(row);
    }
    return frame;
}

TVector3 TOpenGLGeometryFactory::Normalize_XY(const TVector3& v) const
{
    const double r = std::sqrt(v.x * v.x + v.y * v.y);
    return {v.x / r, v.y / r, v.z};
}

TOpenGLGeometryFactory::TMesh TOpenGLGeometryFactory::RenderSphere(const TVector3& center,
                                                                   const double& radius) const
{
    TMesh mesh;
    if (d_level >= 0 && Makes_Shape(radius)) {
        mesh.reserve(size_t{24} << (2 * d_level));
        RenderSphereTriangle({0, 0, 1}, {1, 0, 0}, {0, 1, 0}, center, radius, d_level, &mesh);
    }
    return mesh;
}

void TOpenGLGeometryFactory::RenderSphereTriangle(const TVector3& a, const TVector3& b, const TVector3& c,
                                                  const TVector3& center, const double& radius, int level,
                                                  TMesh* mesh) const
{
    if (level > 0) {
        const TVector3 ab = (a + b) / 2.0;
        const TVector3 bc = (b + c) / 2.0;
        const TVector3 ca = (c + a) / 2.0;
        RenderSphereTriangle(a, ab, ca, center, radius, level - 1, mesh);
        RenderSphereTriangle(ab, b, bc, center, radius, level - 1, mesh);
        RenderSphereTriangle(ab, bc, ca, center, radius, level - 1, mesh);
        RenderSphereTriangle(bc, c, ca, center, radius, level - 1, mesh);
        return;
    }

    TVector3 corners[3] = {a, b, c};
    for (TVector3& corner : corners)
        corner.Normal();
    for (int octant = 0; octant < 8; ++octant) {
        const TVector3 sign(octant & 1 ? -1 : 1, octant & 2 ? -1 : 1, octant & 4 ? -1 : 1);
        const bool turned = sign.x * sign.y * sign.z < 0; // a mirror image runs the other way round
        for (const int k : {0, turned ? 2 : 1, turned ? 1 : 2}) {
            const TVector3 normal(sign.x * corners[k].x, sign.y * corners[k].y, sign.z * corners[k].z);
            mesh->push_back({center + radius * normal, normal});
        }
    }
}

TOpenGLGeometryFactory::TMesh TOpenGLGeometryFactory::RenderCylinder(const TVector3& start,
                                                                     const TVector3& end,
                                                                     const double& start_radius,
                                                                     const double& end_radius) const
{
    const double height = (end - start).Length();
    const double r1 = Makes_Shape(start_radius) ? start_radius : 0.0;
    const double r2 = Makes_Shape(end_radius) ? end_radius : 0.0;
    if (d_level < 0 || !Makes_Shape(height) || (r1 == 0.0 && r2 == 0.0))
        return {};

    const TVector3 axis = (end - start) / height;
    TMesh mesh = RenderCircularPlane(start, axis * -1.0, r1);
    const TMesh end_cap = RenderCircularPlane(end, axis, r2);
    mesh.insert(mesh.end(), end_cap.begin(), end_cap.end());
    Append_Wall({Frame(start, axis), r1}, {Frame(end, axis), r2}, height, Unit_Circle(), &mesh);
    return mesh;
}

TOpenGLGeometryFactory::TMesh TOpenGLGeometryFactory::RenderPlane(const TVector3& a, const TVector3& b,
                                                                  const TVector3& c, const TVector3& d) const
{
    TMesh mesh;
    RenderPlaneTriangle(a, b, c, &mesh);
    RenderPlaneTriangle(a, c, d, &mesh);
    return mesh;
}

void TOpenGLGeometryFactory::RenderPlaneTriangle(const TVector3& a, const TVector3& b, const TVector3& c,
                                                 TMesh* mesh) const
{
    TVector3 normal = (b - a) * (c - a);
    if (!(normal.Length() > std::numeric_limits<double>::epsilon()))
        return;
    normal.Normal();
    mesh->insert(mesh->end(), {{a, normal}, {b, normal}, {c, normal}});
}

TOpenGLGeometryFactory::TMesh TOpenGLGeometryFactory::RenderCircularPlane(const TVector3& center,
                                                                          const TVector3& normal,
                                                                          const double& radius) const
{
    return Render_Fan(center, normal, radius, Unit_Circle());
}

void TOpenGLGeometryFactory::RenderCircleTriangle(const TMat4& frame, const TVector3& a, const TVector3& b,
                                                  const double& radius, TMesh* mesh) const
{
    const TVector3 normal(frame(2), frame(6), frame(10));
    for (const TVector3& corner : {TVector3(), radius * a, radius * b})
        mesh->push_back({frame * corner, normal});
}

TOpenGLGeometryFactory::TMesh TOpenGLGeometryFactory::RenderPolygon(const TVector3& center,
                                                                    const TVector3& normal,
                                                                    const double& radius, int sides) const
{
    if (sides < 3)
        return {};
    std::vector<TVector3> rim;
    rim.reserve(static_cast<size_t>(sides));
    const double step = 2.0 * std::acos(-1.0) / sides;
    for (int i = 0; i < sides; ++i)
        rim.emplace_back(std::cos(i * step), std::sin(i * step), 0.0);
    return Render_Fan(center, normal, radius, rim);
}

// The corners of the circle, made by halving one quadrant and turning it, so that the set of points is
// mirrored exactly in both axes.
std::vector<TVector3> TOpenGLGeometryFactory::Unit_Circle() const
{
    if (d_level < 0)
        return {};
    std::vector<TVector3> quadrant{{1, 0, 0}, {0, 1, 0}};
    for (int level = 0; level < d_level; ++level)
        for (size_t i = quadrant.size() - 1; i > 0; --i)
            quadrant.insert(quadrant.begin() + static_cast<std::ptrdiff_t>(i),
                            Normalize_XY((quadrant[i - 1] + quadrant[i]) / 2.0));
    quadrant.pop_back();

    std::vector<TVector3> circle;
    for (int turn = 0; turn < 4; ++turn) {
        circle.insert(circle.end(), quadrant.begin(), quadrant.end());
        for (TVector3& point : quadrant)
            point = {-point.y, point.x, 0.0};
    }
    return circle;
}

TOpenGLGeometryFactory::TMesh TOpenGLGeometryFactory::Render_Fan(const TVector3& center,
                                                                 const TVector3& normal, const double& radius,
                                                                 const std::vector<TVector3>& rim) const
{
    TMesh mesh;
    const double length = normal.Length();
    if (!Makes_Shape(radius) || !Makes_Shape(length))
        return mesh;
    const TMat4 frame = Frame(center, normal / length);
    for (size_t i = 0; i < rim.size(); ++i)
        RenderCircleTriangle(frame, rim[i], rim[(i + 1) % rim.size()], radius, &mesh);
    return mesh;
}

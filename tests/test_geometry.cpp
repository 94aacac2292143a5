// SPDX-License-Identifier: MIT
#include "openglgeometryfactory.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <string>

namespace
{

using TMesh = TOpenGLGeometryFactory::TMesh;
using TPoint = std::array<double, 3>;

TPoint Key(const TVector3& v)
{
    return {v.x + 0.0, v.y + 0.0, v.z + 0.0}; // -0.0 and 0.0 are the same place
}

/// Every edge is run through exactly once in each direction: no hole, no overlap, one orientation.
bool Is_Closed(const TMesh& mesh)
{
    std::map<std::pair<TPoint, TPoint>, int> edges;
    for (size_t i = 0; i < mesh.size(); i += 3)
        for (size_t k = 0; k < 3; ++k)
            ++edges[{Key(mesh[i + k].position), Key(mesh[i + (k + 1) % 3].position)}];
    for (const auto& [edge, count] : edges)
        if (count != 1 || edges.find({edge.second, edge.first}) == edges.end())
            return false;
    return !mesh.empty();
}

double Volume(const TMesh& mesh)
{
    double volume = 0.0;
    for (size_t i = 0; i < mesh.size(); i += 3)
        volume += (mesh[i].position ^ (mesh[i + 1].position * mesh[i + 2].position)) / 6.0;
    return volume;
}

double Area(const TMesh& mesh)
{
    double area = 0.0;
    for (size_t i = 0; i < mesh.size(); i += 3)
        area +=
            Length((mesh[i + 1].position - mesh[i].position) * (mesh[i + 2].position - mesh[i].position)) /
            2.0;
    return area;
}

/// Normals have unit length and look to the side from which the triangle runs counter-clockwise.
void Expect_Normals(const TMesh& mesh)
{
    ASSERT_EQ(mesh.size() % 3, 0U);
    for (size_t i = 0; i < mesh.size(); i += 3) {
        const TVector3 outward =
            (mesh[i + 1].position - mesh[i].position) * (mesh[i + 2].position - mesh[i].position);
        for (size_t k = i; k < i + 3; ++k) {
            EXPECT_NEAR(Length(mesh[k].normal), 1.0, 1e-12);
            EXPECT_GT(mesh[k].normal ^ outward, 0.0);
        }
    }
}

const double PI = std::acos(-1.0);

} // namespace

TEST(Geometry, SolidsAreClosedAndFaceOutward)
{
    const TVector3 p(100, -50, 30);
    for (const int level : {0, 1, 2, 4}) {
        TOpenGLGeometryFactory factory;
        factory.Set_Subdivision_Level(level);
        const struct
        {
            const char* name;
            TMesh mesh;
            double volume;
        } solids[] = {
            {"sphere", factory.RenderSphere(p, 20), 4.0 / 3.0 * PI * 8000},
            {"cylinder", factory.RenderCylinder(p, p + TVector3(3, 4, 12), 5, 5), PI * 25 * 13},
            {"along x", factory.RenderCylinder(p, p - TVector3(8, 0, 0), 2, 2), PI * 4 * 8},
            {"along z", factory.RenderCylinder(p, p + TVector3(0, 0, 9), 3, 3), PI * 9 * 9},
            {"frustum", factory.RenderCylinder(p, p + TVector3(0, 6, 0), 4, 2), PI * 6 * (16 + 8 + 4) / 3},
            {"cone", factory.RenderCylinder(p, p + TVector3(0, 6, 6), 3, 0), PI * 3 * std::sqrt(72.0)},
            {"tip first", factory.RenderCylinder(p, p + TVector3(6, 6, 0), -1, 3), PI * 3 * std::sqrt(72.0)},
        };
        for (const auto& solid : solids) {
            SCOPED_TRACE(std::string(solid.name) + " at level " + std::to_string(level));
            EXPECT_TRUE(Is_Closed(solid.mesh));
            Expect_Normals(solid.mesh);
            // Inscribed, so always less than the smooth solid, and nearly that at a fine level.
            EXPECT_LT(Volume(solid.mesh), solid.volume);
            EXPECT_GT(Volume(solid.mesh), solid.volume * (level == 4 ? 0.98 : 0.3));
        }
    }
}

TEST(Geometry, SphereVertices)
{
    const TVector3 center(1, 2, 3);
    const TMesh mesh = TOpenGLGeometryFactory().RenderSphere(center, 2);
    ASSERT_EQ(mesh.size(), 96U);
    for (const auto& vertex : mesh) {
        EXPECT_NEAR(Length(vertex.position - center), 2.0, 1e-15);
        EXPECT_NEAR(Length((vertex.position - center) / 2.0 - vertex.normal), 0.0, 1e-15);
    }
    // The first octant's first triangle is the one at the pole.
    EXPECT_EQ(mesh[0].normal.z, 1.0);
    EXPECT_EQ(mesh[1].normal.y, 0.0);
}

TEST(Geometry, FlatShapes)
{
    TOpenGLGeometryFactory factory;
    factory.Set_Subdivision_Level(5);
    const TVector3 center(5, 6, 7);
    const TVector3 normal(0, -3, 4);
    const struct
    {
        const char* name;
        TMesh mesh;
        double area;
        TVector3 facing;
    } shapes[] = {
        {"disc", factory.RenderCircularPlane(center, normal, 10), PI * 100, normal / 5.0},
        {"square", factory.RenderPolygon(center, normal, 10, 4), 200, normal / 5.0},
        {"triangle", factory.RenderPolygon(center, {1, 0, 0}, 2, 3), 3 * std::sqrt(3.0), {1, 0, 0}},
        {"plane", factory.RenderPlane({0, 0, 1}, {4, 0, 1}, {4, 2, 1}, {0, 2, 1}), 8, {0, 0, 1}},
    };
    for (const auto& shape : shapes) {
        SCOPED_TRACE(shape.name);
        Expect_Normals(shape.mesh);
        EXPECT_NEAR(Area(shape.mesh), shape.area, shape.area * 1e-3);
        for (const auto& vertex : shape.mesh)
            EXPECT_NEAR(vertex.normal ^ shape.facing, 1.0, 1e-12);
    }
}

TEST(Geometry, ConeNormalsStandOnTheWall)
{
    const TMesh cone = TOpenGLGeometryFactory().RenderCylinder({0, 0, 0}, {0, 0, 4}, 3, 0);
    for (const auto& vertex : cone)
        if (vertex.normal.z > -0.5) { // not the base
            EXPECT_NEAR(vertex.normal.z, 0.6, 1e-12);
        }
}

TEST(Geometry, NothingToDraw)
{
    TOpenGLGeometryFactory factory;
    const TVector3 p(1, 1, 1);
    EXPECT_TRUE(factory.RenderSphere(p, 1e-7).empty());
    EXPECT_TRUE(factory.RenderCylinder(p, p, 1, 1).empty());
    EXPECT_TRUE(factory.RenderCylinder(p, {9, 9, 9}, 1e-7, 0).empty());
    EXPECT_TRUE(factory.RenderCircularPlane(p, TVector3(), 1).empty());
    EXPECT_TRUE(factory.RenderPolygon(p, {0, 0, 1}, 1, 2).empty());
    EXPECT_EQ(factory.RenderPlane(p, p, {2, 0, 0}, {0, 2, 0}).size(), 3U);
    factory.Set_Subdivision_Level(-1);
    EXPECT_TRUE(factory.RenderSphere(p, 1).empty());
    EXPECT_TRUE(factory.RenderCylinder(p, {9, 9, 9}, 1, 1).empty());
    EXPECT_TRUE(factory.RenderCircularPlane(p, {0, 0, 1}, 1).empty());
}

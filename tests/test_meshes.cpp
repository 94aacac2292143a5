// SPDX-License-Identifier: MIT
// The solids, the bars made of them, and the registry that keeps their arrays.
#include "ballbarmeshes.h"
#include "openglgeometryfactory.h"
#include "openglvertexbuffer.h"
#include "testing.h"

#include <cmath>
#include <map>

using namespace BallBarMeshes;
using TMesh = TOpenGLGeometryFactory::TMesh;

const double PI = std::acos(-1.0);

/// Every edge is run through exactly once in each direction: no hole, no overlap, one orientation.
bool Is_Closed(const TMesh& mesh)
{
    using TPoint = std::array<double, 3>;
    const auto key = [](const TVector3& v) { return TPoint{v.x + 0.0, v.y + 0.0, v.z + 0.0}; }; // -0.0 is 0.0
    std::map<std::pair<TPoint, TPoint>, int> edges;
    for (size_t i = 0; i < mesh.size(); i += 3)
        for (size_t k = 0; k < 3; ++k)
            ++edges[{key(mesh[i + k].position), key(mesh[i + (k + 1) % 3].position)}];
    for (const auto& [edge, count] : edges)
        if (count != 1 || edges.find({edge.second, edge.first}) == edges.end())
            return false;
    return !mesh.empty();
}

/// The direction from which the triangle runs counter-clockwise, as long as twice its area.
TVector3 Facing(const TMesh& mesh, size_t i)
{
    return (mesh[i + 1].position - mesh[i].position) * (mesh[i + 2].position - mesh[i].position);
}

/// Positive when a closed mesh is counter-clockwise seen from outside.
double Volume(const TMesh& mesh)
{
    double volume = 0.0;
    for (size_t i = 0; i < mesh.size(); i += 3)
        volume += (mesh[i].position ^ Facing(mesh, i)) / 6.0;
    return volume;
}

void Expect_Normals(const TMesh& mesh)
{
    for (size_t i = 0; i < mesh.size(); ++i) {
        EXPECT_NEAR(mesh[i].normal.Length(), 1.0, 1e-12);
        EXPECT_GT(mesh[i].normal ^ Facing(mesh, i - i % 3), 0.0);
    }
}

TEST(Meshes, SolidsAreClosedAndFaceOutward)
{
    const TVector3 p(100, -50, 30), far(1e12, 1e12, 0);
    for (const int level : {0, 1, 2, 4}) {
        TOpenGLGeometryFactory factory;
        factory.Set_Subdivision_Level(level);
        const std::tuple<const char*, TMesh, double> solids[] = {
            // and the volumes
            {"sphere", factory.RenderSphere(p, 20), 4.0 / 3.0 * PI * 8000},
            {"cylinder", factory.RenderCylinder(p, p + TVector3(3, 4, 12), 5, 5), PI * 25 * 13},
            {"far away", factory.RenderCylinder(far, far + TVector3(0, 0, 500), 40, 40), PI * 1600 * 500},
            {"along z", factory.RenderCylinder(p, p + TVector3(0, 0, 9), 3, 3), PI * 9 * 9},
            {"frustum", factory.RenderCylinder(p, p + TVector3(0, 6, 0), 4, 2), PI * 6 * (16 + 8 + 4) / 3},
            {"tip first", factory.RenderCylinder(p, p + TVector3(6, 6, 0), -1, 3), PI * 3 * std::sqrt(72.0)},
        };
        for (const auto& [name, mesh, volume] : solids) {
            SCOPED_TRACE(std::string(name) + " at level " + std::to_string(level));
            EXPECT_TRUE(Is_Closed(mesh));
            Expect_Normals(mesh);
            // Inscribed, so always less than the smooth solid, and nearly that at a fine level.
            EXPECT_LT(Volume(mesh), volume);
            EXPECT_GT(Volume(mesh), volume * (level == 4 ? 0.98 : 0.3));
        }
    }
    double areas = 0.0; // of plane figures that face the viewer
    for (const TMesh& figure :
         {TOpenGLGeometryFactory().RenderPlane({0, 0, 5}, {2, 0, 5}, {2, 3, 5}, {0, 3, 5}),
          TOpenGLGeometryFactory().RenderPolygon(p, {0, 0, 7}, 2, 12)})
        for (size_t i = 0; i < figure.size(); i += 3)
            areas += Facing(figure, i).z / 2.0;
    EXPECT_NEAR(areas, 2 * 3 + 3 * 2 * 2, 1e-12);
    for (const auto& vertex : TOpenGLGeometryFactory().RenderSphere({0, 0, 0}, 2))
        EXPECT_NEAR((vertex.position / 2.0 - vertex.normal).Length(), 0.0, 1e-15);
    for (const auto& vertex : TOpenGLGeometryFactory().RenderCylinder({0, 0, 0}, {0, 0, 4}, 3, 0))
        EXPECT_NEAR(vertex.normal.z, vertex.normal.z < -0.5 ? -1.0 : 0.6, 1e-12); // stands on base or wall
}

TEST(Meshes, BarsLookTheirLength)
{
    for (const auto& [length, radius] : {std::pair{0.0, 6.0}, {100, 6}, {500, 25}, {2000, 40}, {1e9, 1e7}})
        EXPECT_DOUBLE_EQ(Sphere_Radius(length), radius);
    for (const auto& [bars, level] : {std::pair{40U, 3}, {41U, 2}, {1001U, 1}, {20000U, 0}, {20001U, -1}})
        EXPECT_EQ(Level(bars), level);
    EXPECT_EQ(Label_Position({0, 0, 100}, {500, 0, 100}).x, 500 + 1.5 * 25);
    const auto point = Build({1, 1, 1}, {1, 1, 1}, {}, 2); // its ends in one place, and no offset
    EXPECT_EQ(State(point[ROD].empty(), point[SPHERES].empty(), point[STEMS].empty()), "true false true");
    for (const TVector3& end : {TVector3(500, 0, 100), {100, 400, 300}}) { // among very many bars
        const auto sliver = Build({0, 0, 100}, end, {0, 0, -80}, -1);
        EXPECT_EQ(State(Is_Closed(sliver[ROD]), Volume(sliver[ROD]) > 0, sliver[SPHERES].empty()),
                  "true true true");
        Expect_Normals(sliver[ROD]);
        EXPECT_FALSE(Build({0, 0, 100}, end, {0, 0, -80}, 0)[SPHERES].empty());
    }

    const auto meshes = Build({0, 0, 100}, {500, 0, 100}, {0, 0, -80}, 3);
    const auto extent = [&](size_t slot, int axis) {
        std::pair<double, double> range{1e9, -1e9};
        for (const auto& vertex : meshes[slot]) {
            range.first = std::min(range.first, vertex.position(axis));
            range.second = std::max(range.second, vertex.position(axis));
        }
        return range;
    };
    EXPECT_NEAR(extent(RUBIES, 2).first, 100 + 25, 1e-9); // on the sphere's top, the head being above
    EXPECT_NEAR(extent(STEMS, 2).second, 100 + 25 + 10 + 80, 1e-9); // as long as the offset
    for (const auto slot : {RUBIES, STEMS})                         // at both ends
        EXPECT_TRUE(extent(slot, 0).first < 0 && extent(slot, 0).second > 500);
}

TEST(Meshes, RegistryNeverReusesIdentifiers)
{
    TOpenGLVertexBuffer registry;
    for (const unsigned int bad : {0U, 4U, 1U, 4294967295U})
        EXPECT_EQ(registry.Create_Buffer(bad), -1) << bad;
    for (unsigned int i = 1; i <= 5; ++i) {
        ASSERT_EQ(registry.Create_Buffer(3 * i), static_cast<int>(i));
        *registry.Buffer(static_cast<int>(i)) = i;
    }
    registry.Remove_Buffer(5);
    for (const int id : {0, 1, 2, 3, 4, 5, 6}) {
        const bool there = id > 0 && id < 5;
        EXPECT_EQ(registry.Buffer_Size(id), there ? 3 * id : 0);
        EXPECT_EQ(registry.Buffer(id) ? *registry.Buffer(id) : 0.0, there ? id : 0);
    }
    registry.Clear();
    EXPECT_EQ(registry.Create_Buffer(9), 6);
}

// SPDX-License-Identifier: MIT
#include "ballbarmeshes.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace BallBarMeshes;

namespace
{

/// Signed volume: positive when a closed mesh is counter-clockwise seen from outside.
double Volume(const TOpenGLGeometryFactory::TMesh& mesh)
{
    double volume = 0.0;
    for (size_t i = 0; i < mesh.size(); i += 3)
        volume += (mesh[i].position ^ (mesh[i + 1].position * mesh[i + 2].position)) / 6.0;
    return volume;
}

size_t Bytes(const TMeshes& meshes)
{
    size_t vertices = 0;
    for (const auto& mesh : meshes)
        vertices += mesh.size();
    return vertices * 6 * sizeof(double);
}

} // namespace

TEST(BallBarMeshes, SpheresSuitTheBar)
{
    const struct
    {
        double length, radius;
    } rows[] = {{0, 6}, {1e-9, 6}, {100, 6}, {500, 25}, {800, 40}, {2000, 40}, {4000, 40}, {1e9, 1e7}};
    for (const auto& row : rows)
        EXPECT_DOUBLE_EQ(Sphere_Radius(row.length), row.radius) << row.length;
}

TEST(BallBarMeshes, ProbeTouchesEachSphere)
{
    const TVector3 sphere1(0, 0, 100);
    const TVector3 sphere2(500, 0, 100);
    const TMeshes meshes = Build(sphere1, sphere2, {0, 0, -80}, 3);
    double ruby_low = 1e9;
    double stem_high = -1e9;
    for (const auto& vertex : meshes[RUBIES])
        ruby_low = std::min(ruby_low, vertex.position.z);
    for (const auto& vertex : meshes[STEMS])
        stem_high = std::max(stem_high, vertex.position.z);
    EXPECT_NEAR(ruby_low, 100 + 25, 1e-9);            // on the sphere's top, the head being above
    EXPECT_NEAR(stem_high, 100 + 25 + 10 + 80, 1e-9); // as long as the offset
    for (const auto& mesh : meshes)
        EXPECT_GT(Volume(mesh), 0.0);

    const TMeshes without = Build(sphere1, sphere2, {}, 3);
    EXPECT_TRUE(without[STEMS].empty() && without[RUBIES].empty());
    EXPECT_EQ(without[ROD].size(), meshes[ROD].size());
}

TEST(BallBarMeshes, MemoryStaysBounded)
{
    for (const size_t count : {1U, 40U, 41U, 1000U, 1001U, 10000U, 10001U, 20000U, 20001U, 1000000U}) {
        const TMeshes meshes = Build({0, 0, 0}, {300, 400, 0}, {0, 0, -50}, Level(count));
        EXPECT_LT(static_cast<double>(Bytes(meshes) * count), count <= 20000 ? 250e6 : 600e6) << count;
        EXPECT_GT(Volume(meshes[ROD]), 0.0) << count;
    }
    EXPECT_EQ(Level(0), 3);
}

TEST(BallBarMeshes, OddBars)
{
    // Coincident spheres: the spheres alone. Beyond any machine: nothing.
    EXPECT_TRUE(Build({1, 1, 1}, {1, 1, 1}, {}, 2)[ROD].empty());
    EXPECT_FALSE(Build({1, 1, 1}, {1, 1, 1}, {}, 2)[SPHERES].empty());
    EXPECT_TRUE(Build({1, 1, 1}, {1, 1, 1}, {}, -1)[ROD].empty());
    EXPECT_TRUE(Build({0, 0, 0}, {1e300, 0, 0}, {}, 2)[SPHERES].empty());
    for (const double length : {1e-9, 1e-3, 1e9})
        for (const int level : {-1, 0, 3})
            for (const auto& mesh : Build({0, 0, 0}, {length, 0, 0}, {1e9, 0, 1}, level))
                for (const auto& vertex : mesh) {
                    EXPECT_TRUE(std::isfinite(Length(vertex.position)));
                    EXPECT_NEAR(Length(vertex.normal), 1.0, 1e-9);
                }
}

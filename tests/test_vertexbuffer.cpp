// SPDX-License-Identifier: MIT
#include "openglvertexbuffer.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(VertexBuffer, IdentifiersAreNeverReused)
{
    TOpenGLVertexBuffer registry;
    for (const unsigned int bad : {0U, 4U, 1U, 4294967295U})
        EXPECT_EQ(registry.Create_Buffer(bad), -1) << bad;
    EXPECT_EQ(registry.Create_Buffer(3), 1);
    EXPECT_EQ(registry.Create_Buffer(6), 2);
    registry.Clear();
    EXPECT_FALSE(registry.Has_Buffer(1));
    EXPECT_EQ(registry.Create_Buffer(9), 3);
    for (const int missing : {0, -1, 1, 4})
        EXPECT_FALSE(registry.Has_Buffer(missing)) << missing;
}

TEST(VertexBuffer, RemovingKeepsTheOthers)
{
    TOpenGLVertexBuffer registry;
    for (unsigned int i = 1; i <= 5; ++i) {
        const int id = registry.Create_Buffer(3 * i);
        EXPECT_EQ(std::count(registry.Buffer(id), registry.Buffer(id) + 3 * i, 0.0), 3 * i);
        *registry.Buffer(id) = i;
    }
    registry.Remove_Buffer(2);
    registry.Remove_Buffer(2);
    registry.Remove_Buffer(77);
    EXPECT_EQ(registry.Buffer(2), nullptr);
    EXPECT_EQ(registry.Buffer_Size(2), 0);
    for (const int id : {1, 3, 4, 5}) {
        EXPECT_EQ(registry.Buffer_Size(id), 3 * id);
        EXPECT_EQ(*registry.Buffer(id), id);
    }
}

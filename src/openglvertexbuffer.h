// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

/// The registry of vertex data kept in client memory: arrays of doubles (x, y, z of consecutive vertices or
/// normals) under identifiers that count up from 1 and are never used twice.
class TOpenGLVertexBuffer
{
public:
    struct TBufferItem
    {
        int identifier;
        int size; ///< number of doubles, a multiple of 3
        std::unique_ptr<double[]> data;
    };

    /// Registers `size` doubles, all 0.0, and returns their identifier; -1 when the size is 0, no multiple of
    /// 3, or more than an int can count.
    int Create_Buffer(unsigned int size);

    bool Has_Buffer(int id) const { return Item(id) != nullptr; }
    double* Buffer(int id) const;     ///< null when there is no such buffer
    int Buffer_Size(int id) const;    ///< in doubles, 0 when there is no such buffer
    void Remove_Buffer(int id);       ///< unknown identifiers are ignored
    void Clear() { d_items.clear(); } ///< the next identifier goes on counting

    /// Size and data in one look-up; null when there is no such buffer. Valid until the registry changes.
    const TBufferItem* Item(int id) const;

private:
    std::vector<TBufferItem>::const_iterator Find(int id) const;

    int d_next_identifier{1};
    std::vector<TBufferItem> d_items; // in creation order, so identifiers ascend
};

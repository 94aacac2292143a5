// SPDX-License-Identifier: MIT
#include "openglvertexbuffer.h"

#include <algorithm>
#include <limits>

int TOpenGLVertexBuffer::Create_Buffer(unsigned int size)
{
    if (size == 0 || size % 3 != 0 || size > static_cast<unsigned int>(std::numeric_limits<int>::max()))
        return -1;
    d_items.push_back({d_next_identifier, static_cast<int>(size), std::make_unique<double[]>(size)});
    return d_next_identifier++;
}

double* TOpenGLVertexBuffer::Buffer(int id) const
{
    const TBufferItem* item = Item(id);
    return item ? item->data.get() : nullptr;
}

int TOpenGLVertexBuffer::Buffer_Size(int id) const
{
    const TBufferItem* item = Item(id);
    return item ? item->size : 0;
}

void TOpenGLVertexBuffer::Remove_Buffer(int id)
{
    const auto position = Find(id);
    if (position != d_items.end())
        d_items.erase(position);
}

const TOpenGLVertexBuffer::TBufferItem* TOpenGLVertexBuffer::Item(int id) const
{
    const auto position = Find(id);
    return position == d_items.end() ? nullptr : &*position;
}

std::vector<TOpenGLVertexBuffer::TBufferItem>::const_iterator TOpenGLVertexBuffer::Find(int id) const
{
    const auto position =
        std::lower_bound(d_items.begin(), d_items.end(), id,
                         [](const TBufferItem& item, int i) { return item.identifier < i; });
    return position != d_items.end() && position->identifier == id ? position : d_items.end();
}

// SPDX-License-Identifier: MIT
#pragma once

#include "openglgeometryfactory.h"
#include "vector3.h"

#include <array>
#include <cstddef>

/// What one ball bar looks like: sizes, and the four meshes by which the view draws it. All lengths are mm.
namespace BallBarMeshes
{

enum TSlot
{
    ROD,
    SPHERES,
    STEMS,
    RUBIES,
    SLOT_COUNT
};
using TMeshes = std::array<TOpenGLGeometryFactory::TMesh, SLOT_COUNT>;

/// Radius of the spheres of a bar of that length. In the usual range it grows with the bar; a short bar keeps
/// spheres that can be seen, and from some metres on the bar must not shrink to a hairline.
double Sphere_Radius(double bar_length);

/// The fineness (subdivision level of the spheres) for a scene of that many bars: finest for few, so that
/// spheres are round close up, and coarser in steps so that the view stays fluent and all meshes together
/// take less than 250 MB up to 20,000 bars. At -1, for more than that, a bar is a sliver of four triangles.
int Level(size_t bar_count);

/// The meshes at a level: the rod between the sphere centres, the spheres, and at each sphere the probe as it
/// touched it, `probe` being the offset from the probe head to the tip. Without an offset there is no probe;
/// coordinates that are beyond any machine (more than 1e12 mm) give empty meshes.
TMeshes Build(const TVector3& sphere1, const TVector3& sphere2, const TVector3& probe, int level);

/// Where the bar's name stands: a little beyond sphere 2, where names of bars with a common middle keep
/// apart.
TVector3 Label_Position(const TVector3& sphere1, const TVector3& sphere2);

} // namespace BallBarMeshes

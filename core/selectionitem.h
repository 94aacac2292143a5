// SPDX-License-Identifier: MIT
#pragma once

#include "vector3.h"

#include <vector>

/// A volume in model space that a click can hit.
struct TSelectionItem
{
    TVector3 first_point;     ///< segment start, or one corner of a box
    TVector3 second_point;    ///< segment end, or the opposite corner
    TVector3 first_direction; ///< normals of the three pairs of faces, of a box only
    TVector3 second_direction;
    TVector3 third_direction;
    int identifier{-1}; ///< what a hit reports
    int kind{SEGMENT};

    static constexpr int BOX = 0;
    static constexpr int SEGMENT = 1;

    /// Turns the directions of a box along its diagonal and makes them unit vectors. Those of a degenerate
    /// box (a length of at most 1e-6) become the axes, those of a segment zero.
    void Repair_Directions();

    bool Is_Inside_Box(const TVector3& point) const;
    /// The distance of a point from the segment's line; infinite unless the point is between the end planes.
    double Distance_From_Segment(const TVector3& point) const;
};

/// True strictly between the planes through a and b with that normal.
bool Is_Between_Planes(const TVector3& point, const TVector3& a, const TVector3& b,
                       const TVector3& direction);

/// The offset of the item that a point belongs to, -1 for none: the first box around it, otherwise the
/// segment whose line is nearest, the first of them on a tie.
int Find_Item(const std::vector<TSelectionItem>& items, const TVector3& point);

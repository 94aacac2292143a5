// SPDX-License-Identifier: MIT
#pragma once

#include "vector3.h"

#include <QString>

namespace Types
{

/// One measured position of a ball bar. All values are millimetres in machine coordinates.
struct TBallbar_Item
{
    QString name;
    TVector3 sph1; ///< centre of sphere 1
    TVector3 sph2; ///< centre of sphere 2
    TVector3 tool; ///< probe offset in use
    double sph1_form{0.0};
    double sph2_form{0.0};

    /// The measured length of the bar: the distance between the two sphere centres.
    double Length() const;
};

} // namespace Types

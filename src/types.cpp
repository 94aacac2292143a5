// SPDX-License-Identifier: MIT
#include "types.h"

double Types::TBallbar_Item::Length() const
{
    return (sph2 - sph1).Length();
}

// SPDX-License-Identifier: MIT
#include "types.h"

double Types::TBallbar_Item::Length() const
{
    return ::Length(sph2 - sph1);
}

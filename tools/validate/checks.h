// SPDX-License-Identifier: MIT
#pragma once

#include "record.h"
#include "tally.h"

#include <vector>

class TPrivateHome;

/// The reference data sets of NIST, whose mean and standard deviation are certified, on three ways.
TCheck Check_Reference_Data(const TPrivateHome& home);

/// The rules of the trade, each by an example that was worked out by hand. What else is shown is counted.
std::vector<TCheck> Check_Rules(const TPrivateHome& home, TTally* tally);

/// Each format from file to restored database and back on the screen.
TCheck Check_Formats(const TPrivateHome& home, TTally* tally);

/// `count` random sets, everything shown of them, before and after database, backup and restore.
TCheck Check_Random_Sets(const TPrivateHome& home, unsigned long long seed, int count, TTally* tally);

/// The table of docs/numbers.md against what was compared: the same quantities, the same decimals.
TCheck Check_Page_Of_Numbers(const TTally& tally);

// SPDX-License-Identifier: MIT
#pragma once

#include "exactset.h"
#include "tally.h"

class TWindow;
class TStore;

/// Holds everything that the main window shows of a set (report, histogram, tolerance panel, and the position
/// panel for each position) against the exact set. `place` names the set.
void Check_Display(TWindow* window, const TExactSet& set, const TExactTolerance& tolerance,
                   const std::string& place, TTally* tally);

/// Holds which bars the 3-D view shows as outside the tolerance and as inside the sub tolerance, as the
/// program decides it of a measurement file, against the exact set.
void Check_Bars(const std::string& file, const TExactSet& set, const TExactTolerance& tolerance,
                const std::string& place, TTally* tally);

/// Holds the summary table, the CSV file and the summaries in the database against the exact sets: the first
/// two are computed from the stored positions, the last are of the sets as they were saved.
void Check_Summaries(TStore* store, const std::vector<TExactSet>& stored, const std::vector<TExactSet>& saved,
                     TTally* tally);

/// Holds the numbers in a backup against those of the sets that were saved.
void Check_Stored_Numbers(const std::vector<TExactSet>& stored, const std::vector<TExactSet>& saved,
                          TTally* tally);

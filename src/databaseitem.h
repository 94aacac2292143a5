// SPDX-License-Identifier: MIT
#pragma once

#include "statistics.h"

#include <QString>

#include <array>
#include <vector>

/// Where a position's eleven numbers are, in the order in which the database and backup files keep them
/// behind its name. It serves to read them as well as to write them.
template<typename TPosition> auto Stored_Numbers(TPosition& position)
{
    return std::array{&position.sph1.x, &position.sph1.y, &position.sph1.z,    &position.sph2.x,
                      &position.sph2.y, &position.sph2.z, &position.sph1_form, &position.sph2_form,
                      &position.tool.x, &position.tool.y, &position.tool.z};
}

/// One measurement set as the database keeps it: the date and time it is filed under, its positions and the
/// statistics of their lengths (mm).
class TDatabaseItem
{
public:
    /// An empty set filed under the present moment of the local clock, in the system's language.
    TDatabaseItem();

    const QString& Date() const { return d_date; }
    const QString& Time() const { return d_time; }
    void Set_Date(const QString& date) { d_date = date; }
    void Set_Time(const QString& time) { d_time = time; }

    double Minimum() const { return d_statistics.minimum; }
    double Maximum() const { return d_statistics.maximum; }
    double Mean() const { return d_statistics.mean; }
    double Median() const { return d_statistics.median; } ///< the mid-range, not the middle length
    double Standard_Deviation() const { return d_statistics.standard_deviation; }

    /// Appends a copy of `item` with a cleaned name. The statistics stay as they are until Update_Stats().
    void Add_Ballbar(const Types::TBallbar_Item& item);
    /// Removes all positions and zeroes the statistics; date and time stay.
    void Clear_Ballbars();
    int Ballbar_Count() const { return static_cast<int>(d_ballbar_items.size()); }
    /// A copy of the position at `index`, which must be in 0 .. Ballbar_Count() - 1 (asserted).
    Types::TBallbar_Item Ballbar_Item(int index) const;
    /// All positions in the order they were added.
    const std::vector<Types::TBallbar_Item>& Ballbar_Items() const { return d_ballbar_items; }
    /// Computes the statistics from the positions.
    void Update_Stats();

    /// Deletes the characters that would break a statement, a template or a line of a backup file:
    /// ' " % * [ ] ^ \ / , and :
    static void Clean_String(QString* str);
    static QString Clean_String(const QString& str);
    /// Cleans the set's own date and time.
    void Clean_Strings();

private:
    QString d_date;
    QString d_time;
    TStatistics d_statistics;
    std::vector<Types::TBallbar_Item> d_ballbar_items;
};

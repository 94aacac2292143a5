// SPDX-License-Identifier: MIT
#pragma once

#include "statements.h"

#include <QHash>
#include <QPair>
#include <QStringList>

/// An index of one state of the database: the identifiers of all dates and times, and the rows of each set.
/// The tables have no indexes, so that each look-up in them reads a whole table. This one is filled by
/// reading each table once.
class TDatabaseCatalogue
{
public:
    /// Dates and times are added in the order of their rows. Of several rows with one text the first counts.
    void Add_Date(int date_id, const QString& date);
    void Add_Time(int date_id, int time_id, const QString& time);
    /// `rows` is the range of table data in which the positions of the set lie.
    void Add_Rows(int date_id, int time_id, const Statements::TRows& rows);

    /// -1 where there is none.
    int Date_Id(const QString& date) const;
    int Time_Id(int date_id, const QString& time) const;
    const QStringList& Dates() const { return d_dates; }
    QStringList Times(int date_id) const;
    /// The empty range where the set has no positions.
    Statements::TRows Rows(int date_id, int time_id) const;

private:
    QStringList d_dates;
    QHash<QString, int> d_date_ids;
    QHash<int, QStringList> d_times;                  ///< by date id
    QHash<QPair<int, QString>, int> d_time_ids;       ///< by date id and time
    QHash<QPair<int, int>, Statements::TRows> d_rows; ///< by date and time id
};

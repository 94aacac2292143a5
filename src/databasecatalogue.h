// SPDX-License-Identifier: MIT
#pragma once

#include "statements.h"

#include <QHash>
#include <QPair>
#include <QStringList>

/// Where one state of the database keeps what: the identifiers of all dates and times, and the rows of each
/// set. Without indexes every single look-up reads a whole table; this one is filled by one reading of each.
class TDatabaseCatalogue
{
public:
    /// Dates and times are added in the order of their rows. Of several rows with one text the first counts.
    void Add_Date(int date_id, const QString& date);
    void Add_Time(int date_id, int time_id, const QString& time);
    /// The rows of table data between which the positions of a set lie.
    void Add_Rows(int date_id, int time_id, const Statements::TRows& rows);

    /// -1 where there is none.
    int Date_Id(const QString& date) const;
    int Time_Id(int date_id, const QString& time) const;
    const QStringList& Dates() const { return d_dates; }
    QStringList Times(int date_id) const;
    /// No rows at all where the set has no positions.
    Statements::TRows Rows(int date_id, int time_id) const;

private:
    /// The times of one date.
    struct TTimes
    {
        QStringList times;
        QHash<QString, int> ids;
    };

    QStringList d_dates;
    QHash<QString, int> d_date_ids;
    QHash<int, TTimes> d_times;                       ///< by date id
    QHash<QPair<int, int>, Statements::TRows> d_rows; ///< by date and time id
};

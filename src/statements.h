// SPDX-License-Identifier: MIT
#pragma once

#include "databaseitem.h"

#include <QString>

#include <limits>

/// The texts of all SQL statements of the database. Numbers are in fixed notation, mm: 5 decimals for
/// positions, 4 for the statistics.
namespace Statements
{

/// A table and the statement that creates it.
struct TTable
{
    QLatin1String name;
    QLatin1String create;
};

/// The tables in the order they are created and emptied.
extern const TTable TABLES[4];

QString Select_Tables();
QString Delete_All(const TTable& table);
/// Deletes one row of table date or time.
QString Delete_Row(const QString& table, int id);

QString Select_Date_Id(const QString& date);
QString Select_Dates();
QString Insert_Date(const QString& date);

QString Select_Time_Id(int date_id, const QString& time);
QString Select_Time(int date_id, int time_id);
QString Select_Times(int date_id);
QString Insert_Time(int date_id, const QString& time);

/// A range of rows of table data, both ends included: at first the whole table. Where it is known between
/// which rows the positions of a set lie, a narrower range keeps a statement from looking at all others.
struct TRows
{
    qint64 first{std::numeric_limits<qint64>::min()};
    qint64 last{std::numeric_limits<qint64>::max()};
};
/// The range of a set without positions.
constexpr TRows NO_ROWS{std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()};

/// The positions of one set; the columns are those that Insert_Position() fills, less the two ids.
QString Select_Positions(int date_id, int time_id, const TRows& rows = TRows());
QString Delete_Positions(int date_id, int time_id, const TRows& rows = TRows());
QString Insert_Position(int date_id, int time_id, const Types::TBallbar_Item& position);

QString Delete_Summary(int date_id, int time_id);
QString Insert_Summary(int date_id, int time_id, const TDatabaseItem& item);

/// What a catalogue is filled from: the ids and entries of all dates and of all times, and for each set its
/// ids and the first and the last row of its positions.
QString Select_All_Dates();
QString Select_All_Times();
QString Select_All_Rows();

QString Begin();
QString Commit();
QString Roll_Back();
/// Locks out readers and writers at once, where Begin() locks out writers at the first change.
QString Begin_Alone();
/// Keeps the lock when the transaction ends, or gives it back then.
QString Keep_Lock(bool keep);
/// Writes a consistent copy of the whole database into a file that does not exist yet.
QString Copy_Into(const QString& file);

/// A transaction within the transaction, for one set. Undo_Set() does not end it: End_Set() must follow.
QString Begin_Set();
QString End_Set();
QString Undo_Set();

} // namespace Statements

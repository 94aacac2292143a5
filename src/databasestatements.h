// SPDX-License-Identifier: MIT
#pragma once

#include "databaseitem.h"

#include <QString>
#include <QStringList>

#include <limits>

/// The texts of all SQL statements of the database. Numbers are in fixed notation, mm: 5 decimals for
/// positions, 4 for the statistics.
namespace Statements
{

/// A table and the statement that creates it.
struct TTable
{
    const char* name;
    const char* create;
};

/// The tables in the order they are created and emptied.
extern const TTable TABLES[4];

QString Delete_All(const TTable& table);

QString Select_Date_Id(const QString& date);
QString Select_Dates();
QString Insert_Date(const QString& date);

QString Select_Time_Id(int date_id, const QString& time);
QString Select_Time(int date_id, int time_id);
QString Select_Times(int date_id);
QString Insert_Time(int date_id, const QString& time);

/// The rows of table data, from the first to the last, that a statement has to look at: all of them, or,
/// where it is known that a set lies between two rows, only these.
struct TRows
{
    qint64 first{std::numeric_limits<qint64>::min()};
    qint64 last{std::numeric_limits<qint64>::max()};
};

/// The positions of one set; the columns are those that Insert_Position() fills, less the two ids.
QString Select_Positions(int date_id, int time_id, const TRows& rows = TRows());
QString Delete_Positions(int date_id, int time_id, const TRows& rows = TRows());
QString Insert_Position(int date_id, int time_id, const Types::TBallbar_Item& position);
/// For each set its ids and the first and last row of its positions.
QString Select_Rows();

QString Delete_Summary(int date_id, int time_id);
QString Insert_Summary(int date_id, int time_id, const TDatabaseItem& item);

/// A number that changes whenever another connection has changed the database.
QString Select_Version();
QString Begin();
QString Commit();
QString Roll_Back();
/// Locks out readers and writers at once, where Begin() locks out writers at the first change.
QString Begin_Alone();
/// Writes a consistent copy of the whole database into a file that does not exist yet.
QString Copy_Into(const QString& file);
/// How long statements wait for a lock, milliseconds.
QString Set_Busy_Timeout(int timeout);
/// Switches the bulk mode on or off: the database stays locked for others from the first change on, and no
/// change waits for the disk. What ends it also brings everything to the disk and takes the lock off.
QStringList Set_Bulk_Mode(bool bulk);

} // namespace Statements

// SPDX-License-Identifier: MIT
#pragma once

#include "databaseitem.h"

#include <QString>

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

/// The positions of one set; the columns are those that Insert_Position() fills, less the two ids.
QString Select_Positions(int date_id, int time_id);
QString Delete_Positions(int date_id, int time_id);
QString Insert_Position(int date_id, int time_id, const Types::TBallbar_Item& position);

QString Delete_Summary(int date_id, int time_id);
QString Insert_Summary(int date_id, int time_id, const TDatabaseItem& item);

QString Begin();
QString Commit();
QString Roll_Back();
/// Asks for the right to write at once, where Begin() asks for it at the first change.
QString Begin_Writing();
/// Writes a consistent copy of the whole database into a file that does not exist yet.
QString Copy_Into(const QString& file);

} // namespace Statements

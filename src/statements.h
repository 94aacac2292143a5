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

inline const QString SELECT_TABLES = QStringLiteral("SELECT name FROM sqlite_master WHERE type='table'");
QString Delete_All(const TTable& table);
/// Deletes one row of table date or time.
QString Delete_Row(const QString& table, int id);

inline const QString SELECT_DATES = QStringLiteral("SELECT entry FROM date");
QString Select_Date_Id(const QString& date);
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
inline const QString SELECT_ALL_DATES = QStringLiteral("SELECT date_id,entry FROM date");
inline const QString SELECT_ALL_TIMES = QStringLiteral("SELECT date_id,time_id,entry FROM time");
inline const QString SELECT_ALL_ROWS =
    QStringLiteral("SELECT date_id,time_id,min(rowid),max(rowid) FROM data GROUP BY date_id,time_id");

inline const QString BEGIN = QStringLiteral("BEGIN TRANSACTION");
inline const QString COMMIT = QStringLiteral("COMMIT");
inline const QString ROLL_BACK = QStringLiteral("ROLLBACK");
/// Locks out readers and writers at once, where BEGIN locks out writers at the first change.
inline const QString BEGIN_ALONE = QStringLiteral("BEGIN EXCLUSIVE");
/// The lock stays when the transaction ends, or is given back then.
inline const QString KEEP_LOCK = QStringLiteral("PRAGMA locking_mode=EXCLUSIVE");
inline const QString GIVE_LOCK_BACK = QStringLiteral("PRAGMA locking_mode=NORMAL");
/// Writes a consistent copy of the whole database into a file that does not exist yet.
QString Copy_Into(const QString& file);

/// A transaction within the transaction, for one set. UNDO_SET does not end it: END_SET must follow.
inline const QString BEGIN_SET = QStringLiteral("SAVEPOINT one_set");
inline const QString END_SET = QStringLiteral("RELEASE one_set");
inline const QString UNDO_SET = QStringLiteral("ROLLBACK TO one_set");

} // namespace Statements

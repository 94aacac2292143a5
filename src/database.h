// SPDX-License-Identifier: MIT
#pragma once

#include "databasestatements.h"

#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

class QSqlDatabase;
class QSqlQuery;

/// Measurement sets in a SQLite file, each under a date and a time. There is one connection, known to Qt as
/// "ballbar_database", so one object of this class at a time. Whatever fails says so by its result and leaves
/// a text in Last_Error(); a success leaves an older text there.
class TDatabase
{
public:
    /// How many copies Keep_Copy() leaves beside the database.
    static constexpr int COPIES_KEPT = 5;
    /// How long a statement waits for another process that has locked the database, milliseconds: long enough
    /// for somebody else's save, short enough for a window to wait.
    static constexpr int BUSY_TIMEOUT = 500;

    TDatabase();
    ~TDatabase();
    TDatabase(const TDatabase&) = delete;
    TDatabase& operator=(const TDatabase&) = delete;

    /// Opens the file, which is created where it is missing. Creates no tables: Initialize() comes next.
    bool Connect(const QString& file);
    /// Creates the tables that are missing; existing ones are never altered.
    bool Initialize();
    void Disconnect();
    bool Is_Connected() const;

    /// Deletes every set. Failures are not reported.
    void Clear();
    /// Writes a dated copy of the whole database beside it and removes the oldest copies. Fails also where
    /// the database cannot be written just now, so that a success allows to replace its content.
    bool Keep_Copy();

    /// For many changes in a row: each is quick and survives the end of the program, but not a power failure,
    /// and other processes are kept out. When the mode ends, everything is brought to the disk.
    void Set_Bulk_Mode(bool bulk);

    /// Row identifiers, -1 where there is none.
    int Date_Id(const QString& date) const;
    int Time_Id(int date_id, const QString& time) const;
    bool Date_Exists(const QString& date) const;
    bool Time_Exists(const QString& date, const QString& time) const;

    /// The dates in the order they were stored. `valid`, never null (asserted), tells whether they were read.
    QStringList Date_List(bool* valid) const;
    /// The times under one date in the order they were stored.
    QStringList Time_List(const QString& date, bool* valid) const;
    /// One set, its statistics computed from its positions. A set without positions is valid and carries the
    /// present date and time.
    TDatabaseItem Database_Item(const QString& date, const QString& time, bool* valid) const;

    /// Stores a set with the statistics it carries, in place of one under the same date and time.
    bool Add_Database_Item(const TDatabaseItem& item);

    const QString& Last_Error() const { return d_last_error; }

private:
    /// The rows of each set's positions by date and time id.
    using TRowMap = std::map<std::pair<int, int>, Statements::TRows>;

    bool Fail(const QString& error) const;
    void Remove_Connection();
    QSqlQuery Query() const;
    bool Execute(QSqlQuery* query, const QString& statement) const;
    bool Read_All(QSqlQuery* query, const std::function<void()>& read) const;
    void Wait_For_Locks(bool wait) const;
    bool Change(QSqlQuery* query, const QString& statement, const QString& failure);
    bool Change(const QString& statement, const QString& failure);
    void Change_Or_Not(const QString& statement);
    int First_Id(const QString& statement, const QString& failure) const;
    QStringList First_Column(const QString& statement, bool* valid) const;
    Statements::TRows Rows_Of(int date_id, int time_id) const;
    void Find_Rows() const;
    void Forget_Rows() const;
    int Make_Date_Id(const QString& date);
    int Make_Time_Id(int date_id, const QString& time);
    bool Replace_Positions(int date_id, int time_id, const TDatabaseItem& item);
    bool Insert_Positions(int date_id, int time_id, const TDatabaseItem& item);

    QString d_connection_name;
    QString d_database_file_name;
    std::unique_ptr<QSqlDatabase> d_database;
    mutable QString d_last_error;
    mutable bool d_waits_for_locks{true};
    mutable std::optional<TRowMap> d_rows; ///< none while they are not known
    mutable qint64 d_rows_version{-1};     ///< of the database that d_rows belongs to
    mutable bool d_rows_wanted{false};     ///< the next look-up will not be the first
};

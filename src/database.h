// SPDX-License-Identifier: MIT
#pragma once

#include "databaseconnection.h"
#include "statements.h"

#include <QStringList>

/// Measurement sets in a SQLite file, each under a date and a time. There is one connection, so one object of
/// this class at a time. Whatever fails says so by its result and leaves a text in Last_Error(); a success
/// leaves an older text there.
class TDatabase : private TDatabaseConnection
{
public:
    /// How many copies Replace_All() leaves beside the database.
    static constexpr int COPIES_KEPT = 5;

    /// While an object of this class lives, all that is read is of one state of the database, and each
    /// look-up is quick. A lock of another process is met at the start only; then nothing can be read. An
    /// object within another reading, or within a replacement, does nothing.
    class TReading
    {
    public:
        explicit TReading(TDatabase* database);
        ~TReading();
        TReading(const TReading&) = delete;
        TReading& operator=(const TReading&) = delete;

    private:
        TDatabase* d_database; ///< null where the reading is not the outer one
    };

    TDatabase();
    ~TDatabase();
    TDatabase(const TDatabase&) = delete;
    TDatabase& operator=(const TDatabase&) = delete;

    using TDatabaseConnection::Connect; ///< creates no tables: Initialize() comes next
    using TDatabaseConnection::Disconnect;
    using TDatabaseConnection::Is_Connected;
    using TDatabaseConnection::Last_Error;
    /// Creates the tables that are missing; existing ones are never altered.
    bool Initialize();

    /// Deletes every set. Failures are not reported.
    void Clear();
    /// Replaces all sets by those that `fill` adds. After a failure, a kill or a power cut all the old sets
    /// are there. Other processes are locked out meanwhile. A dated copy of the old database stays beside it.
    /// A set that the database does not accept is left out; Add_Database_Item() returns false for it.
    bool Replace_All(const std::function<void()>& fill);

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

private:
    struct TScope;

    QStringList First_Column(const QString& statement, bool* valid) const;
    int Found(int id, const QString& not_found) const;
    bool Know(int table) const;
    bool Read_Into_Catalogue(int table) const;
    bool Lock_And_Copy(const QString& copy);
    bool Keep_Copy(const QString& copy, const QString& failure);
    int Make_Row(const QString& table, const QString& not_found, const QString& select,
                 const QString& insert);
    int Insert_Row(const QString& table, const QString& insert);
    bool Replace_Positions(int date_id, int time_id, const TDatabaseItem& item);
    bool Insert_Positions(int date_id, int time_id, const TDatabaseItem& item, Statements::TRows* rows);
    bool Add_To_Replacement(const TDatabaseItem& item);
    bool Insert_Set(const TDatabaseItem& item);

    std::unique_ptr<TScope> d_scope; ///< of a reading or a replacement that is under way
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <memory>

class QSqlDatabase;
class QSqlQuery;

/// The connection to a SQLite file, known to Qt as "ballbar_database", and the way in which statements are
/// executed on it. What fails returns false and leaves a text in Last_Error(); a success leaves an older
/// text.
class TDatabaseConnection
{
public:
    TDatabaseConnection();
    ~TDatabaseConnection();
    TDatabaseConnection(const TDatabaseConnection&) = delete;
    TDatabaseConnection& operator=(const TDatabaseConnection&) = delete;

    /// Opens the file, which is created where it is missing.
    bool Connect(const QString& file);
    void Disconnect();
    bool Is_Connected() const;

    const QString& Last_Error() const { return d_last_error; }

protected:
    /// Whether SQLite refused what failed last because it breaks a rule of the database or is too large.
    bool Was_Refused() const;
    const QString& File_Name() const { return d_database_file_name; }
    /// Returns false and leaves a text: all of it, or what failed and why.
    bool Fail(const QString& error) const;
    bool Fail(const QString& failure, const QString& reason) const;

    /// Calls `read` for every row that a statement finds. Fails also where the rows break off: a damaged file
    /// shows only when the reading comes to its damaged page.
    bool Read(const QString& statement, const std::function<void(const QSqlQuery& row)>& read) const;
    /// The first value of the first row, or -1 with the text `not_found`. Where the statement could not be
    /// executed `reason` tells why.
    int First_Id(const QString& statement, const QString& not_found, QString* reason = nullptr) const;
    /// Executes a statement that must succeed: otherwise `failure` and the driver's words become the last
    /// error. `row` receives the row that an insert has made; one that a trigger left out is a failure.
    bool Run(const QString& statement, const QString& failure, qint64* row = nullptr);
    /// Executes a statement that may fail without a word.
    void Try(const QString& statement);

private:
    bool Execute(QSqlQuery* query, const QString& statement) const;
    void Remove_Connection();

    QString d_connection_name;
    QString d_database_file_name;
    std::unique_ptr<QSqlDatabase> d_database;
    std::unique_ptr<QSqlQuery> d_query; ///< runs all that is not read: a set may have thousands of inserts
    mutable QString d_last_error;
    mutable int d_last_code{0}; ///< SQLite's number of what failed last
};

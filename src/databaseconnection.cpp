// SPDX-License-Identifier: MIT
#include "databaseconnection.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace
{

const QString DRIVER = QStringLiteral("QSQLITE");

// SQLite's numbers for a change that breaks a rule of the database, or is too large for it.
constexpr int TOO_BIG = 18;
constexpr int CONSTRAINT = 19;

QString Open_Error(const QSqlError& error, const QString& file)
{
    QString text = QStringLiteral("Cannot open database.\n\tDatabase Error: '%1'\n\tDriver Error: '%2'\n"
                                  "\t\tDatabase File Name: '%3'\n")
                       .arg(error.databaseText(), error.driverText(), file);
    text += QLatin1String("\tAvailable database drivers:\n");
    const QStringList drivers = QSqlDatabase::drivers();
    for (const QString& driver : drivers)
        text += QStringLiteral("\t\t%1\n").arg(driver);
    return text;
}

} // namespace

TDatabaseConnection::TDatabaseConnection()
    : d_connection_name(QStringLiteral("ballbar_database")), d_database(std::make_unique<QSqlDatabase>())
{
}

TDatabaseConnection::~TDatabaseConnection()
{
    Disconnect();
}

bool TDatabaseConnection::Connect(const QString& file)
{
    if (!QSqlDatabase::isDriverAvailable(DRIVER))
        return Fail(QStringLiteral("Database driver 'QSQLITE' not available"));

    const bool registered = QSqlDatabase::contains(d_connection_name);
    d_database =
        std::make_unique<QSqlDatabase>(registered ? QSqlDatabase::database(d_connection_name, true)
                                                  : QSqlDatabase::addDatabase(DRIVER, d_connection_name));
    d_database->setDatabaseName(file);
    if (!d_database->open()) {
        // The text names the file that was open before, not the one that failed.
        const QString error = Open_Error(d_database->lastError(), d_database_file_name);
        Remove_Connection();
        return Fail(error);
    }
    d_database_file_name = file;
    d_query = std::make_unique<QSqlQuery>(*d_database);
    return true;
}

void TDatabaseConnection::Disconnect()
{
    if (!d_database)
        return;
    d_database->close();
    Remove_Connection();
}

bool TDatabaseConnection::Is_Connected() const
{
    return d_database && d_database->isOpen();
}

bool TDatabaseConnection::Was_Refused() const
{
    return d_last_code == CONSTRAINT || d_last_code == TOO_BIG;
}

bool TDatabaseConnection::Fail(const QString& error) const
{
    d_last_error = error;
    return false;
}

bool TDatabaseConnection::Fail(const QString& failure, const QString& reason) const
{
    return Fail(QStringLiteral("%1.  Reason: %2").arg(failure, reason));
}

bool TDatabaseConnection::Read(const QString& statement,
                               const std::function<void(const QSqlQuery& row)>& read) const
{
    if (!Is_Connected())
        return Fail(QStringLiteral("Not connected"));
    QSqlQuery query(*d_database);
    query.setForwardOnly(true); // no row is visited twice, so none need be kept
    if (!Execute(&query, statement))
        return false;
    while (query.next())
        read(query);
    return !query.lastError().isValid() || Fail(query.lastError().text());
}

int TDatabaseConnection::First_Id(const QString& statement, const QString& not_found, QString* reason) const
{
    int id = -1;
    const bool read = Read(statement, [&id](const QSqlQuery& row) {
        if (id < 0)
            id = row.value(0).toInt();
    });
    if (reason && !read)
        *reason = d_last_error;
    if (id < 0 && Is_Connected())
        Fail(not_found);
    return id;
}

bool TDatabaseConnection::Run(const QString& statement, const QString& failure, qint64* row)
{
    bool good = Execute(d_query.get(), statement);
    if (good && row) {
        *row = d_query->lastInsertId().toLongLong();
        good = d_query->numRowsAffected() > 0 || Fail(QStringLiteral("A trigger left the row out"));
        d_last_code = good ? d_last_code : CONSTRAINT;
    }
    d_query->finish();
    return good || Fail(failure, d_last_error);
}

void TDatabaseConnection::Try(const QString& statement)
{
    const QString last_error = d_last_error;
    if (!Run(statement, QString()))
        d_last_error = last_error;
}

// Every statement comes by here, and a failure leaves the driver's words.
bool TDatabaseConnection::Execute(QSqlQuery* query, const QString& statement) const
{
    if (query->exec(statement))
        return true;
    const QSqlError error = query->lastError();
    d_last_code = error.nativeErrorCode().toInt() & 0xff; // without what SQLite adds in the higher bits
    return Fail(error.text());
}

void TDatabaseConnection::Remove_Connection()
{
    d_query.reset(); // Qt complains about a connection that still has a user
    d_database.reset();
    if (QSqlDatabase::contains(d_connection_name))
        QSqlDatabase::removeDatabase(d_connection_name);
}

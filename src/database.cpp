// SPDX-License-Identifier: MIT
#include "database.h"

#include "keptcopies.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cassert>

namespace
{

const char* const DRIVER = "QSQLITE";
const char* const BUSY = "5"; // SQLite's code for a database that another process has locked

constexpr Statements::TRows NO_ROWS{std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()};

// The row of Statements::Select_Positions().
Types::TBallbar_Item Position_Of(const QSqlQuery& row)
{
    const auto number = [&row](int column) { return row.value(column).toDouble(); };
    Types::TBallbar_Item position;
    position.name = row.value(0).toString();
    position.sph1 = {number(1), number(2), number(3)};
    position.sph2 = {number(4), number(5), number(6)};
    position.sph1_form = number(7);
    position.sph2_form = number(8);
    position.tool = {number(9), number(10), number(11)};
    return position;
}

QString Open_Error(const QSqlError& error, const QString& file)
{
    QString text = QString("Cannot open database.\n\tDatabase Error: '%1'\n\tDriver Error: '%2'\n"
                           "\t\tDatabase File Name: '%3'\n")
                       .arg(error.databaseText(), error.driverText(), file);
    text += "\tAvailable database drivers:\n";
    const QStringList drivers = QSqlDatabase::drivers();
    for (const QString& driver : drivers)
        text += QString("\t\t%1\n").arg(driver);
    return text;
}

} // namespace

TDatabase::TDatabase() : d_connection_name("ballbar_database"), d_database(std::make_unique<QSqlDatabase>())
{
}

TDatabase::~TDatabase()
{
    Disconnect();
}

bool TDatabase::Connect(const QString& file)
{
    if (!QSqlDatabase::isDriverAvailable(DRIVER))
        return Fail("Database driver 'QSQLITE' not available");

    const bool registered = QSqlDatabase::contains(d_connection_name);
    d_database =
        std::make_unique<QSqlDatabase>(registered ? QSqlDatabase::database(d_connection_name, true)
                                                  : QSqlDatabase::addDatabase(DRIVER, d_connection_name));
    d_database->setConnectOptions(QString("QSQLITE_BUSY_TIMEOUT=%1").arg(BUSY_TIMEOUT));
    d_database->setDatabaseName(file);
    if (!d_database->open()) {
        // The text names the file that was open before, not the one that failed.
        const QString error = Open_Error(d_database->lastError(), d_database_file_name);
        Remove_Connection();
        return Fail(error);
    }
    d_database_file_name = file;
    d_waits_for_locks = true;
    Forget_Rows();
    return true;
}

bool TDatabase::Initialize()
{
    if (!Is_Connected())
        return Fail("Database not open");

    const QStringList tables = d_database->tables();
    for (const Statements::TTable& table : Statements::TABLES) {
        QSqlQuery query = Query();
        if (!tables.contains(table.name, Qt::CaseInsensitive) && !Execute(&query, table.create))
            return Fail(QString("Cannot create table '%1(...)'").arg(table.name));
    }
    return true;
}

void TDatabase::Disconnect()
{
    if (!d_database)
        return;
    d_database->close();
    Remove_Connection();
}

bool TDatabase::Is_Connected() const
{
    return d_database && d_database->isOpen();
}

void TDatabase::Clear()
{
    if (!Is_Connected())
        return;
    Forget_Rows();
    Change_Or_Not(Statements::Roll_Back());
    for (const Statements::TTable& table : Statements::TABLES)
        Change_Or_Not(Statements::Delete_All(table));
}

bool TDatabase::Keep_Copy()
{
    if (!Is_Connected())
        return Fail("Not connected");
    Change_Or_Not(Statements::Roll_Back());
    const QString failure = "Cannot keep a copy of the database";
    if (!Change(Statements::Begin_Alone(), failure))
        return false;
    Change_Or_Not(Statements::Roll_Back());

    const QString copy = Kept_Copies::File_Name(d_database_file_name, QDateTime::currentDateTime());
    const QString unfinished =
        d_database_file_name + ".copy"; // one that a killed program left is overwritten
    QFile::remove(unfinished);
    if (!Change(Statements::Copy_Into(unfinished), failure)) {
        QFile::remove(unfinished);
        return false;
    }
    if (!Kept_Copies::Put_In_Place(unfinished, copy)) {
        QFile::remove(unfinished);
        return Fail(failure + ".  Reason: '" + copy + "' cannot be written");
    }
    Kept_Copies::Remove_Old(d_database_file_name, COPIES_KEPT, copy);
    return true;
}

void TDatabase::Set_Bulk_Mode(bool bulk)
{
    if (!Is_Connected())
        return;
    Change_Or_Not(Statements::Roll_Back());
    const QStringList statements = Statements::Set_Bulk_Mode(bulk);
    for (const QString& statement : statements)
        Change_Or_Not(statement);
}

int TDatabase::Date_Id(const QString& date) const
{
    return First_Id(Statements::Select_Date_Id(date), "Date not found.");
}

int TDatabase::Time_Id(int date_id, const QString& time) const
{
    return First_Id(Statements::Select_Time_Id(date_id, time), "Time not found.");
}

bool TDatabase::Date_Exists(const QString& date) const
{
    return Date_Id(date) >= 0;
}

bool TDatabase::Time_Exists(const QString& date, const QString& time) const
{
    const int date_id = Date_Id(date);
    const int time_id = date_id < 0 ? -1 : Time_Id(date_id, time);
    if (time_id < 0)
        return false;
    QSqlQuery query = Query();
    return Execute(&query, Statements::Select_Time(date_id, time_id)) && query.next();
}

QStringList TDatabase::Date_List(bool* valid) const
{
    return First_Column(Statements::Select_Dates(), valid);
}

QStringList TDatabase::Time_List(const QString& date, bool* valid) const
{
    assert(valid);
    *valid = false;
    const int date_id = Date_Id(date);
    return date_id < 0 ? QStringList() : First_Column(Statements::Select_Times(date_id), valid);
}

TDatabaseItem TDatabase::Database_Item(const QString& date, const QString& time, bool* valid) const
{
    assert(valid);
    *valid = false;
    TDatabaseItem item;
    const int date_id = Date_Id(date);
    const int time_id = date_id < 0 ? -1 : Time_Id(date_id, time);
    if (time_id < 0)
        return item;

    QSqlQuery query = Query();
    if (!Execute(&query, Statements::Select_Positions(date_id, time_id, Rows_Of(date_id, time_id))))
        return item;
    if (!Read_All(&query, [&] { item.Add_Ballbar(Position_Of(query)); }))
        return TDatabaseItem();
    if (item.Ballbar_Count() > 0) {
        item.Set_Date(date);
        item.Set_Time(time);
    }
    item.Update_Stats();
    *valid = true;
    return item;
}

bool TDatabase::Add_Database_Item(const TDatabaseItem& item)
{
    if (!Is_Connected())
        return Fail("Not connected");
    // A failed save leaves its transaction open; what it had written must not be committed with this set.
    Change_Or_Not(Statements::Roll_Back());

    const int date_id = Make_Date_Id(item.Date());
    const int time_id = date_id < 0 ? -1 : Make_Time_Id(date_id, item.Time());
    if (time_id < 0)
        return false;
    return Replace_Positions(date_id, time_id, item) &&
           Change(Statements::Delete_Summary(date_id, time_id), "Cannot delete existing summary data") &&
           Change(Statements::Insert_Summary(date_id, time_id, item), "Cannot add data to table 'summary'");
}

// The row of the date, inserted where there is none. After an insert the id is looked up: a table that takes
// rows but cannot be read gives -1, under which a set would never be found again.
int TDatabase::Make_Date_Id(const QString& date)
{
    const int date_id = Date_Id(date);
    if (date_id >= 0)
        return date_id;
    return Change(Statements::Insert_Date(date), "Cannot add data to table 'date'") ? Date_Id(date) : -1;
}

int TDatabase::Make_Time_Id(int date_id, const QString& time)
{
    const int time_id = Time_Id(date_id, time);
    if (time_id >= 0)
        return time_id;
    return Change(Statements::Insert_Time(date_id, time), "Cannot add data to table 'time'")
               ? Time_Id(date_id, time)
               : -1;
}

bool TDatabase::Replace_Positions(int date_id, int time_id, const TDatabaseItem& item)
{
    const bool replaced = Change(Statements::Delete_Positions(date_id, time_id, Rows_Of(date_id, time_id)),
                                 "Cannot delete existing ballbar data") &&
                          Insert_Positions(date_id, time_id, item);
    if (!replaced)
        Forget_Rows();
    return replaced;
}

// Where a position is refused the transaction stays open: the next change rolls it back.
bool TDatabase::Insert_Positions(int date_id, int time_id, const TDatabaseItem& item)
{
    const QString failure = "Cannot add data to table 'data'";
    Change_Or_Not(Statements::Begin());
    Statements::TRows rows = NO_ROWS;
    QSqlQuery query = Query();
    for (const Types::TBallbar_Item& position : item.Ballbar_Items()) {
        if (!Change(&query, Statements::Insert_Position(date_id, time_id, position), failure))
            return false;
        rows.last = query.lastInsertId().toLongLong();
        rows.first = std::min(rows.first, rows.last);
    }
    if (d_rows)
        d_rows->insert_or_assign({date_id, time_id}, rows);
    // Unlike a failed begin, a failed commit would lose the set; left open it would keep other processes out.
    if (Change(Statements::Commit(), failure))
        return true;
    Change_Or_Not(Statements::Roll_Back());
    return false;
}

bool TDatabase::Fail(const QString& error) const
{
    d_last_error = error;
    return false;
}

void TDatabase::Remove_Connection()
{
    d_database.reset(); // Qt complains about a connection that still has a handle
    if (QSqlDatabase::contains(d_connection_name))
        QSqlDatabase::removeDatabase(d_connection_name);
}

QSqlQuery TDatabase::Query() const
{
    QSqlQuery query(*d_database);
    query.setForwardOnly(true); // no row is visited twice, so none need be kept
    return query;
}

// Every statement runs here, and a failure leaves the driver's words. After one that waited for a lock in
// vain the others do not wait until one succeeds, or a thousand reads would hold up the window for minutes.
bool TDatabase::Execute(QSqlQuery* query, const QString& statement) const
{
    const bool good = query->exec(statement);
    if (good && !d_waits_for_locks)
        Wait_For_Locks(true);
    if (good)
        return true;
    const QSqlError error = query->lastError();
    if (error.nativeErrorCode() == BUSY && d_waits_for_locks)
        Wait_For_Locks(false);
    return Fail(error.text());
}

// Calls `read` for every row. Returns false where the rows break off: a damaged file shows only when the
// reading comes to its damaged page.
bool TDatabase::Read_All(QSqlQuery* query, const std::function<void()>& read) const
{
    while (query->next())
        read();
    const QSqlError error = query->lastError();
    return !error.isValid() || Fail(error.text());
}

void TDatabase::Wait_For_Locks(bool wait) const
{
    d_waits_for_locks = wait;
    Query().exec(Statements::Set_Busy_Timeout(wait ? BUSY_TIMEOUT : 0));
}

// A statement that must succeed, or `failure` and the driver's words become the last error.
bool TDatabase::Change(QSqlQuery* query, const QString& statement, const QString& failure)
{
    return Execute(query, statement) || Fail(failure + ".  Reason: " + d_last_error);
}

bool TDatabase::Change(const QString& statement, const QString& failure)
{
    QSqlQuery query = Query();
    return Change(&query, statement, failure);
}

// A statement that may fail without a word.
void TDatabase::Change_Or_Not(const QString& statement)
{
    const QString last_error = d_last_error;
    QSqlQuery query = Query();
    if (!Execute(&query, statement))
        d_last_error = last_error;
}

int TDatabase::First_Id(const QString& statement, const QString& failure) const
{
    if (!Is_Connected()) {
        Fail("Not connected");
        return -1;
    }
    QSqlQuery query = Query();
    if (Execute(&query, statement) && query.next())
        return query.value(0).toInt();
    Fail(failure);
    return -1;
}

QStringList TDatabase::First_Column(const QString& statement, bool* valid) const
{
    assert(valid);
    *valid = false;
    QStringList texts;
    if (!Is_Connected()) {
        Fail("Not connected");
        return texts;
    }
    QSqlQuery query = Query();
    *valid = Execute(&query, statement) && Read_All(&query, [&] { texts.append(query.value(0).toString()); });
    return *valid ? texts : QStringList();
}

// Without indexes each look-up of a set's positions scans the whole table. From the second one on it pays to
// find the rows of all sets in one pass. Our own saves keep that up to date, the version tells of others'.
Statements::TRows TDatabase::Rows_Of(int date_id, int time_id) const
{
    QSqlQuery query = Query();
    const bool known = Execute(&query, Statements::Select_Version()) && query.next();
    const qint64 version = known ? query.value(0).toLongLong() : -1;
    if (version != d_rows_version)
        Forget_Rows();
    d_rows_version = version;
    if (known && d_rows_wanted && !d_rows)
        Find_Rows();
    d_rows_wanted = true;
    if (!d_rows)
        return {};
    const auto rows = d_rows->find({date_id, time_id});
    return rows == d_rows->end() ? NO_ROWS : rows->second;
}

void TDatabase::Find_Rows() const
{
    QSqlQuery query = Query();
    if (!Execute(&query, Statements::Select_Rows()))
        return;
    TRowMap rows;
    const auto value = [&query](int column) { return query.value(column).toLongLong(); };
    if (Read_All(&query, [&] {
            rows[{static_cast<int>(value(0)), static_cast<int>(value(1))}] = {value(2), value(3)};
        }))
        d_rows = std::move(rows);
}

void TDatabase::Forget_Rows() const
{
    d_rows.reset();
    d_rows_wanted = false;
}

// SPDX-License-Identifier: MIT
#include "database.h"

#include "databasecatalogue.h"
#include "keptcopies.h"

#include <QFile>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cassert>

namespace
{

const QString DATE = QStringLiteral("date");
const QString TIME = QStringLiteral("time");
const QString DATE_NOT_FOUND = QStringLiteral("Date not found.");
const QString TIME_NOT_FOUND = QStringLiteral("Time not found.");
const QString DATA_FAILURE = QStringLiteral("Cannot add data to table 'data'");
const QString SUMMARY_FAILURE = QStringLiteral("Cannot add data to table 'summary'");
const QString DELETE_FAILURE = QStringLiteral("Cannot delete existing ballbar data");

// The tables that fill a catalogue, in this order.
enum TTable
{
    DATES,
    TIMES,
    POSITIONS,
    ALL_TABLES
};

QString Insert_Failure(const QString& table)
{
    return QStringLiteral("Cannot add data to table '%1'").arg(table);
}

// The row of Statements::Select_Positions().
Types::TBallbar_Item Position_Of(const QSqlQuery& row)
{
    Types::TBallbar_Item position;
    position.name = row.value(0).toString();
    int column = 0;
    for (double* number : Stored_Numbers(position))
        *number = row.value(++column).toDouble();
    return position;
}

} // namespace

// What is known while a reading or a replacement is under way.
struct TDatabase::TScope
{
    TDatabaseCatalogue catalogue;
    bool replacing{false};
    int known{DATES}; // the first table that the catalogue does not hold yet
    QString failure;  // why nothing more can be read, or why everything stays as it was
};

TDatabase::TReading::TReading(TDatabase* database)
    : d_database(database->d_scope || !database->Is_Connected() ? nullptr : database)
{
    if (!d_database)
        return;
    d_database->Try(Statements::ROLL_BACK); // a failed save may have left a part of a set
    d_database->d_scope = std::make_unique<TScope>();
    d_database->Try(Statements::BEGIN);
    d_database->Know(TIMES);
}

TDatabase::TReading::~TReading()
{
    if (!d_database)
        return;
    d_database->d_scope.reset();
    d_database->Try(Statements::ROLL_BACK);
}

TDatabase::TDatabase() = default;

TDatabase::~TDatabase() = default;

bool TDatabase::Initialize()
{
    if (!Is_Connected())
        return Fail(QStringLiteral("Database not open"));

    bool valid = false; // Qt's own list is empty, without a word, while another process has the lock
    const QStringList tables = First_Column(Statements::SELECT_TABLES, &valid);
    if (!valid)
        return Fail(QStringLiteral("Cannot read the list of tables"), Last_Error());
    Try(Statements::BEGIN); // one wait for the disk instead of one for each table
    for (const Statements::TTable& table : Statements::TABLES) {
        if (!tables.contains(table.name, Qt::CaseInsensitive) && !Run(table.create, QString())) {
            Try(Statements::ROLL_BACK);
            return Fail(QStringLiteral("Cannot create table '%1(...)'").arg(table.name));
        }
    }
    if (Run(Statements::COMMIT, QStringLiteral("Cannot create the tables")))
        return true;
    Try(Statements::ROLL_BACK); // left open it would lock other processes out
    return false;
}

void TDatabase::Clear()
{
    if (!Is_Connected())
        return;
    Try(Statements::ROLL_BACK);
    for (const Statements::TTable& table : Statements::TABLES)
        Try(Statements::Delete_All(table));
}

bool TDatabase::Replace_All(const std::function<void()>& fill)
{
    if (!Is_Connected())
        return Fail(QStringLiteral("Not connected"));
    Try(Statements::ROLL_BACK);
    const QString copy = KeptCopies::File_Name(File_Name(), QDateTime::currentDateTime());
    if (!Lock_And_Copy(copy))
        return false;

    const QString failure = QStringLiteral("Cannot replace the database");
    d_scope = std::make_unique<TScope>();
    d_scope->replacing = true;
    d_scope->known = ALL_TABLES; // which are empty
    for (const Statements::TTable& table : Statements::TABLES) {
        if (d_scope->failure.isEmpty() && !Run(Statements::Delete_All(table), failure))
            d_scope->failure = Last_Error();
    }
    if (d_scope->failure.isEmpty())
        fill();
    const std::unique_ptr<TScope> scope = std::move(d_scope);
    // Only after a success, or restores that fail one after the other would push out the good copies. Before
    // the commit, while no other process can make copies of its own.
    if (scope->failure.isEmpty())
        KeptCopies::Remove_Old(File_Name(), COPIES_KEPT, copy);
    if (scope->failure.isEmpty() && Run(Statements::COMMIT, failure))
        return true;
    Try(Statements::ROLL_BACK);
    return Fail(scope->failure.isEmpty() ? Last_Error() : scope->failure);
}

// Locks others out and copies the database. The transaction that it leaves open holds the lock. A copy cannot
// be made within a transaction, so the lock is kept from one transaction to the next.
bool TDatabase::Lock_And_Copy(const QString& copy)
{
    const QString failure = QStringLiteral("Cannot keep a copy of the database");
    if (!Run(Statements::BEGIN_ALONE, failure))
        return false;
    // A database that may only be read lets itself be locked, but not be changed.
    const bool writable =
        Run(Statements::KEEP_LOCK, failure) && Run(Statements::Delete_All(Statements::TABLES[0]), failure);
    Try(Statements::ROLL_BACK);
    const bool copied = writable && Keep_Copy(copy, failure);
    QString error = Last_Error();
    const bool begun = Run(Statements::BEGIN_ALONE, failure);
    Try(Statements::GIVE_LOCK_BACK);
    if (copied && begun)
        return true;
    if (copied)
        error = Last_Error();
    Try(Statements::ROLL_BACK);
    Try(Statements::SELECT_DATES); // without a transaction, a lock is given back by the next statement
    return Fail(error);
}

bool TDatabase::Keep_Copy(const QString& copy, const QString& failure)
{
    const QString unfinished = KeptCopies::Unfinished_File(File_Name());
    KeptCopies::Remove_Leftovers(File_Name());
    if (!Run(Statements::Copy_Into(unfinished), failure)) {
        QFile::remove(unfinished);
        return false;
    }
    if (!KeptCopies::Put_In_Place(unfinished, copy)) {
        QFile::remove(unfinished);
        return Fail(failure, QStringLiteral("'%1' cannot be written").arg(copy));
    }
    return true;
}

int TDatabase::Date_Id(const QString& date) const
{
    return d_scope ? Found(d_scope->catalogue.Date_Id(date), DATE_NOT_FOUND)
                   : First_Id(Statements::Select_Date_Id(date), DATE_NOT_FOUND);
}

int TDatabase::Time_Id(int date_id, const QString& time) const
{
    return d_scope ? Found(d_scope->catalogue.Time_Id(date_id, time), TIME_NOT_FOUND)
                   : First_Id(Statements::Select_Time_Id(date_id, time), TIME_NOT_FOUND);
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
    bool valid = false;
    return !First_Column(Statements::Select_Time(date_id, time_id), &valid).isEmpty();
}

QStringList TDatabase::Date_List(bool* valid) const
{
    assert(valid);
    if (!d_scope)
        return First_Column(Statements::SELECT_DATES, valid);
    *valid = Know(DATES);
    return *valid ? d_scope->catalogue.Dates() : QStringList();
}

QStringList TDatabase::Time_List(const QString& date, bool* valid) const
{
    assert(valid);
    *valid = false;
    const int date_id = Date_Id(date);
    if (date_id < 0)
        return {};
    if (!d_scope)
        return First_Column(Statements::Select_Times(date_id), valid);
    *valid = Know(TIMES);
    return *valid ? d_scope->catalogue.Times(date_id) : QStringList();
}

TDatabaseItem TDatabase::Database_Item(const QString& date, const QString& time, bool* valid) const
{
    assert(valid);
    *valid = false;
    TDatabaseItem item;
    const int date_id = Date_Id(date);
    const int time_id = date_id < 0 ? -1 : Time_Id(date_id, time);
    if (time_id < 0 || (d_scope && !Know(POSITIONS)))
        return item;

    const Statements::TRows rows = d_scope ? d_scope->catalogue.Rows(date_id, time_id) : Statements::TRows();
    if (!Read(Statements::Select_Positions(date_id, time_id, rows),
              [&item](const QSqlQuery& row) { item.Add_Ballbar(Position_Of(row)); }))
        return TDatabaseItem();
    if (item.Ballbar_Count() > 0) {
        item.Set_Date(date);
        item.Set_Time(time);
    }
    item.Update_Stats();
    *valid = true;
    return item;
}

// Whether the catalogue holds a table, which is read when it is asked for first.
bool TDatabase::Know(int table) const
{
    while (d_scope->known <= table && d_scope->failure.isEmpty()) {
        if (Read_Into_Catalogue(d_scope->known))
            ++d_scope->known;
        else
            d_scope->failure = Last_Error();
    }
    return d_scope->known > table || Fail(d_scope->failure);
}

bool TDatabase::Read_Into_Catalogue(int table) const
{
    TDatabaseCatalogue& catalogue = d_scope->catalogue;
    if (table == DATES)
        return Read(Statements::SELECT_ALL_DATES, [&catalogue](const QSqlQuery& row) {
            catalogue.Add_Date(row.value(0).toInt(), row.value(1).toString());
        });
    if (table == TIMES)
        return Read(Statements::SELECT_ALL_TIMES, [&catalogue](const QSqlQuery& row) {
            catalogue.Add_Time(row.value(0).toInt(), row.value(1).toInt(), row.value(2).toString());
        });
    return Read(Statements::SELECT_ALL_ROWS, [&catalogue](const QSqlQuery& row) {
        catalogue.Add_Rows(row.value(0).toInt(), row.value(1).toInt(),
                           {row.value(2).toLongLong(), row.value(3).toLongLong()});
    });
}

bool TDatabase::Add_Database_Item(const TDatabaseItem& item)
{
    if (!Is_Connected())
        return Fail(QStringLiteral("Not connected"));
    if (d_scope)
        return Add_To_Replacement(item);
    // A failed save leaves its transaction open; what it had written must not be committed with this set.
    Try(Statements::ROLL_BACK);

    const int date_id = Make_Row(DATE, DATE_NOT_FOUND, Statements::Select_Date_Id(item.Date()),
                                 Statements::Insert_Date(item.Date()));
    const int time_id = date_id < 0
                            ? -1
                            : Make_Row(TIME, TIME_NOT_FOUND, Statements::Select_Time_Id(date_id, item.Time()),
                                       Statements::Insert_Time(date_id, item.Time()));
    return time_id >= 0 && Replace_Positions(date_id, time_id, item) &&
           Run(Statements::Delete_Summary(date_id, time_id),
               QStringLiteral("Cannot delete existing summary data")) &&
           Run(Statements::Insert_Summary(date_id, time_id, item), SUMMARY_FAILURE);
}

// The row that `select` finds, inserted where there is none. After an insert it is looked up: a table that
// takes rows but cannot be read gives -1, under which a set would never be found again.
int TDatabase::Make_Row(const QString& table, const QString& not_found, const QString& select,
                        const QString& insert)
{
    QString reason;
    const int known = First_Id(select, not_found, &reason);
    if (known >= 0)
        return known;
    if (!reason.isEmpty()) { // locked, for instance: the insert would wait once more
        Fail(Insert_Failure(table), reason);
        return -1;
    }
    const int inserted = Insert_Row(table, insert);
    const int found = inserted < 0 ? -1 : First_Id(select, not_found);
    if (found != inserted) // another process was quicker: one row is enough
        Try(Statements::Delete_Row(table, inserted));
    return found;
}

// Returns the new row's identifier, or -1.
int TDatabase::Insert_Row(const QString& table, const QString& insert)
{
    qint64 row = -1;
    return Run(insert, Insert_Failure(table), &row) ? static_cast<int>(row) : -1;
}

// The old positions go only when the new ones have come. Where a position is refused the transaction stays
// open: the next change rolls it back.
bool TDatabase::Replace_Positions(int date_id, int time_id, const TDatabaseItem& item)
{
    Try(Statements::BEGIN);
    const bool deleted = Run(Statements::Delete_Positions(date_id, time_id), DELETE_FAILURE);
    // With the first change nobody else can change anything; before, the database may have been replaced.
    const bool stands =
        deleted && ((Date_Id(item.Date()) == date_id && Time_Id(date_id, item.Time()) == time_id) ||
                    Fail(DATA_FAILURE, QStringLiteral("another program has replaced the database")));
    Statements::TRows rows;
    if (stands && !Insert_Positions(date_id, time_id, item, &rows))
        return false;
    // A failed begin does no harm. A failed commit loses the set, and a transaction that stayed open would
    // lock other processes out.
    if (stands && Run(Statements::COMMIT, DATA_FAILURE))
        return true;
    Try(Statements::ROLL_BACK);
    return false;
}

// `rows` becomes the range in which the new positions lie.
bool TDatabase::Insert_Positions(int date_id, int time_id, const TDatabaseItem& item, Statements::TRows* rows)
{
    *rows = Statements::NO_ROWS;
    for (const Types::TBallbar_Item& position : item.Ballbar_Items()) {
        if (!Run(Statements::Insert_Position(date_id, time_id, position), DATA_FAILURE, &rows->last))
            return false;
        rows->first = std::min(rows->first, rows->last);
    }
    return true;
}

// One set of a replacement: all of it, or nothing. A set that breaks a rule of the database is left out.
// After any other failure (a full disk, say) SQLite may have ended the transaction, and what came next would
// be stored beside the old sets.
bool TDatabase::Add_To_Replacement(const TDatabaseItem& item)
{
    if (!d_scope->replacing || !d_scope->failure.isEmpty())
        return Fail(d_scope->replacing ? d_scope->failure : QStringLiteral("The database is being read"));
    if (Run(Statements::BEGIN_SET, DATA_FAILURE) && Insert_Set(item) &&
        Run(Statements::END_SET, DATA_FAILURE))
        return true;
    const QString error = Last_Error();
    const bool refused = Was_Refused();
    if (!refused || !Run(Statements::UNDO_SET, error) || !Run(Statements::END_SET, error))
        d_scope->failure = error;
    return Fail(error);
}

// Other processes are locked out, so what the catalogue does not know is new. It learns of the set when all
// of it is stored.
bool TDatabase::Insert_Set(const TDatabaseItem& item)
{
    TDatabaseCatalogue& catalogue = d_scope->catalogue;
    const int known_date = catalogue.Date_Id(item.Date());
    const int date_id = known_date < 0 ? Insert_Row(DATE, Statements::Insert_Date(item.Date())) : known_date;
    const int known_time = date_id < 0 ? -1 : catalogue.Time_Id(date_id, item.Time());
    const int time_id = date_id < 0 || known_time >= 0
                            ? known_time
                            : Insert_Row(TIME, Statements::Insert_Time(date_id, item.Time()));
    Statements::TRows rows = catalogue.Rows(date_id, time_id);
    const bool stored =
        time_id >= 0 &&
        (known_time < 0 || (Run(Statements::Delete_Positions(date_id, time_id, rows), DELETE_FAILURE) &&
                            Run(Statements::Delete_Summary(date_id, time_id), DELETE_FAILURE))) &&
        Insert_Positions(date_id, time_id, item, &rows) &&
        Run(Statements::Insert_Summary(date_id, time_id, item), SUMMARY_FAILURE);
    if (!stored)
        return false;
    if (known_date < 0)
        catalogue.Add_Date(date_id, item.Date());
    if (known_time < 0)
        catalogue.Add_Time(date_id, time_id, item.Time());
    catalogue.Add_Rows(date_id, time_id, rows);
    return true;
}

QStringList TDatabase::First_Column(const QString& statement, bool* valid) const
{
    QStringList texts;
    *valid = Read(statement, [&texts](const QSqlQuery& row) { texts << row.value(0).toString(); });
    return *valid ? texts : QStringList();
}

int TDatabase::Found(int id, const QString& not_found) const
{
    if (id < 0)
        Fail(not_found);
    return id;
}

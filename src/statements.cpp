// SPDX-License-Identifier: MIT
#include "statements.h"

#include "numbers.h"

#include <QStringBuilder>

#include <cmath>

namespace
{

// A position's name and its Stored_Numbers().
const QLatin1String POSITION_COLUMNS("name,sph1_x,sph1_y,sph1_z,sph2_x,sph2_y,sph2_z,sph1_form,sph2_form,"
                                     "tool_x,tool_y,tool_z");

constexpr QLatin1Char COMMA(',');
constexpr QLatin1Char QUOTE('\'');

// The inside of a text literal. Names, dates and times come without apostrophes; one in a date of a foreign
// backup file stays text like this instead of becoming part of the statement.
QString Quoted(QString text)
{
    return text.replace(QUOTE, QLatin1String("''"));
}

QString Id(int id)
{
    return QString::number(id);
}

QString Within(const Statements::TRows& rows)
{
    const Statements::TRows all;
    if (rows.first == all.first && rows.last == all.last)
        return QString();
    return QStringLiteral(" AND rowid BETWEEN %1 AND %2")
        .arg(QString::number(rows.first), QString::number(rows.last));
}

// Lengths of absurd size make infinite statistics, which no statement could hold; the set shall be stored.
QString Summary_Value(double value)
{
    return std::isfinite(value) ? Fixed(value, 4) : QStringLiteral("NULL");
}

} // namespace

const Statements::TTable Statements::TABLES[4] = {
    {QLatin1String("date"),
     QLatin1String("CREATE TABLE date(date_id INTEGER PRIMARY KEY AUTOINCREMENT,entry TEXT)")},
    {QLatin1String("time"),
     QLatin1String(
         "CREATE TABLE time(time_id INTEGER PRIMARY KEY AUTOINCREMENT,date_id INTEGER,entry TEXT)")},
    {QLatin1String("summary"),
     QLatin1String("CREATE TABLE summary(date_id INTEGER,time_id INTEGER,count INTEGER,min_length REAL,"
                   "max_length REAL,mean_length REAL,median_length REAL,stdev_length REAL)")},
    {QLatin1String("data"),
     QLatin1String("CREATE TABLE data(date_id INTEGER,time_id INTEGER,name TEXT,sph1_x REAL,sph1_y REAL,"
                   "sph1_z REAL,sph2_x REAL,sph2_y REAL,sph2_z REAL,sph1_form REAL,sph2_form REAL,"
                   "tool_x REAL,tool_y REAL,tool_z REAL)")},
};

QString Statements::Delete_All(const TTable& table)
{
    return QStringLiteral("DELETE FROM %1").arg(table.name);
}

QString Statements::Delete_Row(const QString& table, int id)
{
    return QStringLiteral("DELETE FROM %1 WHERE %1_id=%2").arg(table, Id(id));
}

QString Statements::Select_Date_Id(const QString& date)
{
    return QStringLiteral("SELECT date_id FROM date WHERE entry='%1'").arg(Quoted(date));
}

QString Statements::Insert_Date(const QString& date)
{
    return QStringLiteral("INSERT INTO date (entry) VALUES ('%1')").arg(Quoted(date));
}

QString Statements::Select_Time_Id(int date_id, const QString& time)
{
    return QStringLiteral("SELECT time_id FROM time WHERE date_id=%1 AND entry='%2'")
        .arg(Id(date_id), Quoted(time));
}

QString Statements::Select_Time(int date_id, int time_id)
{
    return QStringLiteral("SELECT entry FROM time WHERE date_id=%1 AND time_id=%2")
        .arg(Id(date_id), Id(time_id));
}

QString Statements::Select_Times(int date_id)
{
    return QStringLiteral("SELECT entry FROM time WHERE date_id=%1").arg(Id(date_id));
}

QString Statements::Insert_Time(int date_id, const QString& time)
{
    return QStringLiteral("INSERT INTO time (date_id,entry) VALUES (%1,'%2')").arg(Id(date_id), Quoted(time));
}

QString Statements::Select_Positions(int date_id, int time_id, const TRows& rows)
{
    return QStringLiteral("SELECT %1 FROM data WHERE date_id=%2 AND time_id=%3%4")
        .arg(POSITION_COLUMNS, Id(date_id), Id(time_id), Within(rows));
}

QString Statements::Delete_Positions(int date_id, int time_id, const TRows& rows)
{
    return QStringLiteral("DELETE FROM data WHERE date_id=%1 AND time_id=%2%3")
        .arg(Id(date_id), Id(time_id), Within(rows));
}

QString Statements::Insert_Position(int date_id, int time_id, const Types::TBallbar_Item& position)
{
    QString text;
    text.reserve(400); // enough for most: forming the texts is what our part of a save costs
    text += QLatin1String("INSERT INTO data (date_id,time_id,") % POSITION_COLUMNS %
            QLatin1String(") VALUES(") % Id(date_id) % COMMA % Id(time_id) % COMMA % QUOTE %
            Quoted(position.name) % QUOTE;
    for (const double* number : Stored_Numbers(position)) {
        // The quotes about the tool's x are harmless: the column's type makes a number of it.
        const bool quoted = number == &position.tool.x;
        text += QLatin1String(quoted ? ",'" : ",");
        Append_Fixed(&text, *number, 5);
        if (quoted)
            text += QUOTE;
    }
    return text += QLatin1Char(')');
}

QString Statements::Delete_Summary(int date_id, int time_id)
{
    return QStringLiteral("DELETE FROM summary WHERE date_id=%1 AND time_id=%2")
        .arg(Id(date_id), Id(time_id));
}

QString Statements::Insert_Summary(int date_id, int time_id, const TDatabaseItem& item)
{
    return QStringLiteral("INSERT INTO summary (date_id,time_id,count,min_length,max_length,mean_length,"
                          "median_length,stdev_length) VALUES(%1,%2,%3,%4,%5,%6,%7,%8)")
        .arg(Id(date_id), Id(time_id), QString::number(item.Ballbar_Count()), Summary_Value(item.Minimum()),
             Summary_Value(item.Maximum()), Summary_Value(item.Mean()), Summary_Value(item.Median()),
             Summary_Value(item.Standard_Deviation()));
}

QString Statements::Copy_Into(const QString& file)
{
    return QStringLiteral("VACUUM INTO '%1'").arg(Quoted(file));
}

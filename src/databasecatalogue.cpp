// SPDX-License-Identifier: MIT
#include "databasecatalogue.h"

namespace
{

void Add_Id(QHash<QString, int>* ids, const QString& text, int id)
{
    if (!ids->contains(text))
        ids->insert(text, id);
}

} // namespace

void TDatabaseCatalogue::Add_Date(int date_id, const QString& date)
{
    d_dates.append(date);
    Add_Id(&d_date_ids, date, date_id);
}

void TDatabaseCatalogue::Add_Time(int date_id, int time_id, const QString& time)
{
    TTimes& times = d_times[date_id];
    times.times.append(time);
    Add_Id(&times.ids, time, time_id);
}

void TDatabaseCatalogue::Add_Rows(int date_id, int time_id, const Statements::TRows& rows)
{
    d_rows.insert({date_id, time_id}, rows);
}

int TDatabaseCatalogue::Date_Id(const QString& date) const
{
    return d_date_ids.value(date, -1);
}

int TDatabaseCatalogue::Time_Id(int date_id, const QString& time) const
{
    const auto times = d_times.find(date_id);
    return times == d_times.end() ? -1 : times->ids.value(time, -1);
}

QStringList TDatabaseCatalogue::Times(int date_id) const
{
    return d_times.value(date_id).times;
}

Statements::TRows TDatabaseCatalogue::Rows(int date_id, int time_id) const
{
    return d_rows.value({date_id, time_id}, Statements::NO_ROWS);
}

// SPDX-License-Identifier: MIT
#include "databasecatalogue.h"

namespace
{

template<typename TKey> void Add_Id(QHash<TKey, int>* ids, const TKey& key, int id)
{
    if (!ids->contains(key))
        ids->insert(key, id);
}

} // namespace

void TDatabaseCatalogue::Add_Date(int date_id, const QString& date)
{
    d_dates.append(date);
    Add_Id(&d_date_ids, date, date_id);
}

void TDatabaseCatalogue::Add_Time(int date_id, int time_id, const QString& time)
{
    d_times[date_id].append(time);
    Add_Id(&d_time_ids, {date_id, time}, time_id);
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
    return d_time_ids.value({date_id, time}, -1);
}

QStringList TDatabaseCatalogue::Times(int date_id) const
{
    return d_times.value(date_id);
}

Statements::TRows TDatabaseCatalogue::Rows(int date_id, int time_id) const
{
    return d_rows.value({date_id, time_id}, Statements::NO_ROWS);
}

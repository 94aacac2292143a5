// SPDX-License-Identifier: MIT
#include "backuptransfer.h"

#include "backup.h"
#include "database.h"

#include <QIODevice>

using Backup::TRecord;
using BackupTransfer::TOutcome;

namespace
{

// Sets that cannot be read or stored do not keep the others from being moved.
void Leave_Out(TOutcome* outcome, const TDatabase& database)
{
    if (++outcome->left_out == 1)
        outcome->reason = database.Last_Error();
}

// Writes all sets of a date. Returns false where not even their times can be read.
bool Write_Date(const TDatabase& database, const QString& date, QIODevice* file, TOutcome* outcome)
{
    file->write(Backup::Date_Line(date));
    bool times_valid = false;
    const QStringList times = database.Time_List(date, &times_valid);
    for (const QString& time : times) {
        bool valid = false;
        const TDatabaseItem item = database.Database_Item(date, time, &valid);
        if (valid)
            file->write(Backup::Time_Line(time) + Backup::Position_Lines(item));
        else
            Leave_Out(outcome, database);
    }
    return times_valid;
}

void Store_And_Clear(TDatabaseItem* item, TDatabase* database, TOutcome* outcome)
{
    if (item->Ballbar_Count() == 0)
        return;
    item->Update_Stats();
    if (!database->Add_Database_Item(*item))
        Leave_Out(outcome, *database);
    item->Clear_Ballbars();
}

// Stores the sets of a backup file from `position` on.
void Read_Sets(const QByteArray& content, int position, TDatabase* database,
               const BackupTransfer::TProgress& progress, TOutcome* outcome)
{
    TDatabaseItem pending;
    progress(position, content.size());
    while (position < content.size()) {
        const TRecord record = Backup::Read_Line(Backup::Next_Line(content, &position));
        if (record.kind == TRecord::POSITION) {
            pending.Add_Ballbar(record.position);
        } else if (record.kind == TRecord::DATE) {
            Store_And_Clear(&pending, database, outcome);
            pending.Set_Date(record.text);
        } else if (record.kind == TRecord::TIME) {
            Store_And_Clear(&pending, database, outcome);
            pending.Set_Time(record.text);
        }
        progress(position, content.size());
    }
    Store_And_Clear(&pending, database, outcome);
}

} // namespace

TOutcome BackupTransfer::Write(TDatabase* database, QIODevice* file, const TProgress& progress)
{
    TOutcome outcome;
    const TDatabase::TReading reading(database);
    bool valid = false;
    const QStringList dates = database->Date_List(&valid);
    if (!valid)
        return {TOutcome::REFUSED, 0, database->Last_Error()};
    if (!dates.isEmpty())
        file->write(Backup::Header_Line());
    for (int i = 0; i < dates.size(); ++i) {
        progress(i, dates.size());
        if (!Write_Date(*database, dates[i], file, &outcome))
            return {TOutcome::CUT_SHORT, outcome.left_out, database->Last_Error()};
    }
    return outcome;
}

TOutcome BackupTransfer::Read(const QByteArray& content, TDatabase* database, const TProgress& progress)
{
    TOutcome outcome;
    int position = 0;
    if (content.isEmpty())
        return outcome;
    if (Backup::Read_Line(Backup::Next_Line(content, &position)).kind != TRecord::HEADER)
        return {TOutcome::NOT_A_BACKUP, 0, {}};
    if (!database->Replace_All([&] { Read_Sets(content, position, database, progress, &outcome); }))
        return {TOutcome::REFUSED, 0, database->Last_Error()};
    return outcome;
}

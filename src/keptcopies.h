// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QStringList>

/// Dated copies of a database file, kept beside it: "ballbar_data.db" has copies named
/// "ballbar_data_2026-03-04_10-15-02-123.db". The functions that remove files are called only while the
/// database is locked, so that no other process is at work on them.
namespace KeptCopies
{

/// The path of a copy of `database_file` made at `moment`; where there is one already, of the next
/// millisecond.
QString File_Name(const QString& database_file, const QDateTime& moment);
/// The path under which a copy is written before Put_In_Place() gives it its name.
QString Unfinished_File(const QString& database_file);
/// The paths of all copies of `database_file` in the order of their dates.
QStringList List(const QString& database_file);
/// Whether a file, by whatever path or link, is `database_file` or one of its copies.
bool Is_Database_Or_Copy(const QString& database_file, const QString& file);

/// Puts a file that was written completely under its final name, on the disk for good: a copy is needed most
/// after the power failed. Returns false where that is not possible.
bool Put_In_Place(const QString& written_file, const QString& final_file);
/// Removes the oldest copies of `database_file` until `count` are left, at least the copy `newest`. Copies
/// dated after `newest` count as older than all others: they are from before the clock was set back.
void Remove_Old(const QString& database_file, int count, const QString& newest);
/// Removes what killed programs left beside `database_file`: the unfinished copy with its journal and, after
/// a day, unfinished backups, exported summaries and settings.
void Remove_Leftovers(const QString& database_file);

} // namespace KeptCopies

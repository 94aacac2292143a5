// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QStringList>

/// Dated copies of a database file, kept beside it: "ballbar_data.db" has copies named
/// "ballbar_data_2026-03-04_10-15-02-123.db".
namespace Kept_Copies
{

/// The path of a copy of `database_file` made at `moment`.
QString File_Name(const QString& database_file, const QDateTime& moment);
/// The paths of all copies of `database_file`, oldest first.
QStringList List(const QString& database_file);
/// Removes the oldest copies of `database_file` until `count` are left. The copy `newest` stays: where the
/// clock was set back, it looks like an old one.
void Remove_Old(const QString& database_file, int count, const QString& newest);
/// Puts a file that was written completely under its final name, on the disk for good: a copy is needed most
/// after the power failed. Returns false where that is not possible.
bool Put_In_Place(const QString& written_file, const QString& final_file);

} // namespace Kept_Copies

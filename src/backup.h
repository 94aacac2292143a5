// SPDX-License-Identifier: MIT
#pragma once

#include "databaseitem.h"

#include <QByteArray>
#include <QStringList>

/// The lines of backup files and of the summary export. What is written is UTF-8 and ends with one newline.
namespace Backup
{

QByteArray Header_Line();
QByteArray Date_Line(const QString& date);
QByteArray Time_Line(const QString& time);
/// One line for each position of the set: name, centres, forms and tool, mm with 5 decimals.
QByteArray Position_Lines(const TDatabaseItem& item);

/// What a line of a backup file says.
struct TRecord
{
    enum TKind
    {
        HEADER,
        DATE,
        TIME,
        POSITION,
        UNKNOWN
    };

    TKind kind{UNKNOWN};
    QString text;                  ///< the key of DATE and TIME
    Types::TBallbar_Item position; ///< of POSITION
};

/// Reads a line, with or without its newline. Blanks at its ends do not count, runs of blanks are one blank.
/// Bytes that are no UTF-8, NUL and the non-characters U+FFFE and U+FFFF read as U+FFFD. A number that is no
/// finite decimal reads as 0; a position without exactly twelve fields is UNKNOWN, and so is a line of more
/// than 100,000,000 bytes.
TRecord Read_Line(const QByteArray& line);

/// The line of `content` that begins at `*position`, without its newline; the position moves behind it.
QByteArray Next_Line(const QByteArray& content, int* position);

/// The titles of the exported summary.
QStringList Summary_Titles();
/// A line of the exported summary: each cell in double quotes, separated by commas.
QByteArray Summary_Line(const QStringList& cells);

} // namespace Backup

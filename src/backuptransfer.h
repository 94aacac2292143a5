// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QByteArray;
class QIODevice;
class TDatabase;

/// Moves everything that a database holds into a backup file, and back.
namespace BackupTransfer
{

/// Called as the work goes on, with what is done and all there is to do: dates when a backup is written,
/// bytes when one is read.
using TProgress = std::function<void(int done, int all)>;

/// How a transfer ended.
struct TOutcome
{
    enum TEnd
    {
        COMPLETE,     ///< though perhaps without `left_out` sets
        CUT_SHORT,    ///< the backup ends before a date whose times could not be read
        REFUSED,      ///< nothing was written, or the database is as it was before
        NOT_A_BACKUP, ///< the content to restore does not begin with the header; the database was not touched
    };

    TEnd end{COMPLETE};
    int left_out{0}; ///< sets that could not be read, or that the database did not accept
    QString reason;  ///< what went wrong, where anything did
};

/// Writes one state of the whole database, whatever others change in the meantime. A database without dates
/// gives no content at all. Whether the device took everything is for the caller to find out.
TOutcome Write(TDatabase* database, QIODevice* file, const TProgress& progress);

/// Replaces everything in the database by the sets of a backup file's content: all of it, or nothing. Without
/// content nothing is done. Lines that are no record are passed over; positions before the first date and
/// time are filed under the present moment.
TOutcome Read(const QByteArray& content, TDatabase* database, const TProgress& progress);

} // namespace BackupTransfer

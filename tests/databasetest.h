// SPDX-License-Identifier: MIT
#pragma once

#include "databasedialog.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <csignal>
#include <sys/resource.h>

/// A set of `count` positions whose values depend on `seed`.
inline TDatabaseItem Make_Set(const QString& date, const QString& time, int count, int seed = 0)
{
    TDatabaseItem item;
    item.Set_Date(date);
    item.Set_Time(time);
    for (int i = 0; i < count; ++i) {
        const double shift = seed + i / 7.0;
        item.Add_Ballbar({QString("P%1 µ").arg(i),
                          {shift, -shift / 3.0, 1.5},
                          {shift + 300.123456, 0.1, -shift},
                          {0.25, shift, -150.0},
                          0.0012,
                          0.0023});
    }
    item.Update_Stats();
    return item;
}

/// The rows that a statement finds over the program's connection, "a|b" each.
inline QStringList Rows(const QString& statement)
{
    QSqlQuery query(statement, QSqlDatabase::database("ballbar_database"));
    QStringList rows;
    while (query.next()) {
        rows << query.value(0).toString();
        for (int column = 1; column < query.record().count(); ++column)
            rows.back() += "|" + query.value(column).toString();
    }
    return rows;
}

inline QByteArray Content(const QString& file_name)
{
    QFile file(file_name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

inline void Write(const QString& file_name, const QByteArray& content)
{
    QFile file(file_name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file_name));
}

/// Does `work` while no file can grow beyond 10,000 bytes, as on a full disk.
template<typename TWork> void On_A_Full_Disk(const TWork& work)
{
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{10000, before.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    work();
    setrlimit(RLIMIT_FSIZE, &before);
}

/// The dialog with the choices of files made beforehand.
class TPresetDialog : public TDatabaseDialog
{
public:
    QString d_file;

protected:
    QString Choose_Backup_File() override { return d_file; }
    QString Choose_Restore_File() override { return d_file; }
    QString Choose_Export_File() override { return d_file; }
};

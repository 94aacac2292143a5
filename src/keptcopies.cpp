// SPDX-License-Identifier: MIT
#include "keptcopies.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <unistd.h>

QString Kept_Copies::File_Name(const QString& database_file, const QDateTime& moment)
{
    const QFileInfo file(database_file);
    // The C locale, because a language may bring digits of its own.
    const QString stamp = QLocale::c().toString(moment, "yyyy-MM-dd_hh-mm-ss-zzz");
    return file.dir().absoluteFilePath(file.completeBaseName() + "_" + stamp + ".db");
}

QStringList Kept_Copies::List(const QString& database_file)
{
    const QFileInfo file(database_file);
    const QRegularExpression copy_name("^" + QRegularExpression::escape(file.completeBaseName()) +
                                       "_\\d{4}(-\\d\\d){2}_(\\d\\d-){3}\\d{3}\\.db$");
    QStringList copies;
    const QStringList names = file.dir().entryList({"*.db"}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        if (copy_name.match(name).hasMatch())
            copies.append(file.dir().absoluteFilePath(name));
    }
    return copies;
}

void Kept_Copies::Remove_Old(const QString& database_file, int count, const QString& newest)
{
    QStringList others = List(database_file);
    others.removeOne(newest);
    for (int i = 0; i <= others.size() - count; ++i)
        QFile::remove(others[i]);
}

bool Kept_Copies::Put_In_Place(const QString& written_file, const QString& final_file)
{
    QFile file(written_file);
    if (!file.open(QIODevice::ReadOnly) || ::fsync(file.handle()) != 0)
        return false;
    file.close();
    return QFile::rename(written_file, final_file);
}

// SPDX-License-Identifier: MIT
#include "keptcopies.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace
{

// Brings a file, or the names in a directory, to the disk. Some network drives cannot do that for
// directories.
bool Bring_To_Disk(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool done = ::fsync(file) == 0 || errno == EINVAL;
    ::close(file);
    return done;
}

} // namespace

QString KeptCopies::File_Name(const QString& database_file, const QDateTime& moment)
{
    const QFileInfo file(database_file);
    // The C locale, because a language may bring digits of its own.
    const QString stamp = QLocale::c().toString(moment, QStringLiteral("yyyy-MM-dd_hh-mm-ss-zzz"));
    const QString name =
        file.dir().absoluteFilePath(QStringLiteral("%1_%2.db").arg(file.completeBaseName(), stamp));
    return QFile::exists(name) ? File_Name(database_file, moment.addMSecs(1)) : name;
}

QString KeptCopies::Unfinished_File(const QString& database_file)
{
    return database_file + QLatin1String(".copy");
}

QStringList KeptCopies::List(const QString& database_file)
{
    const QFileInfo file(database_file);
    const QRegularExpression copy_name(QStringLiteral("^%1_\\d{4}(-\\d\\d){2}_(\\d\\d-){3}\\d{3}\\.db$")
                                           .arg(QRegularExpression::escape(file.completeBaseName())));
    QStringList copies;
    const QStringList names = file.dir().entryList({QStringLiteral("*.db")}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        if (copy_name.match(name).hasMatch())
            copies.append(file.dir().absoluteFilePath(name));
    }
    return copies;
}

bool KeptCopies::Is_Database_Or_Copy(const QString& database_file, const QString& file)
{
    const QString path = QFileInfo(file).canonicalFilePath();
    const QStringList measurements = List(database_file) << database_file;
    return !path.isEmpty() &&
           std::any_of(measurements.begin(), measurements.end(), [&path](const QString& measurement) {
               return QFileInfo(measurement).canonicalFilePath() == path;
           });
}

bool KeptCopies::Put_In_Place(const QString& written_file, const QString& final_file)
{
    return Bring_To_Disk(written_file) && QFile::rename(written_file, final_file) &&
           Bring_To_Disk(QFileInfo(final_file).path());
}

void KeptCopies::Remove_Old(const QString& database_file, int count, const QString& newest)
{
    QStringList copies = List(database_file);
    std::rotate(copies.begin(), std::upper_bound(copies.begin(), copies.end(), newest), copies.end());
    for (int i = 0; i < copies.size() - std::max(count, 1); ++i)
        QFile::remove(copies[i]);
}

void KeptCopies::Remove_Leftovers(const QString& database_file)
{
    QFile::remove(Unfinished_File(database_file));
    QFile::remove(Unfinished_File(database_file) + QLatin1String("-journal"));

    // QSaveFile writes under the final name and six letters. Younger ones may be still at work.
    const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
    const QString six_letters = QStringLiteral(".[A-Za-z][A-Za-z][A-Za-z][A-Za-z][A-Za-z][A-Za-z]");
    const QFileInfoList files =
        QFileInfo(database_file)
            .dir()
            .entryInfoList({QStringLiteral("*.backup") + six_letters, QStringLiteral("*.csv") + six_letters,
                            QStringLiteral("kelvora_settings.ini") + six_letters},
                           QDir::Files);
    for (const QFileInfo& file : files) {
        if (file.lastModified() < yesterday)
            QFile::remove(file.filePath());
    }
}

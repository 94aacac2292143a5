// SPDX-License-Identifier: MIT
#include "wholefile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

#include <unistd.h>

namespace
{

constexpr qint64 LARGEST_FILE = 2000000000; // a byte array holds little more

bool Fail(const QString& text, QString* error)
{
    *error = text;
    return false;
}

} // namespace

bool WholeFile::Read(const QString& file_name, QByteArray* content, QString* error)
{
    const QFileInfo info(file_name);
    if (info.exists() && !info.isFile()) // a pipe would be waited for
        return Fail(QCoreApplication::translate("WholeFile", "'%1' is not a file").arg(file_name), error);
    if (info.size() > LARGEST_FILE)
        return Fail(QCoreApplication::translate("WholeFile", "'%1' is larger than 2 GB").arg(file_name),
                    error);
    QFile file(file_name);
    if (!file.open(QIODevice::ReadOnly))
        return Fail(QString(), error);
    *content = file.readAll();
    return file.error() == QFile::NoError || Fail(file.errorString(), error);
}

bool WholeFile::Open(QSaveFile* file)
{
    file->setDirectWriteFallback(true);
    return file->open(QIODevice::WriteOnly);
}

QString WholeFile::Put_In_Place(QSaveFile* file)
{
    QString error;
    if (!file->flush() || ::fsync(file->handle()) != 0) { // commit() would not notice
        error = qt_error_string();
        file->cancelWriting();
    }
    return file->commit() || !error.isEmpty() ? error : file->errorString();
}

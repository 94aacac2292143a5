// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QByteArray;
class QSaveFile;

/// Files that are read as a whole, and files that appear when they are whole.
namespace WholeFile
{

/// Reads a file. Returns false with an `error` where it is no regular file, larger than 2 GB or cannot be
/// read to its end, and without one where it cannot be opened.
bool Read(const QString& file_name, QByteArray* content, QString* error);

/// Opens a file for writing. An older one of that name stays until Put_In_Place(), wherever its folder
/// allows.
bool Open(QSaveFile* file);
/// Brings what was written to the disk and gives it its name. A full disk may show only now: then the older
/// file stays. Returns why that failed; nothing where all is well.
QString Put_In_Place(QSaveFile* file);

} // namespace WholeFile

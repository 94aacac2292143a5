// SPDX-License-Identifier: MIT
#include "icons.h"

#include <QFile>
#include <QImageReader>

QIcon Load_Icon(const QString& path)
{
    QIcon icon;
    icon.addFile(path, QImageReader(path).size()); // a file of known size is read when it is first drawn
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        const QString file =
            QString(path).replace(QLatin1String(".png"), QStringLiteral("_%1.png").arg(size));
        if (QFile::exists(file))
            icon.addFile(file, {size, size});
    }
    return icon;
}

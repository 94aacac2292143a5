// SPDX-License-Identifier: MIT
#include "icons.h"

#include <QFile>

QIcon Load_Icon(const QString& path)
{
    QIcon icon(path);
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        const QString file =
            QString(path).replace(QLatin1String(".png"), QStringLiteral("_%1.png").arg(size));
        if (QFile::exists(file))
            icon.addFile(file, {size, size}); // of known size: read when it is first drawn
    }
    return icon;
}

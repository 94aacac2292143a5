// SPDX-License-Identifier: MIT
#include "icons.h"

#include <QFile>

QIcon Load_Icon(const QString& path)
{
    QIcon icon;
    const auto Add_If_There = [&icon](const QString& file) {
        if (QFile::exists(file))
            icon.addFile(file);
    };
    Add_If_There(path);
    for (const int size : {16, 24, 32, 48, 64, 128})
        Add_If_There(QString(path).replace(QLatin1String(".png"), QStringLiteral("_%1.png").arg(size)));
    return icon;
}

// SPDX-License-Identifier: MIT
#include "kelvora.h"

#include <QApplication>
#include <QIcon>

namespace
{

int Run(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kelvora"));
    QApplication::setDesktopFileName(QStringLiteral("kelvora"));
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/images/kelvora.png")));
    TKelvora window;
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    Q_INIT_RESOURCE(kelvora);
    const int result = Run(argc, argv);
    Q_CLEANUP_RESOURCE(kelvora);
    return result;
}

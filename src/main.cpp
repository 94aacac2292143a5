// SPDX-License-Identifier: MIT
#include "icons.h"
#include "kelvora.h"
#include "openglwidget.h"

#include <QApplication>
#include <QSurfaceFormat>

namespace
{

int Run(int argc, char* argv[])
{
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kelvora"));
    QApplication::setDesktopFileName(QStringLiteral("kelvora"));
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setWindowIcon(Load_Icon(QStringLiteral(":/images/kelvora.png")));
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

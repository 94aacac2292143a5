// SPDX-License-Identifier: MIT
// Runs the program's own main window without a user: imports a measurement file, prints the report and
// leaves a picture of the window. For machines without a display (on a virtual one) and for the documents.
#include "kelvora.h"
#include "openglwidget.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSurfaceFormat>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>

namespace
{

/// A palette as dark desktops have it.
QPalette Dark_Palette()
{
    QPalette palette(QColor(53, 53, 53), QColor(42, 42, 42));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
    return palette;
}

/// Lets the window draw itself and answer for a moment.
void Settle()
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 500)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
}

int Fail(const QString& text)
{
    QTextStream(stderr) << text << '\n';
    return 1;
}

int Run(const QCommandLineParser& options)
{
    TKelvora window;
    if (options.isSet(QStringLiteral("size"))) {
        const QStringList size = options.value(QStringLiteral("size")).split(QLatin1Char('x'));
        window.setGeometry(0, 0, size.value(0).toInt(), size.value(1).toInt());
    }
    window.findChild<QTabWidget*>(QStringLiteral("analysis_tabs"))
        ->setCurrentIndex(options.isSet(QStringLiteral("analysis")) ? 1 : 0);
    window.show();
    if (!options.positionalArguments().isEmpty())
        window.Import_Ballbar_Data(options.positionalArguments().first());
    if (options.isSet(QStringLiteral("expression")))
        window.findChild<QLineEdit*>(QStringLiteral("expression"))
            ->setText(options.value(QStringLiteral("expression")));
    if (options.isSet(QStringLiteral("select")))
        window.Ballbar_Item_Clicked(options.value(QStringLiteral("select")).toInt());
    Settle();

    const QString report = window.findChild<QPlainTextEdit*>(QStringLiteral("report"))->toPlainText();
    if (options.isSet(QStringLiteral("report")))
        QTextStream(stdout) << report << '\n';
    const QString path = options.value(QStringLiteral("picture"));
    // Taken from the screen, because a widget that draws itself leaves out the labels of the 3-D view.
    if (!path.isEmpty() && !window.screen()->grabWindow(window.winId()).save(path))
        return Fail(QStringLiteral("Cannot write the picture '%1'").arg(path));
    return report.startsWith(QStringLiteral("ERR:")) ? 1 : 0;
}

} // namespace

int main(int argc, char* argv[])
{
    const QTemporaryDir home; // leaves the user's own settings alone
    qputenv("HOME", home.path().toLocal8Bit());
    Q_INIT_RESOURCE(kelvora);
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));

    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Pictures and reports of Kelvora without a user"));
    options.addHelpOption();
    options.addPositionalArgument(QStringLiteral("file"), QStringLiteral("measurement file to import"));
    options.addOptions(
        {{QStringLiteral("picture"), QStringLiteral("picture to write"), QStringLiteral("png")},
         {QStringLiteral("report"), QStringLiteral("print the report")},
         {QStringLiteral("analysis"), QStringLiteral("show the report instead of the histogram")},
         {QStringLiteral("select"), QStringLiteral("position to select"), QStringLiteral("index")},
         {QStringLiteral("expression"), QStringLiteral("tolerance to type"), QStringLiteral("text")},
         {QStringLiteral("size"), QStringLiteral("window size, pixels"), QStringLiteral("WxH")},
         {QStringLiteral("dark"), QStringLiteral("use a dark palette")}});
    options.process(application);
    if (options.isSet(QStringLiteral("dark")))
        QApplication::setPalette(Dark_Palette());
    return Run(options);
}

// SPDX-License-Identifier: MIT
// Runs the program's own main window without a user: imports a measurement file, prints the report and
// leaves a picture of the window, of a part of it or of a dialog. For machines without a display (on a
// virtual one) and for the documents.
#include "database.h"
#include "kelvora.h"
#include "openglwidget.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSlider>
#include <QSplitter>
#include <QSurfaceFormat>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QTreeWidget>

namespace
{

// A palette as dark desktops have it.
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

// Lets the window draw itself and answer for a moment.
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

// A button of any window by its text; null where there is none.
QAbstractButton* Find_Button(const QString& text)
{
    const auto widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        auto* button = qobject_cast<QAbstractButton*>(widget);
        if (button != nullptr && button->text() == text)
            return button;
    }
    return nullptr;
}

// Files every measurement file of the directory in the database that the window is going to open, each
// under a day of its own.
bool Fill_Database(const QString& directory)
{
    QDir::home().mkpath(QStringLiteral(".kelvora"));
    TDatabase database;
    if (!database.Connect(QDir::home().filePath(QStringLiteral(".kelvora/ballbar_data.db"))) ||
        !database.Initialize())
        return false;
    const auto files = QDir(directory).entryInfoList({QStringLiteral("*.dat")}, QDir::Files, QDir::Name);
    int day = 2;
    for (const QFileInfo& file : files) {
        TBallBarData data;
        TDatabaseItem item;
        if (!data.Load_Data(file.filePath()))
            return false;
        for (const Types::TBallbar_Item& position : data.Ballbar_Items())
            item.Add_Ballbar(position);
        item.Update_Stats();
        item.Set_Date(QStringLiteral("2026 Nov %1").arg(day, 2, 10, QLatin1Char('0')));
        day += 6;
        item.Set_Time(QStringLiteral("09:12:40 AM"));
        if (!database.Add_Database_Item(item))
            return false;
    }
    return true;
}

// Writes what the screen shows of the widget. (A widget that draws itself leaves out the 3-D view's labels.)
bool Take_Picture(const QWidget& widget, const QString& path)
{
    const QWidget* window = widget.window();
    const QPixmap all = window->screen()->grabWindow(window->winId());
    const double ratio = all.devicePixelRatio();
    const QRect part(widget.mapTo(window, QPoint()), widget.size());
    return all.copy(QRectF(part.topLeft() * ratio, part.size() * ratio).toRect()).save(path);
}

// Presses the button that opens a dialog, takes its picture and closes it.
bool Take_Dialog_Picture(QAbstractButton* button, const QString& path)
{
    bool taken = false;
    QTimer::singleShot(0, button, [&taken, path] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        if (auto* entries = dialog->findChild<QTreeWidget*>(QStringLiteral("entries"))) {
            entries->expandAll();
            for (int i = 0; i < entries->topLevelItemCount(); ++i)
                entries->topLevelItem(i)->setSelected(true);
        }
        Settle();
        taken = Take_Picture(*dialog, path);
        dialog->close();
    });
    button->click();
    return taken;
}

// Brings the window into the state that the options ask for.
void Prepare(TKelvora* window, const QCommandLineParser& options)
{
    if (options.isSet(QStringLiteral("size"))) {
        const QStringList size = options.value(QStringLiteral("size")).split(QLatin1Char('x'));
        window->setGeometry(0, 0, size.value(0).toInt(), size.value(1).toInt());
    }
    if (options.isSet(QStringLiteral("analysis"))) {
        window->findChild<QTabWidget*>(QStringLiteral("analysis_tabs"))->setCurrentIndex(1);
        window->findChild<QSplitter*>(QStringLiteral("splitter"))->setSizes({1, 4});
    }
    window->show();
    const QStringList files = options.positionalArguments();
    if (!files.isEmpty())
        window->Import_Ballbar_Data(files.first());
    if (options.isSet(QStringLiteral("sub-tolerance")))
        window->findChild<QSlider*>(QStringLiteral("sub_tolerance"))
            ->setValue(options.value(QStringLiteral("sub-tolerance")).toInt());
    if (options.isSet(QStringLiteral("expression")))
        window->findChild<QLineEdit*>(QStringLiteral("expression"))
            ->setText(options.value(QStringLiteral("expression")));
    if (options.isSet(QStringLiteral("select")))
        window->Ballbar_Item_Clicked(options.value(QStringLiteral("select")).toInt());
}

bool Take_Picture(const TKelvora& window, const QCommandLineParser& options)
{
    const QString path = options.value(QStringLiteral("picture"));
    if (options.isSet(QStringLiteral("dialog"))) {
        QAbstractButton* button = Find_Button(options.value(QStringLiteral("dialog")));
        return button != nullptr && Take_Dialog_Picture(button, path);
    }
    const QWidget* widget = &window;
    if (options.isSet(QStringLiteral("part")))
        widget = window.findChild<QWidget*>(options.value(QStringLiteral("part")));
    return widget != nullptr && Take_Picture(*widget, path);
}

int Run(const QCommandLineParser& options)
{
    if (options.isSet(QStringLiteral("database")) &&
        !Fill_Database(options.value(QStringLiteral("database"))))
        return Fail(QStringLiteral("Cannot fill the database"));
    TKelvora window;
    Prepare(&window, options);
    Settle();

    const QString report = window.findChild<QPlainTextEdit*>(QStringLiteral("report"))->toPlainText();
    if (options.isSet(QStringLiteral("report")))
        QTextStream(stdout) << report << '\n';
    if (options.isSet(QStringLiteral("picture")) && !Take_Picture(window, options))
        return Fail(
            QStringLiteral("Cannot take the picture '%1'").arg(options.value(QStringLiteral("picture"))));
    return report.startsWith(QStringLiteral("ERR:")) ? 1 : 0;
}

void Describe_Options(QCommandLineParser* options)
{
    const QString number = QStringLiteral("number");
    options->setApplicationDescription(QStringLiteral("Pictures and reports of Kelvora without a user"));
    options->addHelpOption();
    options->addPositionalArgument(QStringLiteral("file"), QStringLiteral("measurement file to import"));
    options->addOptions(
        {{QStringLiteral("picture"), QStringLiteral("picture to write"), QStringLiteral("png")},
         {QStringLiteral("part"), QStringLiteral("picture of one widget only"), QStringLiteral("name")},
         {QStringLiteral("dialog"), QStringLiteral("picture of a dialog"), QStringLiteral("button")},
         {QStringLiteral("report"), QStringLiteral("print the report")},
         {QStringLiteral("analysis"), QStringLiteral("show the report instead of the histogram")},
         {QStringLiteral("select"), QStringLiteral("position to select"), number},
         {QStringLiteral("sub-tolerance"), QStringLiteral("place of the slider, 0 to 20"), number},
         {QStringLiteral("expression"), QStringLiteral("tolerance to type"), QStringLiteral("text")},
         {QStringLiteral("size"), QStringLiteral("window size, pixels"), QStringLiteral("WxH")},
         {QStringLiteral("database"), QStringLiteral("sets to have in the database"),
          QStringLiteral("directory")},
         {QStringLiteral("dark"), QStringLiteral("use a dark palette")}});
}

} // namespace

int main(int argc, char* argv[])
{
    const QTemporaryDir home; // leaves the user's own settings alone
    qputenv("HOME", home.path().toLocal8Bit());
    Q_INIT_RESOURCE(kelvora);
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));

    QCommandLineParser options;
    Describe_Options(&options);
    options.process(application);
    if (options.isSet(QStringLiteral("dark")))
        QApplication::setPalette(Dark_Palette());
    return Run(options);
}

// SPDX-License-Identifier: MIT
// Report and display of sets of growing size, without the 3-D view: the time per position should not grow.
#include "kelvora.h"
#include "ratio.h"
#include "report.h"

#include <QApplication>
#include <QTabWidget>
#include <QTemporaryDir>

#include <cmath>

namespace
{

void Write_File(const QString& path, int count)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write("BallBar_V1\n");
    for (int i = 0; i < count; ++i) {
        const double length = 900 + 0.01 * std::sin(i * 12.9898);
        file.write(QByteArray("Position ") + QByteArray::number(i) + ",900,0,0,0," +
                   QByteArray::number(length, 'f', 4) + ",0,0,0,0,-150\n");
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const QTemporaryDir directory;
    qputenv("HOME", directory.path().toLocal8Bit());
    Q_INIT_RESOURCE(kelvora);
    // Without a screen there is no OpenGL, and the window shows everything but the 3-D view.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("DISPLAY");
    QApplication application(argc, argv);
    TKelvora window;
    window.show();
    window.findChild<QTabWidget*>(QStringLiteral("analysis_tabs"))->setCurrentIndex(1);

    std::printf("%10s %14s %14s %18s\n", "positions", "report ms", "display ms", "display us each");
    for (const int count : {50, 1000, 10000, 100000}) {
        const QString path = directory.filePath(QStringLiteral("set.dat"));
        Write_File(path, count);
        TBallBarData data;
        data.Load_Data(path);
        window.Import_Ballbar_Data(path);
        double report = 1e300;
        double display = 1e300;
        for (int i = 0; i < 3; ++i) {
            report = std::min(report, Seconds([&] { Build_Report(data, 0.0174, 0.0087); }));
            display = std::min(display, Seconds([&] {
                                   window.Update_Display(false);
                                   QApplication::processEvents();
                               }));
        }
        std::printf("%10d %14.2f %14.2f %18.2f\n", count, report * 1e3, display * 1e3, display * 1e6 / count);
    }
}

// SPDX-License-Identifier: MIT
// Report and display of sets of growing size, without the 3-D view, against the least that shows the same
// list: one snprintf for each position, and a bare text widget that is handed the finished text.
#include "kelvora.h"
#include "ratio.h"
#include "report.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>

#include <cmath>
#include <string>
#include <utility>

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

/// The list of the report, made by hand.
std::string Reference_Text(const TBallBarData& data)
{
    std::string text;
    for (const Types::TBallbar_Item& item : data.Ballbar_Items()) {
        char line[256];
        const double length = item.Length();
        const int size =
            std::snprintf(line, sizeof line, "%-20s %12.4f %12.4f %12.4f %12.4f\n", qPrintable(item.name),
                          length, length - data.Mean_Length(), item.sph1_form, item.sph2_form);
        text.append(line, static_cast<size_t>(size));
    }
    return text;
}

/// The best times of a set of `count` positions, milliseconds.
std::pair<TComparison, TComparison> Compare(TKelvora* window, QPlainTextEdit* bare, const QString& path,
                                            int count)
{
    Write_File(path, count);
    TBallBarData data;
    data.Load_Data(path);
    window->Import_Ballbar_Data(path);
    constexpr double TOLERANCE = 0.0174;
    const QString text = Build_Report(data, TOLERANCE, 0.0).text;
    return {TComparison(
                5, [&] { Build_Report(data, TOLERANCE, 0.0); }, [&] { Reference_Text(data); }),
            TComparison(
                5,
                [&] {
                    window->Update_Display(false);
                    QApplication::processEvents();
                },
                [&] {
                    bare->setPlainText(text);
                    QApplication::processEvents();
                })};
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
    QPlainTextEdit bare;
    bare.setLineWrapMode(QPlainTextEdit::NoWrap);
    bare.show();

    double each = 0.0; // us for a position of the set before
    for (const int count : {1000, 10000, 100000}) {
        const auto [report, display] =
            Compare(&window, &bare, directory.filePath(QStringLiteral("set.dat")), count);
        std::printf("%d positions\n", count);
        Print_Heading("ours ms", "reference ms");
        Print_Ratio("  report / one snprintf each", report.ours * 1e3, report.reference * 1e3, 2.0);
        Print_Ratio("  display / text widget with finished text", display.ours * 1e3, display.reference * 1e3,
                    2.0);
        const double now = display.ours * 1e6 / count;
        if (each > 0.0)
            Print_Ratio("  each position, us / in a tenth of the set", now, each, 1.5);
        each = now;
    }
}

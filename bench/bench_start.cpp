// SPDX-License-Identifier: MIT
// From the start of a process to its first frame on the screen: the program against a main window that holds
// an empty OpenGL widget and nothing else. The bench starts itself for each of them, in turns, and the middle
// one of many times counts.
#include "database.h"
#include "icons.h"
#include "kelvora.h"
#include "openglwidget.h"
#include "ratio.h"

#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <unistd.h>
#include <vector>

namespace
{

constexpr int ROUNDS = 60;
constexpr int SETS = 1000;
constexpr int SET_SIZE = 50;

/// Shows `window` and ends the process with its first frame.
int Show_First_Frame(QWidget* window)
{
    auto* view = window->findChild<QOpenGLWidget*>();
    if (view == nullptr)
        return 1;
    QObject::connect(view, &QOpenGLWidget::frameSwapped, [] { _exit(0); });
    window->show();
    QApplication::exec();
    return 1;
}

/// As main() does it.
int Start_Kelvora(int argc, char* argv[])
{
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setWindowIcon(Load_Icon(QStringLiteral(":/images/kelvora.png")));
    TKelvora window;
    return Show_First_Frame(&window);
}

int Start_Bare_Window(int argc, char* argv[])
{
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    QMainWindow window;
    window.setCentralWidget(new QOpenGLWidget(&window));
    window.resize(1001, 801);
    return Show_First_Frame(&window);
}

/// Starts this program anew as `mode` says and waits for its end.
void Start(const QString& mode)
{
    if (QProcess::execute(QStringLiteral("/proc/self/exe"), {mode}) != 0)
        std::abort();
}

void Fill_Database(const QString& home)
{
    TDatabase database;
    if (!QDir(home).mkdir(QStringLiteral(".kelvora")) ||
        !database.Connect(home + QStringLiteral("/.kelvora/ballbar_data.db")) || !database.Initialize())
        std::abort();
    Types::TBallbar_Item position;
    position.sph2 = {900.0, 0.0, 0.0};
    for (int i = 0; i < SETS; ++i) {
        TDatabaseItem set;
        set.Set_Date(QStringLiteral("Day %1").arg(i));
        set.Set_Time(QStringLiteral("12:00:00"));
        for (int k = 0; k < SET_SIZE; ++k)
            set.Add_Ballbar(position);
        set.Update_Stats();
        if (!database.Add_Database_Item(set))
            std::abort();
    }
}

double Middle(std::vector<double> values)
{
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The middle ones of many starts, which differ by half: the best is a stroke of luck that comes to one of
/// the two only, and to neither when the program is started by a person.
void Compare(const char* name, const std::function<void()>& prepare)
{
    std::vector<double> ours;
    std::vector<double> bare;
    for (int i = 0; i < ROUNDS; ++i) {
        bare.push_back(Seconds([] { Start(QStringLiteral("bare")); }));
        prepare();
        ours.push_back(Seconds([] { Start(QStringLiteral("kelvora")); }));
    }
    Print_Ratio(name, Middle(ours) * 1e3, Middle(bare) * 1e3, 1.5);
}

} // namespace

int main(int argc, char* argv[])
{
    Q_INIT_RESOURCE(kelvora);
    if (argc == 2)
        return qstrcmp(argv[1], "bare") == 0 ? Start_Bare_Window(argc, argv) : Start_Kelvora(argc, argv);

    const QGuiApplication client(argc, argv); // an X server starts anew when it has lost its last one
    const QTemporaryDir home;
    for (const char* directory : {"HOME", "XDG_RUNTIME_DIR"})
        qputenv(directory, home.path().toLocal8Bit());
    Print_Heading("start ms", "bare window ms",
                  "a main window that holds an empty OpenGL widget and nothing else");
    Compare("first start", [&] { QDir(home.filePath(QStringLiteral(".kelvora"))).removeRecursively(); });
    QDir(home.filePath(QStringLiteral(".kelvora"))).removeRecursively();
    Fill_Database(home.path());
    Compare("a database of 1,000 sets", [] {});
}

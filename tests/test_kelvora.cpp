// SPDX-License-Identifier: MIT
#include "databasedialog.h"
#include "graphwidget.h"
#include "gui_test.h"
#include "icons.h"
#include "kelvora.h"

#include <QAction>
#include <QDir>
#include <QDockWidget>
#include <QDropEvent>
#include <QFontInfo>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QSlider>
#include <QSplitter>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::StartsWith;

// Resources are named in the global namespace.
static void Initialize_Resources()
{
    Q_INIT_RESOURCE(kelvora);
}

namespace
{

// Mean 633.34, mid-range 700.01: far enough apart to tell which of them a number is about.
const char* const three_lengths = "BallBar_V2\n"
                                  "First,,0,0,0,500,0,0,0.001,0.002,0,0,-150\n"
                                  "Second,,0,0,0,0,500,0,0.001,0.002,0,0,-150\n"
                                  "Third,,0,0,0,0,0,900.02,0.001,0.002,0,0,-150\n";
const char* const one_length = "BallBar_V1\nA,,0,0,0,500.5,0,0,0,0,0\n";

class TWindow : public TKelvora
{
public:
    QString d_chosen_file;
    QString d_directory;
    QString Choose_Measurement_File(const QString& directory) override
    {
        d_directory = directory;
        return d_chosen_file;
    }
};

class Kelvora : public testing::Test
{
protected:
    QTemporaryDir d_home;
    std::unique_ptr<TWindow> d_window;

    void SetUp() override
    {
        qputenv("HOME", d_home.path().toLocal8Bit());
        Initialize_Resources();
        Start();
    }

    void Start()
    {
        d_window.reset(); // only one window at a time may hold the database
        d_window = std::make_unique<TWindow>();
        d_window->show();
    }

    QString File(const char* name, const QByteArray& contents) const
    {
        QFile file(d_home.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        return file.fileName();
    }

    QAction& Action(const char* text) const
    {
        const auto actions = d_window->findChildren<QAction*>();
        for (QAction* action : actions) {
            if (action->text() == QLatin1String(text))
                return *action;
        }
        ADD_FAILURE() << "no action " << text;
        abort();
    }

    void Import(const QString& path)
    {
        d_window->d_chosen_file = path;
        Action("Import Ballbar Measurements").trigger();
    }

    static void Drop(QWidget* target, const QStringList& paths)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter); // a drop goes to whom accepted the drag
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &drop);
    }

    void Click_Report(const char* text) const
    {
        QTextCursor cursor = Report().document()->find(QLatin1String(text));
        cursor.clearSelection();
        Report().setTextCursor(cursor); // scrolls there
        QTest::mouseClick(Report().viewport(), Qt::LeftButton, Qt::NoModifier,
                          Report().cursorRect(cursor).center());
    }

    int Histogram_Sets() const { return Histogram().CreateDataSet(Qt::black, TGraphWidget::GRAPH_LINE); }
    QPlainTextEdit& Report() const { return Child<QPlainTextEdit>(*d_window, "report"); }
    std::string Text() const { return Report().toPlainText().toStdString(); }
    TGraphWidget& Histogram() const { return Child<TGraphWidget>(*d_window, "histogram"); }
    QSlider& Slider() const { return Child<QSlider>(*d_window, "sub_tolerance"); }
    std::string Field(const char* name) const
    {
        return Child<QLineEdit>(*d_window, name).text().toStdString();
    }
    QString Settings_File() const { return d_home.filePath(QStringLiteral(".kelvora/kelvora_settings.ini")); }
};

std::string Texts(const QList<QAction*>& actions)
{
    QStringList list;
    for (const QAction* action : actions)
        list << (action->isSeparator() ? QStringLiteral("-") : action->text());
    return list.join(QLatin1Char(',')).toStdString();
}

} // namespace

TEST_F(Kelvora, FirstStart)
{
    EXPECT_TRUE(QDir(d_home.filePath(QStringLiteral(".kelvora"))).exists());
    EXPECT_FALSE(QFile::exists(Settings_File())); // settings are written on close only
    EXPECT_EQ(Field("expression"), "0.0120+0.0060L/1000");
    EXPECT_FALSE(Action("New").isEnabled());
    EXPECT_FALSE(Action("Save to Database").isEnabled());
    EXPECT_EQ(Text(), "");
    EXPECT_TRUE(QFontInfo(Report().font()).fixedPitch()) << "the report's columns would not line up";
    EXPECT_EQ(Histogram().d_default_graph_type, TGraphWidget::GRAPH_BAR);
    EXPECT_EQ(Histogram().d_vertical_scale_type, 2);
    EXPECT_TRUE(Histogram().d_direct_render);

    std::vector<std::string> menus;
    const auto titles = d_window->menuBar()->actions();
    for (const QAction* menu : titles)
        menus.push_back(menu->text().toStdString() + ": " + Texts(menu->menu()->actions()));
    EXPECT_THAT(menus, testing::ElementsAre("File: New,Open Database...,Save to Database,-,"
                                            "Import Ballbar Measurements,-,Quit",
                                            "View: Measurement,Machine Dimensions,Tolerance", "Help: About"));
    const auto tools = Child<QToolBar>(*d_window, "tool_bar").actions();
    EXPECT_EQ(Texts(tools), "New,Import Ballbar Measurements,-,Open Database...,Save to Database,-,About");
    for (const QAction* tool : tools)
        EXPECT_EQ(tool->isSeparator() || tool->icon().availableSizes().size() == 5, true)
            << tool->text().toStdString();
    EXPECT_EQ(Load_Icon(QStringLiteral(":/images/kelvora.png")).availableSizes().size(), 7);
    EXPECT_EQ(QImage(QStringLiteral(":/images/logo.png")).size(), QSize(100, 40));
}

TEST_F(Kelvora, ImportsAndClears)
{
    Import(File("set.dat", three_lengths));
    EXPECT_TRUE(Action("New").isEnabled());
    EXPECT_THAT(Text(), HasSubstr("\n   Maximum Length:   900.0200\n"));
    EXPECT_THAT(Text(), HasSubstr("\n        Tolerance:     0.0158\n")); // at the mean
    EXPECT_EQ(Report().textCursor().position(), 0);
    EXPECT_EQ(Field("measured_range"), "400.0200");
    EXPECT_EQ(Field("tolerance"), "0.0162"); // at the mid-range
    EXPECT_EQ(Histogram().DataSetSize(0), 10);
    EXPECT_EQ(Histogram().DataSetSize(1), 4);

    Action("New").trigger();
    EXPECT_EQ(Text(), "");
    EXPECT_EQ(Field("measured_range"), "");
    EXPECT_EQ(Histogram_Sets(), 0);
    EXPECT_FALSE(Action("New").isEnabled());

    // New clears the display, not the set: a new tolerance judges it again.
    Slider().setValue(5);
    EXPECT_THAT(Text(), HasSubstr("Third"));
    EXPECT_EQ(Field("sub_tolerance_range"), "0.0041");
    EXPECT_FALSE(Action("New").isEnabled());

    Import(QString()); // cancelled
    EXPECT_THAT(Text(), HasSubstr("Third"));
    EXPECT_EQ(d_window->d_directory, d_home.path());

    Import(File("one.dat", one_length));
    EXPECT_THAT(Text(), testing::EndsWith("\n\nINF:  There range of the data is too small to graph"));
    EXPECT_EQ(Histogram_Sets(), 0);
}

TEST_F(Kelvora, FailedImportShowsTheReasonOnly)
{
    Import(File("set.dat", three_lengths));
    const QString bad = File("bad %1.dat", "no measurement at all");
    Import(bad);
    EXPECT_EQ(Text(), "ERR:  Input file '" + bad.toStdString() +
                          "' is not recognized as a ball bar measurement file.");
    EXPECT_EQ(Child<QTabWidget>(*d_window, "analysis_tabs").currentIndex(), 1);
    EXPECT_TRUE(Action("New").isEnabled()); // states are left as they were
    EXPECT_EQ(Field("measured_range"), "");
    Slider().setValue(3); // the set is empty now
    Action("Save to Database").trigger();
    EXPECT_THAT(Text(), StartsWith("ERR:"));
    Import(File("set.dat", three_lengths));
    EXPECT_THAT(Text(), Not(HasSubstr("ERR:")));
}

TEST_F(Kelvora, DropsAnywhere)
{
    const QString one = File("one.txt", one_length);
    for (QWidget* target : {static_cast<QWidget*>(d_window.get()), Report().viewport(),
                            static_cast<QWidget*>(&Child<QLineEdit>(*d_window, "expression"))}) {
        Drop(target, {one, File("other.dat", three_lengths)});
        Drop(target, {});
        EXPECT_EQ(Text(), "");
        Drop(target, {one});
        EXPECT_THAT(Text(), HasSubstr("500.5000"));
        Action("New").trigger();
    }
    EXPECT_EQ(Field("expression"), "0.0120+0.0060L/1000");

    QMimeData words;
    words.setText(QStringLiteral("just words"));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &words, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(d_window.get(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(Kelvora, ClickOnAReportLineSelectsThePosition)
{
    Child<QTabWidget>(*d_window, "analysis_tabs").setCurrentIndex(1);
    d_window->resize(1200, 1100);
    Import(File("set.dat", three_lengths));
    Report().setTextCursor(Report().document()->find(QStringLiteral("Second")));
    EXPECT_EQ(Field("name"), ""); // moving the cursor from code is no click
    Click_Report("Third");
    EXPECT_EQ(Field("name") + Field("length") + Field("sphere2_z"), "Third900.0200750.0200");
    EXPECT_EQ(Field("mean_deviation") + Field("median_deviation"), "266.6800200.0100");
    Click_Report("Measurement Count"); // lists no position
    EXPECT_EQ(Field("name"), "Third");
    Click_Report("First");
    EXPECT_EQ(Field("name"), "First");
    QTest::keyClick(&Report(), Qt::Key_Down);
    QTest::keyClick(&Report(), Qt::Key_Return);
    EXPECT_EQ(Field("name"), "Second");
    Slider().setValue(2); // a rebuild selects nothing
    EXPECT_EQ(Field("name"), "");
    d_window->Ballbar_Item_Clicked(0);
    d_window->Ballbar_Item_Clicked(-1);
    EXPECT_EQ(Field("name"), "");
    EXPECT_DEATH(d_window->Ballbar_Item_Clicked(3), "d_ballbar_items.size");
}

TEST_F(Kelvora, SettingsSurviveARestart)
{
    Child<QLineEdit>(*d_window, "expression").setText(QStringLiteral("0.01 + 0.02L/1200 | 0.03"));
    Child<QLineEdit>(*d_window, "max_x").setText(QStringLiteral("700"));
    Child<QLineEdit>(*d_window, "min_x").setText(QStringLiteral("900")); // the wrong way round
    Child<QSplitter>(*d_window, "splitter").setSizes({150, 400});
    d_window->move(11, 22);
    const QSize size = d_window->size();
    const QList<int> heights = Child<QSplitter>(*d_window, "splitter").sizes();
    Action("Quit").trigger();

    const TSettings stored = TSettings::Read(QSettings(Settings_File(), QSettings::IniFormat));
    EXPECT_EQ(QRect(stored.position, stored.size), QRect(QPoint(11, 22), size));
    EXPECT_EQ((QList<int>{stored.graphic_height, stored.analysis_height}), heights);

    Start();
    EXPECT_EQ(Field("expression"), "0.0100+0.0200L/1200 | 0.0300");
    EXPECT_EQ(Field("min_x"), "700.000");
    EXPECT_EQ(Field("max_x"), "900.000");
    EXPECT_EQ(d_window->pos(), QPoint(11, 22));
    EXPECT_LT(Child<QSplitter>(*d_window, "splitter").sizes()[0],
              Child<QSplitter>(*d_window, "splitter").sizes()[1]);
}

TEST_F(Kelvora, WorksWithoutAPlaceToStoreIn)
{
    const QString file = File("plain_file", "");
    QDir(d_home.path()).mkdir(QStringLiteral("home"));
    File("home/.kelvora", "");
    for (const QString& home : {file, d_home.filePath(QStringLiteral("home"))}) {
        d_window.reset();
        qputenv("HOME", home.toLocal8Bit());
        Start();
        EXPECT_THAT(Text(), StartsWith("ERR:  Settings cannot be stored in '" + home.toStdString() +
                                       "/.kelvora'\n"
                                       "ERR:  Error connecting to database: "));
        Import(File("set.dat", three_lengths));
        EXPECT_THAT(Text(), HasSubstr("Measurement Count:          3"));
        Action("Save to Database").trigger();
        EXPECT_THAT(Text(), HasSubstr("\nERR:  "));
        EXPECT_TRUE(Action("Save to Database").isEnabled());
        d_window->close();
    }
}

TEST_F(Kelvora, SavesOncePerImportAndLoads)
{
    const QAction& save = Action("Save to Database");
    Import(File("set.dat", three_lengths));
    EXPECT_TRUE(save.isEnabled());
    Action("Save to Database").trigger();
    EXPECT_FALSE(save.isEnabled());
    EXPECT_TRUE(Action("New").isEnabled());
    Import(File("one.dat", one_length));
    EXPECT_TRUE(save.isEnabled());

    auto* dialog = d_window->findChild<TDatabaseDialog*>();
    QTimer::singleShot(0, dialog, [dialog] {
        dialog->findChild<QTreeWidget*>()->topLevelItem(0)->child(0)->setSelected(true);
        dialog->Load();
        dialog->close();
    });
    Action("Open Database...").trigger();
    EXPECT_THAT(Text(), HasSubstr("Measurement Count:          3\n"));
    EXPECT_FALSE(save.isEnabled()); // it is in the database already
    EXPECT_TRUE(Action("New").isEnabled());

    const std::string report = Text();
    dialog->Load(); // the tree's selection is gone: no set, so the display stays
    d_window->Load_From_Database();
    EXPECT_EQ(Text(), report);
}

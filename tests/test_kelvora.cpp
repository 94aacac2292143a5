// SPDX-License-Identifier: MIT
#include "databasedialog.h"
#include "graphwidget.h"
#include "gui_test.h"
#include "kelvora.h"
#include "messagebox.h"

#include <QAction>
#include <QDir>
#include <QDockWidget>
#include <QDropEvent>
#include <QFile>
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
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <gmock/gmock.h>

// Resources are named in the global namespace.
static void Initialize_Resources()
{
    Q_INIT_RESOURCE(kelvora);
}

namespace
{

const char* const three_lengths = "BallBar_V2\n"
                                  "First,,0,0,0,800,0,0,0.001,0.002,0,0,-150\n"
                                  "Second,,0,0,0,0,800.004,0,0.001,0.002,0,0,-150\n"
                                  "Third,,0,0,0,0,0,800.02,0.001,0.002,0,0,-150\n";
const char* const two_lengths = "BallBar_V1\nA,,0,0,0,500,0,0,0,0,0\nB,,0,0,0,500.5,0,0,0,0,0\n";

class TWindow : public TKelvora
{
public:
    QString d_chosen_file;
    QString Choose_Measurement_File() override { return d_chosen_file; }
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
        const QString path = d_home.filePath(QLatin1String(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        return path;
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

    void Drop(const QStringList& paths) const
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(d_window.get(), &enter); // a drop goes to whom the drag was offered
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(d_window.get(), &event);
    }

    QPlainTextEdit& Report() const { return Child<QPlainTextEdit>(*d_window, "report"); }
    TGraphWidget& Histogram() const { return Child<TGraphWidget>(*d_window, "histogram"); }
    QString Field(const char* name) const { return Child<QLineEdit>(*d_window, name).text(); }
    QSettings Stored() const
    {
        return QSettings(d_home.filePath(QStringLiteral(".kelvora/kelvora_settings.ini")),
                         QSettings::IniFormat);
    }
};

} // namespace

TEST_F(Kelvora, FirstStart)
{
    EXPECT_TRUE(QDir(d_home.filePath(QStringLiteral(".kelvora"))).exists());
    EXPECT_EQ(d_window->windowTitle(), QStringLiteral("Kelvora"));
    EXPECT_EQ(Field("expression"), QStringLiteral("0.0120+0.0060L/1000"));
    EXPECT_FALSE(Action("New").isEnabled());
    EXPECT_FALSE(Action("Save to Database").isEnabled());
    EXPECT_EQ(Report().toPlainText(), QString());
    EXPECT_TRUE(QFontInfo(Report().font()).fixedPitch()) << "the report's columns would not line up";
    EXPECT_FALSE(QFile::exists(Stored().fileName())); // settings are written on close only
}

TEST_F(Kelvora, MenusAndToolBar)
{
    const auto texts = [](const QList<QAction*>& actions) {
        QStringList list;
        for (const QAction* action : actions)
            list << (action->isSeparator() ? QStringLiteral("-") : action->text());
        return list.join(QLatin1Char(',')).toStdString();
    };
    std::vector<std::string> menus;
    const auto titles = d_window->menuBar()->actions();
    for (const QAction* menu : titles)
        menus.push_back(menu->text().toStdString() + ": " + texts(menu->menu()->actions()));
    EXPECT_THAT(menus, testing::ElementsAre(
                           "File: New,Open Database...,Save to Database,-,Import Ballbar Measurements,-,Quit",
                           "View: Measurement,Machine Dimensions,Tolerance", "Help: About"));
    EXPECT_EQ(texts(Child<QToolBar>(*d_window, "tool_bar").actions()),
              "New,Import Ballbar Measurements,-,Open Database...,Save to Database,-,About");
    EXPECT_EQ(Action("Save to Database").toolTip(), QStringLiteral("Add ballbar measurement to database."));
    EXPECT_EQ(Action("New").shortcut(), QKeySequence(QKeySequence::New));
    for (const char* text :
         {"New", "Open Database...", "Save to Database", "Import Ballbar Measurements", "About"})
        EXPECT_FALSE(Action(text).icon().isNull()) << text;
}

TEST_F(Kelvora, ImportsAndClears)
{
    Import(File("set.dat", three_lengths));
    EXPECT_TRUE(Action("New").isEnabled());
    EXPECT_THAT(Report().toPlainText().toStdString(),
                testing::HasSubstr("\n   Maximum Length:   800.0200\n"));
    EXPECT_EQ(Report().textCursor().position(), 0);
    EXPECT_EQ(Field("measured_range"), QStringLiteral("0.0200"));
    EXPECT_EQ(Field("tolerance"), QStringLiteral("0.0168")); // 0.012 + 0.006 * 800.01 / 1000
    EXPECT_EQ(Histogram().DataSetSize(0), 10);
    EXPECT_EQ(Histogram().DataSetSize(1), 4);

    Action("New").trigger();
    EXPECT_EQ(Report().toPlainText(), QString());
    EXPECT_EQ(Field("measured_range"), QString());
    EXPECT_FALSE(Action("New").isEnabled());

    // New clears the display, not the set: a new tolerance judges it again.
    Child<QSlider>(*d_window, "sub_tolerance").setValue(5);
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("Third"));
    EXPECT_EQ(Field("sub_tolerance_range"), QStringLiteral("0.0042"));
    EXPECT_FALSE(Action("New").isEnabled());

    d_window->d_chosen_file.clear(); // cancelled
    Action("Import Ballbar Measurements").trigger();
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("Third"));
}

TEST_F(Kelvora, FailedImportShowsTheReasonOnly)
{
    Import(File("set.dat", three_lengths));
    const QString bad = File("bad %1.dat", "no measurement at all");
    Import(bad);
    EXPECT_EQ(Report().toPlainText(),
              QStringLiteral("ERR:  Input file '") + bad +
                  QStringLiteral("' is not recognized as a ball bar measurement file."));
    EXPECT_EQ(Child<QTabWidget>(*d_window, "analysis_tabs").currentIndex(), 1);
    EXPECT_TRUE(Action("New").isEnabled()); // states are left as they were
    EXPECT_EQ(Field("measured_range"), QString());
    Child<QSlider>(*d_window, "sub_tolerance").setValue(3); // the set is empty now
    EXPECT_TRUE(Report().toPlainText().startsWith(QStringLiteral("ERR:")));
    Import(File("set.dat", two_lengths));
    EXPECT_FALSE(Report().toPlainText().contains(QStringLiteral("ERR:")));
}

TEST_F(Kelvora, Drops)
{
    const QString one = File("one.txt", two_lengths);
    const QString other = File("other.dat", three_lengths);
    Drop({one, other});
    Drop({});
    EXPECT_EQ(Report().toPlainText(), QString());
    Drop({one});
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("500.5000"));

    QMimeData text;
    text.setText(QStringLiteral("just words"));
    QDragEnterEvent words(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    words.ignore();
    QApplication::sendEvent(d_window.get(), &words);
    EXPECT_FALSE(words.isAccepted());
    text.setUrls({QUrl::fromLocalFile(one)});
    QDragEnterEvent file(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(d_window.get(), &file);
    EXPECT_TRUE(file.isAccepted());
}

TEST_F(Kelvora, ClickOnAReportLineSelectsThePosition)
{
    Child<QTabWidget>(*d_window, "analysis_tabs").setCurrentIndex(1);
    d_window->resize(1200, 1100);
    Import(File("set.dat", three_lengths));
    const auto click = [this](const char* text) {
        QTextCursor cursor = Report().document()->find(QLatin1String(text));
        ASSERT_FALSE(cursor.isNull()) << text;
        cursor.clearSelection();
        Report().setTextCursor(cursor); // scrolls there
        const QPoint place = Report().cursorRect(cursor).center();
        QTest::mouseClick(Report().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    };
    Report().setTextCursor(Report().document()->find(QStringLiteral("Second")));
    EXPECT_EQ(Field("name"), QString()); // moving the cursor from code is no click
    click("Third");
    EXPECT_EQ(Field("name"), QStringLiteral("Third"));
    EXPECT_EQ(Field("length"), QStringLiteral("800.0200"));
    EXPECT_EQ(Field("mean_deviation"), QStringLiteral("0.0120"));
    EXPECT_EQ(Field("median_deviation"), QStringLiteral("0.0100"));
    EXPECT_EQ(Field("sphere2_z"), QStringLiteral("650.0200"));
    EXPECT_EQ(Field("probe_z"), QStringLiteral("-150.0000"));
    click("Measurement Count");
    EXPECT_EQ(Field("name"), QStringLiteral("Third")); // a line that lists no position
    click("First");
    EXPECT_EQ(Field("name"), QStringLiteral("First"));
    d_window->Ballbar_Item_Clicked(-1);
    EXPECT_EQ(Field("name"), QString());
    EXPECT_DEATH(d_window->Ballbar_Item_Clicked(3), "d_ballbar_items.size");
}

TEST_F(Kelvora, RangeTooSmallKeepsTheHistogram)
{
    Import(File("set.dat", three_lengths));
    QLineEdit& expression = Child<QLineEdit>(*d_window, "expression");
    expression.setText(QStringLiteral("0.5"));
    QTest::mouseClick(&Child<QToolButton>(*d_window, "apply"), Qt::LeftButton);
    EXPECT_EQ(Histogram().GetPoint(1, 0).x, 800.01 - 0.25);
    Import(File("one.dat", "BallBar_V1\nA,,0,0,0,500,0,0,0,0,0\n"));
    EXPECT_TRUE(Report().toPlainText().endsWith(
        QStringLiteral("\n\nINF:  There range of the data is too small to graph")));
}

TEST_F(Kelvora, SettingsSurviveARestart)
{
    Child<QLineEdit>(*d_window, "expression").setText(QStringLiteral("0.01 + 0.02L/1200 | 0.03"));
    Child<QLineEdit>(*d_window, "max_x").setText(QStringLiteral("700"));
    Child<QLineEdit>(*d_window, "min_x").setText(QStringLiteral("900")); // the wrong way round
    const QSize size = d_window->size();
    d_window->close();
    EXPECT_EQ(Stored().allKeys().size(), 14);
    EXPECT_EQ(Stored().value(QStringLiteral("Machine_Min_X")).toDouble(), 700.0);

    Start();
    EXPECT_EQ(Field("expression"), QStringLiteral("0.0100+0.0200L/1200 | 0.0300"));
    EXPECT_EQ(Field("min_x"), QStringLiteral("700.000"));
    EXPECT_EQ(Field("max_x"), QStringLiteral("900.000"));
    EXPECT_EQ(Stored().value(QStringLiteral("Mainwindow_Size")).toSize(), size);
}

TEST_F(Kelvora, DamagedSettingsLeaveAUsableWindow)
{
    d_window.reset();
    QFile file(Stored().fileName());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\nMainwindow_Position=@Point(2147483647 0)\nMainwindow_Size=@Size(-7 99999999)\n"
               "Tolerance_A=nan\nTolerance_B=1e308\nMachine_Max_X=1e300\nGraphic_Window_Height=0\n"
               "Analysis_Window_Height=0\n");
    file.close();
    Start();
    EXPECT_GE(d_window->width(), 500);
    EXPECT_GE(d_window->height(), 500);
    EXPECT_EQ(Field("max_x"), QStringLiteral("1000000.000"));
    EXPECT_EQ(Child<QLineEdit>(*d_window, "expression").styleSheet(),
              QStringLiteral("background-color: rgb(255, 151, 160);"));
    EXPECT_GT(Child<QSplitter>(*d_window, "splitter").sizes().at(1), 0);
    Import(File("set.dat", three_lengths));
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("        Tolerance:     0.0000\n"));
}

TEST_F(Kelvora, HomeThatCannotBeWritten)
{
    d_window.reset();
    const QString home = File("home_is_a_file", "");
    qputenv("HOME", home.toLocal8Bit());
    Start();
    EXPECT_THAT(Report().toPlainText().toStdString(),
                testing::StartsWith("ERR:  Settings cannot be stored in '" + home.toStdString()));
    Import(File("set.dat", three_lengths));
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("Measurement Count:          3"));
    d_window->close();
}

TEST_F(Kelvora, SavesOncePerImportAndLoads)
{
    const QAction& save = Action("Save to Database");
    Import(File("set.dat", three_lengths));
    EXPECT_TRUE(save.isEnabled());
    Action("Save to Database").trigger();
    EXPECT_FALSE(save.isEnabled());
    EXPECT_TRUE(Action("New").isEnabled());
    Import(File("other.dat", two_lengths));
    EXPECT_TRUE(save.isEnabled());

    TDatabaseDialog& dialog = *d_window->findChild<TDatabaseDialog*>();
    QTimer::singleShot(0, &dialog, [&dialog] {
        auto* tree = dialog.findChild<QTreeWidget*>();
        tree->topLevelItem(0)->child(0)->setSelected(true);
        const auto buttons = dialog.findChildren<QPushButton*>();
        for (QPushButton* button : buttons) {
            if (button->text() == QStringLiteral("Load"))
                button->click();
        }
        dialog.close();
    });
    Action("Open Database...").trigger();
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("Measurement Count:          3\n"));
    EXPECT_FALSE(save.isEnabled()); // it is in the database already
    EXPECT_TRUE(Action("New").isEnabled());
}

TEST_F(Kelvora, LoadingAnEmptySetLeavesTheDisplay)
{
    Import(File("set.dat", three_lengths));
    const QString report = Report().toPlainText();
    d_window->Load_From_Database(); // nothing was chosen: the list of positions is empty
    EXPECT_EQ(Report().toPlainText(), report);
    Child<QSlider>(*d_window, "sub_tolerance").setValue(5); // nothing to judge
    Action("Save to Database").trigger();
    EXPECT_EQ(Report().toPlainText(), report);
}

TEST_F(Kelvora, SetThatCannotBeStoredStaysUnsaved)
{
    Import(File("set.dat", three_lengths));
    QFile database(d_home.filePath(QStringLiteral(".kelvora/ballbar_data.db")));
    ASSERT_TRUE(database.open(QIODevice::WriteOnly)); // somebody spoils the file while the program runs
    database.write(QByteArray(8192, 'x'));
    database.close();
    Action("Save to Database").trigger();
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("\nERR:  "));
    EXPECT_TRUE(Action("Save to Database").isEnabled());

    d_window.reset();
    Start();
    EXPECT_THAT(Report().toPlainText().toStdString(),
                testing::StartsWith("ERR:  Error initializing database: "));
    Import(File("set.dat", three_lengths)); // works without storing
    EXPECT_THAT(Report().toPlainText().toStdString(), testing::HasSubstr("Measurement Count:          3"));
    Action("Save to Database").trigger();
    EXPECT_TRUE(Action("Save to Database").isEnabled());
}

TEST_F(Kelvora, About)
{
    QString text;
    QTimer::singleShot(0, d_window.get(), [this, &text] {
        auto* box = d_window->findChild<TMessageBox*>();
        text = box->informativeText();
        box->Send_Key(Qt::Key_Return);
    });
    Action("About").trigger();
    EXPECT_THAT(text.toStdString(), testing::HasSubstr("Kelvora - Version 5.0"));
}

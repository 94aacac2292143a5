// SPDX-License-Identifier: MIT
#include "databasedialog.h"
#include "graphwidget.h"
#include "kelvora.h"
#include "testing.h"

using testing::HasSubstr, testing::StartsWith;

// Mean 633.34, mid-range 700.01: far enough apart to tell which of them a number is about.
const QByteArray THREE_LENGTHS = "BallBar_V1\nFirst,,0,0,0,500,0,0,0,0,-150\n"
                                 "Second,,0,0,0,0,500,0,0,0,-150\nThird,,0,0,0,0,0,900.02,0,0,-150\n";

struct TWindow : TKelvora
{
    QString d_chosen_file, d_directory;
    QString Choose_Measurement_File(const QString& directory) override
    {
        d_directory = directory;
        return d_chosen_file;
    }
};

struct Kelvora : testing::Test
{
    QTemporaryDir d_home;
    std::unique_ptr<TWindow> d_window;
    QString d_three = Write(d_home.filePath("set.dat"), THREE_LENGTHS);
    QString d_one = Write(d_home.filePath("one.txt"), "BallBar_V1\nA,,0,0,0,500.5,0,0,0,0,0\n");

    void SetUp() override { Start(d_home.path()); }
    void Start(const QString& home)
    {
        d_window.reset(); // only one window at a time may hold the database
        qputenv("HOME", home.toLocal8Bit());
        d_window = std::make_unique<TWindow>();
        d_window->show();
    }

    QAction& Action(const char* text) const
    {
        for (QAction* action : d_window->findChildren<QAction*>())
            if (action->text() == text)
                return *action;
        qFatal("No action is called %s", text);
    }

    void Import(const QString& path)
    {
        d_window->d_chosen_file = path;
        Action("Import Ballbar Measurements").trigger();
    }

    /// Drops files that were offered to be moved; returns what became of them.
    static Qt::DropAction Drop(QWidget* target, const QStringList& paths)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        const auto actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(QPoint(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter); // a drop goes to whom accepted the drag
        QDropEvent drop(QPointF(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        drop.ignore();
        QApplication::sendEvent(target, &drop);
        return drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    }

    void Click_Report(const char* text) const
    {
        QTextCursor cursor = Report().document()->find(text);
        cursor.clearSelection();
        Report().setTextCursor(cursor); // scrolls there
        QTest::mouseClick(Report().viewport(), Qt::LeftButton, Qt::NoModifier,
                          Report().cursorRect(cursor).center());
    }

    /// Which of New and Save can be chosen.
    QString Enabled() const
    {
        return QString(Action("New").isEnabled() ? "New " : "") +
               (Action("Save to Database").isEnabled() ? "Save" : "");
    }
    int Histogram_Sets() const { return Histogram().CreateDataSet(Qt::black, TGraphWidget::GRAPH_LINE); }
    QPlainTextEdit& Report() const { return Child<QPlainTextEdit>(*d_window, "report"); }
    std::string Text() const { return Report().toPlainText().toStdString(); }
    TGraphWidget& Histogram() const { return Child<TGraphWidget>(*d_window, "histogram"); }
    QSlider& Slider() const { return Child<QSlider>(*d_window, "sub_tolerance"); }
    QString Field(const char* name) const { return Child<QLineEdit>(*d_window, name).text(); }
};

TEST_F(Kelvora, FirstStart)
{
    EXPECT_TRUE(QFile::exists(d_home.filePath(".kelvora/ballbar_data.db")));
    EXPECT_FALSE(QFile::exists(d_home.filePath(".kelvora/kelvora_settings.ini"))); // written on close only
    EXPECT_EQ(Field("expression"), "0.0120+0.0060L/1000");
    EXPECT_EQ(Enabled(), "");
    EXPECT_EQ(Report().font().family(), "Courier New");
    const auto lines_up = [](const QFont& font) {
        return QFontMetrics(font).horizontalAdvance("iiii") == QFontMetrics(font).horizontalAdvance("WWWW");
    };
    const QStringList families = QFontDatabase().families();
    EXPECT_EQ(lines_up(Report().font()), std::any_of(families.begin(), families.end(), lines_up));
    const double ratio = qApp->devicePixelRatio(); // this test also runs on a screen of twice the resolution
    EXPECT_EQ(Child<QLabel>(*d_window, "logo").pixmap(Qt::ReturnByValue).size(), QSize(100, 40) * ratio);
    EXPECT_EQ(Action("New").icon().pixmap(24).width(), 24 * ratio);
}

TEST_F(Kelvora, MenusToolBarAndAbout)
{
    QStringList texts;
    QList<QList<QAction*>> lists{Child<QToolBar>(*d_window, "tool_bar").actions()};
    for (const QAction* menu : d_window->menuBar()->actions())
        lists << menu->menu()->actions();
    for (const QList<QAction*>& list : lists)
        for (const QAction* action : list)
            texts << action->text() + (action == list.back() ? "." : "");
    EXPECT_EQ(texts.join('|'), "New|Import Ballbar Measurements||Open Database...|Save to Database||About.|"
                               "New|Open Database...|Save to Database||Import Ballbar Measurements||Quit.|"
                               "Measurement|Machine Dimensions|Tolerance.|About.");
    EXPECT_EQ(Action("New").shortcut(), QKeySequence(QKeySequence::New));
    QString text;
    QTimer::singleShot(0, d_window.get(), [&text] {
        auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
        text = Plain(box.windowTitle() + box.text() + box.informativeText());
        box.close();
    });
    Action("About").trigger();
    EXPECT_EQ(text, "KelvoraHelp - AboutKelvora - Version 5.0");
}

TEST_F(Kelvora, NothingIsCutOff)
{
    const QFont font = QApplication::font();
    QApplication::setFont(QFont(font.family(), 9)); // as most desktops have it
    Start(d_home.path());
    d_window->resize(1001, 801);
    Child<QTabWidget>(*d_window, "analysis_tabs").setCurrentIndex(1);
    for (int i = 0; i < 2; ++i) { // at first and after New
        QCoreApplication::processEvents();
        EXPECT_EQ(Histogram().d_empty_text, Report().placeholderText());
        EXPECT_GT(Contrast(Report().viewport()->grab().toImage()), 4.5) << "says what to do";
        Import(d_three);
        EXPECT_EQ(d_window->logicalDpiX() > 100 ? 0 : Report().horizontalScrollBar()->maximum(), 0);
        Action("New").trigger();
    }
    const auto& dock = Child<QDockWidget>(*d_window, "machine_dock");
    QStyleOptionDockWidget option;
    option.initFrom(&dock);
    option.closable = option.floatable = true;
    EXPECT_GE(dock.style()->subElementRect(QStyle::SE_DockWidgetTitleBarText, &option, &dock).width(),
              dock.fontMetrics().horizontalAdvance(dock.windowTitle()));
    const double letters = Report().font().pointSizeF();
    QApplication::setFont(QFont(font.family(), 7));
    EXPECT_LT(Report().font().pointSizeF(), letters) << "the report follows the desktop";
    QApplication::setFont(font);
}

TEST_F(Kelvora, WhatStandsWhere)
{
    Import(d_three);
    QCoreApplication::processEvents();
    Child<QLineEdit>(*d_window, "expression").setText("0.9+0.9L/10");
    Child<QToolButton>(*d_window, "apply").click();
    QCoreApplication::processEvents();
    const QRect place(Histogram().mapTo(d_window.get(), QPoint()), Histogram().size());
    const QImage screen = d_window->screen()->grabWindow(d_window->winId()).toImage();
    const QRect seen = place & screen.rect();
    const QImage drawn = d_window->grab(seen).toImage();
    EXPECT_EQ(screen.copy(seen).convertToFormat(drawn.format()), drawn) << "shows another tolerance";
    const auto& tabs = Child<QTabWidget>(*d_window, "analysis_tabs");
    EXPECT_LE(tabs.tabBar()->geometry().right(), Histogram().mapTo(&tabs, QPoint()).x()) << "takes no height";
    QString italic;
    for (const QLabel* label : d_window->findChildren<QLabel*>())
        italic += label->font().italic() ? label->text() + "|" : "";
    EXPECT_EQ(italic, "© 2026 The Kelvora authors|Database Entries|Measurement Summary|");
    auto& dialog = *d_window->findChild<TDatabaseDialog*>();
    dialog.show();
    const auto& tree = Child<QTreeWidget>(dialog, "entries");
    EXPECT_GT(Child<QTableWidget>(dialog, "summary").width(), 1.5 * tree.width());
    const TDatabaseItem now;
    EXPECT_GT(tree.width(), tree.fontMetrics().horizontalAdvance(now.Date() + now.Time()) + 20);
}

TEST_F(Kelvora, KeyboardReachesEverything)
{
    Import(d_three);
    Action("Save to Database").trigger();
    d_window->Ballbar_Item_Clicked(0);
    QTreeWidgetItem* time = Child<QTreeWidget>(*d_window, "entries").topLevelItem(0)->child(0);
    time->setSelected(true);
    EXPECT_EQ(time->data(0, Qt::AccessibleTextRole), time->text(1));

    QWidgetList windows{d_window.get()};
    for (QDialog* dialog : d_window->findChildren<QDialog*>())
        windows << dialog;
    QSet<const QWidget*> reached;
    for (QWidget* window : windows) {
        window->show();
        QApplication::setActiveWindow(window);
        for (int i = 0; i < 100; ++i) {
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window, Qt::Key_Tab);
            reached << QApplication::focusWidget();
        }
    }
    for (QWidget* widget : QApplication::allWidgets()) {
        const bool button =
            widget->inherits("QAbstractButton") && widget->parent()->objectName() != "summary";
        if (!widget->isVisible() || !widget->isEnabled() || !(button || widget->focusPolicy() & Qt::TabFocus))
            continue;
        SCOPED_TRACE(widget->metaObject()->className() + (" " + widget->objectName()).toStdString());
        EXPECT_TRUE(reached.contains(widget->focusProxy() ? widget->focusProxy() : widget));
        EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), "");
    }
    const QHeaderView& header = *Child<QTableWidget>(*d_window, "summary").horizontalHeader();
    for (int column = 0; column < header.count(); ++column)
        EXPECT_GE(header.sectionSize(column), header.sectionSizeHint(column)) << "shows its whole title";
}

TEST_F(Kelvora, ImportsAndClears)
{
    Import(d_three);
    EXPECT_EQ(Enabled(), "New Save");
    EXPECT_THAT(Text(), HasSubstr("\n   Maximum Length:   900.0200\n"));
    EXPECT_THAT(Text(), HasSubstr("\n        Tolerance:     0.0158\n")); // at the mean
    EXPECT_EQ(Report().textCursor().position(), 0);
    EXPECT_EQ(Field("measured_range") + " " + Field("tolerance"), "400.0200 0.0162"); // at the mid-range
    EXPECT_EQ(State(Histogram().DataSetSize(0), Histogram().DataSetSize(1)), "10 4");

    d_window->Ballbar_Item_Clicked(0);
    EXPECT_EQ(Field("name"), "First");
    Action("New").trigger();
    EXPECT_EQ(QString::fromStdString(Text()) + Field("measured_range") + Field("name"), "");
    EXPECT_EQ(Histogram_Sets(), 0);
    EXPECT_EQ(Enabled(), "");
    // New clears the display, not the set: a new tolerance judges it again.
    Slider().setValue(5);
    EXPECT_THAT(Text(), HasSubstr("Third"));
    EXPECT_EQ(Field("sub_tolerance_range") + Enabled(), "0.0041");

    Import(""); // cancelled
    EXPECT_THAT(Text(), HasSubstr("Third"));
    EXPECT_EQ(d_window->d_directory, d_home.path());
    Import(d_one); // has no range
    EXPECT_EQ(Histogram_Sets(), 0);

    const QString bad = Write(d_home.filePath("bad %1.dat"), "no measurement at all");
    Import(bad); // shows the reason only, and states are left as they were
    EXPECT_EQ(QString::fromStdString(Text()),
              "ERR:  Input file '" + bad + "' is not recognized as a ball bar measurement file.");
    EXPECT_EQ(Child<QTabWidget>(*d_window, "analysis_tabs").currentIndex(), 1);
    EXPECT_GT(Report().horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(Report().horizontalScrollBar()->value(), 0);
    EXPECT_EQ(Field("measured_range") + Enabled(), "New Save");
    Slider().setValue(3); // the set is empty now
    Action("Save to Database").trigger();
    EXPECT_THAT(Text(), StartsWith("ERR:"));
    Import(d_three);
    EXPECT_THAT(Text(), Not(HasSubstr("ERR:")));
}

TEST_F(Kelvora, DropsAnywhere)
{
    for (QWidget* target : {static_cast<QWidget*>(d_window.get()), Report().viewport(),
                            static_cast<QWidget*>(&Child<QLineEdit>(*d_window, "expression"))}) {
        EXPECT_EQ(Drop(target, {d_one, d_three}) | Drop(target, {}), Qt::IgnoreAction);
        EXPECT_EQ(Text(), "");
        EXPECT_EQ(Drop(target, {d_one}), Qt::CopyAction); // a move would have the file deleted
        EXPECT_THAT(Text(), HasSubstr("500.5000"));
        Action("New").trigger();
    }
    EXPECT_EQ(Field("expression"), "0.0120+0.0060L/1000");
}

TEST_F(Kelvora, ClickOnAReportLineSelectsThePosition)
{
    Child<QTabWidget>(*d_window, "analysis_tabs").setCurrentIndex(1);
    d_window->resize(1200, 1100);
    Import(d_three);
    Report().setTextCursor(Report().document()->find("Second"));
    EXPECT_EQ(Field("name"), ""); // moving the cursor from code is no click
    Click_Report("Third");
    EXPECT_EQ(Field("name") + Field("length") + Field("sphere2_z"), "Third900.0200750.0200");
    EXPECT_EQ(Field("mean_deviation") + Field("median_deviation"), "266.6800200.0100");
    for (const auto& [line, name] : {std::pair("Measurement Count", "Third"), {"First", "First"}}) {
        Click_Report(line);
        EXPECT_EQ(Field("name"), name); // a line without a position changes nothing
    }
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
    Child<QLineEdit>(*d_window, "expression").setText("0.01 + 0.02L/1200 | 0.03");
    Child<QLineEdit>(*d_window, "max_x").setText("700");
    Child<QLineEdit>(*d_window, "min_x").setText("900"); // the wrong way round
    Child<QSplitter>(*d_window, "splitter").setSizes({150, 400});
    d_window->move(11, 22);
    const QSize size = d_window->size();
    const QList<int> heights = Child<QSplitter>(*d_window, "splitter").sizes();
    Action("Quit").trigger();
    Start(d_home.path());
    EXPECT_EQ(Field("expression"), "0.0100+0.0200L/1200 | 0.0300");
    EXPECT_EQ(Field("min_x") + " " + Field("max_x"), "700.000 900.000");
    EXPECT_EQ(QRect(d_window->pos(), d_window->size()), QRect(QPoint(11, 22), size));
    EXPECT_EQ(Child<QSplitter>(*d_window, "splitter").sizes(), heights);
}

TEST_F(Kelvora, WorksWithoutAPlaceToStoreIn)
{
    QDir(d_home.path()).mkdir("home");
    Write(d_home.filePath("home/.kelvora"), "");
    for (const QString& home : {d_one, d_home.filePath("home")}) {
        Start(home);
        EXPECT_THAT(Text(), StartsWith("ERR:  Settings cannot be stored in '" + home.toStdString() +
                                       "/.kelvora'\nERR:  Error connecting to database: "));
        Import(d_three);
        EXPECT_THAT(Text(), HasSubstr("Measurement Count:          3"));
        Action("Save to Database").trigger();
        EXPECT_THAT(Text(), HasSubstr("\nERR:  "));
        EXPECT_EQ(Enabled(), "New Save");
        d_window->close();
    }
}

TEST_F(Kelvora, SavesOncePerImportAndLoads)
{
    Import(d_three);
    Action("Save to Database").trigger();
    EXPECT_EQ(Enabled(), "New ");
    Import(d_one);
    EXPECT_EQ(Enabled(), "New Save");

    auto* dialog = d_window->findChild<TDatabaseDialog*>();
    QTimer::singleShot(0, dialog, [dialog] {
        dialog->findChild<QTreeWidget*>()->topLevelItem(0)->child(0)->setSelected(true);
        dialog->Load();
        dialog->close();
    });
    Action("Open Database...").trigger();
    EXPECT_THAT(Text(), HasSubstr("Measurement Count:          3\n"));
    EXPECT_EQ(Enabled(), "New "); // it is in the database already

    const std::string report = Text();
    dialog->Load(); // the tree's selection is gone: no set, so the display stays
    d_window->Load_From_Database();
    EXPECT_EQ(Text(), report);
    Import(d_one);
    Action("Save to Database").trigger();
    EXPECT_EQ(Enabled(), "New "); // a single position is a set too
}

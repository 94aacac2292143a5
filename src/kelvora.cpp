// SPDX-License-Identifier: MIT
#include "kelvora.h"

#include "analysispane.h"
#include "databasedialog.h"
#include "icons.h"
#include "machinewidget.h"
#include "measurementwidget.h"
#include "messagebox.h"
#include "opengldisplaywidget.h"
#include "panelarea.h"
#include "panellayout.h"
#include "report.h"
#include "settings.h"
#include "tolerancewidget.h"

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>

TKelvora::TKelvora(const QWidget* parent, Qt::WindowFlags flags)
    : QMainWindow(const_cast<QWidget*>(parent), flags)
{
    setAcceptDrops(true);
    setWindowTitle(tr("Kelvora"));
    d_settings_directory = Settings_Directory();
    d_working_directory = d_settings_directory;
    d_settings = new QSettings(d_settings_directory + QStringLiteral("/kelvora_settings.ini"),
                               QSettings::IniFormat, this);
    Create_Actions();
    Create_Tool_Bar();
    Create_Central_Widget();
    Create_Docks();
    Create_Menus();
    Apply_Settings(TSettings::Read(*d_settings));
    Create_Dialogs();
    Connect_Signals();
}

void TKelvora::Create_Actions()
{
    const auto create = [this](const QString& text, const QString& tool_tip, const char* icon) {
        auto* action = new QAction(text, this);
        action->setToolTip(tool_tip);
        action->setIcon(Load_Icon(QLatin1String(icon)));
        return action;
    };
    d_new_action = create(tr("New"), tr("Clear existing measurements"), ":/menu/file_new.png");
    d_new_action->setShortcut(QKeySequence::New);
    d_import_action = create(tr("Import Ballbar Measurements"), tr("Import ballbar measurements"),
                             ":/menu/file_import_ballbar.png");
    d_about_action = create(tr("About"), tr("About kelvora"), ":/menu/help_about.png");
    d_show_database_action =
        create(tr("Open Database..."), tr("Open database utility"), ":/menu/database.png");
    d_add_to_database_action =
        create(tr("Save to Database"), tr("Add ballbar measurement to database."), ":/menu/database_add.png");
    d_quit_action = new QAction(tr("Quit"), this);
    d_quit_action->setShortcut(QKeySequence::Quit);
    d_new_action->setEnabled(false);
    d_add_to_database_action->setEnabled(false);
}

void TKelvora::Create_Tool_Bar()
{
    QToolBar* tool_bar = addToolBar(tr("Tool Bar"));
    tool_bar->setObjectName(QStringLiteral("tool_bar"));
    tool_bar->addAction(d_new_action);
    tool_bar->addAction(d_import_action);
    tool_bar->addSeparator();
    tool_bar->addAction(d_show_database_action);
    tool_bar->addAction(d_add_to_database_action);
    tool_bar->addSeparator();
    tool_bar->addAction(d_about_action);
    const auto actions = tool_bar->actions();
    for (QAction* action : actions)
        if (auto* button = qobject_cast<QToolButton*>(tool_bar->widgetForAction(action)))
            button->setFocusPolicy(Qt::TabFocus);
}

void TKelvora::Create_Central_Widget()
{
    auto* central = new QWidget(this);
    d_splitter = new QSplitter(Qt::Vertical, central);
    d_splitter->setObjectName(QStringLiteral("splitter"));
    d_display = new TOpenGLDisplayWidget(d_splitter);
    d_splitter->addWidget(d_display);
    d_analysis = new TAnalysisPane(d_splitter);
    d_splitter->addWidget(d_analysis);
    Create_Grid(central)->addWidget(d_splitter, 0, 0);
    setCentralWidget(central);
}

void TKelvora::Create_Docks()
{
    d_measurement_widget = new TMeasurementWidget(this);
    d_machine_widget = new TMachineWidget(this);
    d_tolerance_widget = new TToleranceWidget(this);
    Add_Dock(d_measurement_widget, tr("Measurement"), "measurement_dock", Qt::LeftDockWidgetArea);
    Add_Dock(d_machine_widget, tr("Machine Dimensions"), "machine_dock", Qt::RightDockWidgetArea);
    Add_Dock(d_tolerance_widget, tr("Tolerance"), "tolerance_dock", Qt::LeftDockWidgetArea);
}

void TKelvora::Add_Dock(QWidget* panel, const QString& title, const char* object_name,
                        Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(QLatin1String(object_name));
    dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    auto* panel_area = new TPanelArea(panel);
    dock->setWidget(panel_area);
    addDockWidget(area, dock);
    panel_area->Fit_To_Title(dock);
}

void TKelvora::Create_Menus()
{
    QMenu* file = menuBar()->addMenu(tr("File"));
    file->addAction(d_new_action);
    file->addAction(d_show_database_action);
    file->addAction(d_add_to_database_action);
    file->addSeparator();
    file->addAction(d_import_action);
    file->addSeparator();
    file->addAction(d_quit_action);

    QMenu* view = menuBar()->addMenu(tr("View"));
    const auto docks = findChildren<QDockWidget*>();
    for (QDockWidget* dock : docks)
        view->addAction(dock->toggleViewAction());

    menuBar()->addMenu(tr("Help"))->addAction(d_about_action);
}

void TKelvora::Create_Dialogs()
{
    d_message_box = new TMessageBox(this);
    d_message_box->setWindowTitle(windowTitle());
    d_database_dialog = new TDatabaseDialog(this);
    const QFileInfo directory(d_settings_directory);
    if (!directory.isDir() || !directory.isWritable())
        Show_Error(tr("Settings cannot be stored in '%1'").arg(d_settings_directory));
    if (!d_database_dialog->Connect_To_Database(d_settings_directory + QStringLiteral("/ballbar_data.db")))
        Show_Error(d_database_dialog->Last_Error());
}

void TKelvora::Apply_Settings(const TSettings& settings)
{
    const QRect geometry = Window_Geometry({settings.position, settings.size},
                                           QGuiApplication::primaryScreen()->availableGeometry());
    resize(geometry.size());
    move(geometry.topLeft());
    d_splitter->setSizes({settings.graphic_height, settings.analysis_height});

    d_tolerance_widget->d_tolerance_a = settings.tolerance_a;
    d_tolerance_widget->d_tolerance_b = settings.tolerance_b;
    d_tolerance_widget->d_tolerance_c = settings.tolerance_c;
    d_tolerance_widget->d_tolerance_d = settings.tolerance_d;
    d_tolerance_widget->Update();

    d_machine_widget->Set_Machine_Dimensions(settings.machine);
    Machine_Volume_Changed();
}

void TKelvora::Connect_Signals()
{
    connect(d_new_action, &QAction::triggered, this, &TKelvora::Menu_New);
    connect(d_import_action, &QAction::triggered, this, &TKelvora::Menu_Import_Ballbar);
    connect(d_quit_action, &QAction::triggered, this, &TKelvora::close);
    connect(d_show_database_action, &QAction::triggered, this, &TKelvora::Menu_Show_Database);
    connect(d_add_to_database_action, &QAction::triggered, this, &TKelvora::Menu_Add_To_Database);
    connect(d_about_action, &QAction::triggered, this, &TKelvora::Menu_About);
    connect(d_tolerance_widget, &TToleranceWidget::Tolerance_Changed, this, &TKelvora::Tolerance_Changed);
    connect(d_tolerance_widget, &TToleranceWidget::Sub_Tolerance_Changed, this, &TKelvora::Tolerance_Changed);
    connect(d_machine_widget, &TMachineWidget::Update_Machine, this, &TKelvora::Machine_Volume_Changed);
    connect(d_display, &TOpenGLDisplayWidget::Ballbar_Item_Clicked, this, &TKelvora::Select_Position);
    connect(d_analysis, &TAnalysisPane::Position_Clicked, this, &TKelvora::Select_Position);
    connect(d_database_dialog, &TDatabaseDialog::Load_From_Database, this, &TKelvora::Load_From_Database);
}

void TKelvora::Save_Settings()
{
    TSettings settings;
    settings.position = pos();
    settings.size = size();
    settings.graphic_height = d_splitter->sizes().at(0);
    settings.analysis_height = d_splitter->sizes().at(1);
    settings.tolerance_a = d_tolerance_widget->d_tolerance_a;
    settings.tolerance_b = d_tolerance_widget->d_tolerance_b;
    settings.tolerance_c = d_tolerance_widget->d_tolerance_c;
    settings.tolerance_d = d_tolerance_widget->d_tolerance_d;
    settings.machine = d_machine_widget->Machine_Dimensions();
    if (!settings.Store(d_settings->fileName()))
        qWarning("The settings could not be stored in '%s'", qPrintable(d_settings->fileName()));
}

void TKelvora::closeEvent(QCloseEvent* event)
{
    Save_Settings();
    event->accept();
}

void TKelvora::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasFormat(QStringLiteral("text/uri-list")))
        event->acceptProposedAction();
}

void TKelvora::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() != 1)
        return;
    event->setDropAction(Qt::CopyAction); // the file stays where it is, whatever was proposed
    event->accept();
    Import_Ballbar_Data(urls.first().toLocalFile());
}

QString TKelvora::Choose_Measurement_File(const QString& directory)
{
    return QFileDialog::getOpenFileName(this, tr("Select ballbar measurement file"), directory,
                                        tr("Ballbar Measurement File(*.dat)"));
}

void TKelvora::Clear_Display()
{
    d_display->Clear_BallBars();
    d_display->Update(false);
    d_analysis->Clear();
    d_measurement_widget->Enable_Display(false);
    d_tolerance_widget->Enable_Results(false);
}

void TKelvora::Show_Error(const QString& text)
{
    d_analysis->Append(QStringLiteral("ERR:  %1").arg(text));
}

void TKelvora::Menu_New()
{
    Clear_Display();
    d_new_action->setEnabled(false);
    d_add_to_database_action->setEnabled(false);
}

void TKelvora::Menu_Import_Ballbar()
{
    const QString path = Choose_Measurement_File(d_working_directory);
    if (!path.isEmpty())
        Import_Ballbar_Data(path);
}

void TKelvora::Menu_Add_To_Database()
{
    if (d_ballbar_data.Ballbar_Item_Count() == 0)
        return;
    TDatabaseItem database_item;
    for (const Types::TBallbar_Item& item : d_ballbar_data.Ballbar_Items())
        database_item.Add_Ballbar(item);
    database_item.Update_Stats();
    if (!d_database_dialog->Add_Database_Item(database_item)) {
        Show_Error(d_database_dialog->Last_Error());
        return;
    }
    d_add_to_database_action->setEnabled(false);
}

void TKelvora::Menu_Show_Database()
{
    d_database_dialog->exec();
    // The dialog itself ends its commands silently.
    const QStringList failures = d_database_dialog->Failures();
    for (const QString& failure : failures)
        Show_Error(failure);
}

void TKelvora::Menu_About()
{
    d_message_box->setText(tr("Help - About"));
    d_message_box->setInformativeText(tr("Kelvora - Version 5.0"));
    d_message_box->setDetailedText(QString());
    d_message_box->setIcon(QMessageBox::Information);
    d_message_box->setStandardButtons(QMessageBox::Ok);
    d_message_box->setDefaultButton(QMessageBox::Ok);
    d_message_box->exec();
}

void TKelvora::Import_Ballbar_Data(const QString& path)
{
    Clear_Display();
    if (!d_ballbar_data.Load_Data(path)) {
        Show_Error(d_ballbar_data.Last_Error());
        return;
    }
    if (path.contains(QLatin1Char('/')))
        d_working_directory = path.left(qMax(1, path.lastIndexOf(QLatin1Char('/'))));
    d_new_action->setEnabled(true);
    d_add_to_database_action->setEnabled(true);
    Update_Display(true);
}

void TKelvora::Load_From_Database()
{
    d_ballbar_data.Clear();
    const std::vector<Types::TBallbar_Item>& items = d_database_dialog->Ballbar_Items();
    if (items.empty())
        return;
    for (const Types::TBallbar_Item& item : items)
        d_ballbar_data.Add_Ballbar(item);
    d_ballbar_data.Update_Stats();
    d_new_action->setEnabled(true);
    d_add_to_database_action->setEnabled(false); // it is there already
    Update_Display(true);
}

void TKelvora::Ballbar_Item_Clicked(int index)
{
    if (index < 0) {
        d_measurement_widget->Enable_Display(false);
        return;
    }
    const Types::TBallbar_Item position = d_ballbar_data.Ballbar_Item(index);
    const double length = position.Length();
    d_measurement_widget->Show_Position(position, length - d_ballbar_data.Mean_Length(),
                                        length - d_ballbar_data.Median_Length());
    d_display->Clear_Selection();
    d_display->Set_Selection(index);
}

void TKelvora::Select_Position(int index)
{
    // The display may outlive its set: loading an empty set leaves it in place.
    if (index < d_ballbar_data.Ballbar_Item_Count())
        Ballbar_Item_Clicked(index);
}

void TKelvora::Machine_Volume_Changed()
{
    const TMachineWidget::TDimensions machine = d_machine_widget->Machine_Dimensions();
    d_display->Define_Machine_Volume({machine.x_min, machine.y_min, machine.z_min},
                                     {machine.x_max, machine.y_max, machine.z_max});
    d_display->Update(false);
}

void TKelvora::Tolerance_Changed()
{
    Update_Display(false);
}

void TKelvora::Update_Display(bool reset_view)
{
    if (d_ballbar_data.Ballbar_Item_Count() == 0)
        return;
    const double tolerance = d_tolerance_widget->Tolerance_Value(d_ballbar_data.Mean_Length());
    const double sub_tolerance = tolerance * d_tolerance_widget->Sub_Tolerance_Percent();
    const TReport report = Build_Report(d_ballbar_data, tolerance, sub_tolerance);

    d_tolerance_widget->Set_Results(d_ballbar_data.Maximum_Length() - d_ballbar_data.Minimum_Length(),
                                    d_ballbar_data.Median_Length());
    Show_Bars(report);
    d_display->Update(reset_view);
    d_analysis->Show_Report(report);
    d_measurement_widget->Enable_Display(false);
}

void TKelvora::Show_Bars(const TReport& report)
{
    d_display->Clear_BallBars();
    int index = 0;
    for (const Types::TBallbar_Item& item : d_ballbar_data.Ballbar_Items()) {
        const TPositionFlags& flags = report.flags[static_cast<size_t>(index)];
        d_display->Add_BallBar(index++, item.name, item.sph1, item.sph2, item.tool, flags.outside_tolerance,
                               flags.inside_sub_tolerance);
    }
}

// SPDX-License-Identifier: MIT
#pragma once

#include "ballbardata.h"

#include <QMainWindow>

class QAction;
class QSettings;
class QSplitter;
class TAnalysisPane;
class TDatabaseDialog;
class TMachineWidget;
class TMeasurementWidget;
class TMessageBox;
class TOpenGLDisplayWidget;
class TToleranceWidget;
struct TReport;
struct TSettings;

/// The main window. It builds and connects the parts and hands the measurement set to them; what it shows is
/// computed elsewhere.
class TKelvora : public QMainWindow
{
    Q_OBJECT

public:
    explicit TKelvora(const QWidget* parent = nullptr, Qt::WindowFlags flags = {});

public slots:
    /// Clears what is shown. The set itself stays until the next import or load.
    void Menu_New();
    void Menu_Import_Ballbar();

    /// Stores the set under the present date and time. A set that could not be stored stays unsaved, and the
    /// report says why.
    void Menu_Add_To_Database();
    void Menu_Show_Database();
    void Menu_About();

    /// Replaces the set by the positions of a measurement file, or shows in the report why it cannot.
    void Import_Ballbar_Data(const QString& path);

    /// Takes over the set that the database dialog has loaded; an empty one leaves the display alone.
    void Load_From_Database();

    /// Shows the position at `index` of the set as the selected one; none for a negative index.
    void Ballbar_Item_Clicked(int index);
    void Machine_Volume_Changed();
    void Tolerance_Changed();

    /// Rebuilds report, tolerance results, 3-D scene and histogram from the set; does nothing for an empty
    /// one. With `reset_view` the 3-D view is fitted to the scene, otherwise it keeps its camera.
    void Update_Display(bool reset_view);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    /// Asks the user for a measurement file, starting in `directory`; empty when cancelled.
    virtual QString Choose_Measurement_File(const QString& directory);

private:
    void Create_Actions();
    void Create_Tool_Bar();
    void Create_Central_Widget();
    void Create_Docks();
    void Add_Dock(QWidget* panel, const QString& title, const char* object_name, Qt::DockWidgetArea area);
    void Create_Menus();
    void Create_Dialogs();
    void Apply_Settings(const TSettings& settings);
    void Connect_Signals();
    void Save_Settings();

    void Clear_Display();

    /// Appends "ERR:  " and the text to the report and brings it to the user's eyes.
    void Show_Error(const QString& text);
    void Show_Bars(const TReport& report);
    void Select_Position(int index);

    QAction* d_new_action;
    QAction* d_import_action;
    QAction* d_quit_action;
    QAction* d_about_action;
    QAction* d_show_database_action;
    QAction* d_add_to_database_action;

    QSplitter* d_splitter;
    TToleranceWidget* d_tolerance_widget;
    TMeasurementWidget* d_measurement_widget;
    TMachineWidget* d_machine_widget;
    TDatabaseDialog* d_database_dialog;
    TMessageBox* d_message_box;
    QSettings* d_settings;
    TOpenGLDisplayWidget* d_display;
    TAnalysisPane* d_analysis;

    TBallBarData d_ballbar_data;
    QString d_settings_directory;
    QString d_working_directory; ///< where the import dialog opens
};

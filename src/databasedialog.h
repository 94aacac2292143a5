// SPDX-License-Identifier: MIT
#pragma once

#include "backuptransfer.h"
#include "database.h"

#include <QDialog>
#include <QMap>

#include <utility>
#include <vector>

class QPushButton;
class QSaveFile;
class QTableWidget;
class QTreeWidget;
class TWorkProgress;

/// Browses the stored measurement sets: a tree of dates and times, a summary of the selected sets, and
/// buttons to load one, to back up and restore everything and to export the summary. Owns the database.
class TDatabaseDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TDatabaseDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// Opens the database file, which is created where it is missing, and lists its sets.
    bool Connect_To_Database(const QString& file);
    /// Stores a set, in place of one under the same date and time, and lists all sets anew.
    bool Add_Database_Item(const TDatabaseItem& item);
    /// Why the last of these two failed.
    const QString& Last_Error() const { return d_last_error; }
    /// Which commands failed since exec() was called and did not succeed later, and why. The commands
    /// themselves end in silence.
    QStringList Failures() const { return d_failures.values(); }
    /// The positions of the set that was loaded last.
    const std::vector<Types::TBallbar_Item>& Ballbar_Items() const { return d_ballbar_items; }

public slots:
    /// Opens the database anew, which heals what failed before, and lists what others have stored meanwhile.
    /// Returns at once while a backup or restore is under way.
    int exec() override;
    /// Closes the dialog, except while a backup or restore is under way: it keeps the other windows blocked,
    /// and opened again in the meantime it would hold up the work.
    void reject() override;
    void Update_Tree();
    void Selection_Changed();
    void Load();
    /// Writes all sets into a text file.
    void Backup();
    /// Replaces all sets by those of a backup file; a copy of the database is kept beside it.
    void Restore();
    /// Writes the summary into a CSV file.
    void Export();

signals:
    /// The user has loaded a set: Ballbar_Items() holds its positions.
    void Load_From_Database();

protected:
    void showEvent(QShowEvent* event) override;
    /// Ask for a file name; empty where the user cancels.
    virtual QString Choose_Backup_File();
    virtual QString Choose_Restore_File();
    virtual QString Choose_Export_File();

private:
    /// The date and time of a set.
    using TKey = std::pair<QString, QString>;

    QLayout* Create_Buttons();
    QPushButton* Create_Button(const QString& name, const QString& text, void (TDatabaseDialog::*command)());
    bool Is_Ready() const;
    void Fit_Columns();
    bool Fail(const QString& error);
    bool Open(QSaveFile* file, const QString& command);
    std::vector<TKey> Selected_Keys() const;
    void Update_Buttons();
    void Set_Busy(bool busy);
    void Work(const QString& text,
              const std::function<void(const BackupTransfer::TProgress& progress)>& work);
    void Report(const QString& command, const BackupTransfer::TOutcome& outcome);

    QPushButton* d_backup_button{nullptr};
    QPushButton* d_restore_button{nullptr};
    QPushButton* d_load_button{nullptr};
    QPushButton* d_export_button{nullptr};
    QPushButton* d_close_button{nullptr};
    QTableWidget* d_summary_table{nullptr};
    QTreeWidget* d_tree{nullptr};
    TWorkProgress* d_progress{nullptr}; ///< created when it is needed first
    TDatabase d_database;
    QString d_database_file;
    std::vector<Types::TBallbar_Item> d_ballbar_items;
    QString d_last_error;
    QMap<QString, QString> d_failures; ///< by the command's title
    bool d_busy{false};                ///< a backup or restore is under way
};

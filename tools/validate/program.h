// SPDX-License-Identifier: MIT
#pragma once

#include "databasedialog.h"
#include "vector2.h"

#include <QTemporaryDir>
#include <QVariant>

#include <map>
#include <memory>
#include <string>
#include <vector>

class QLineEdit;
class TGraphWidget;
class TKelvora;
struct TExactTolerance;

std::string Text_Of(const QString& text);

/// The rows that a statement finds in a database of SQLite.
std::vector<QVariantList> Query(const QString& database_file, const QString& statement);

/// A home directory that lives as long as the tool, so that nobody's settings and measurements are touched.
class TPrivateHome
{
public:
    TPrivateHome();

    /// Writes a file and returns its path.
    std::string Write(const std::string& name, const std::string& content) const;
    /// The content of a file.
    static std::string Read(const std::string& path);
    std::string Database() const { return Path("/.kelvora/ballbar_data.db"); }
    std::string Backup() const { return Path("/all.backup"); }
    std::string Export() const { return Path("/summary.csv"); }
    /// Deletes the database, as if the program had never been run.
    void Remove_Database() const;

private:
    std::string Path(const char* name) const;

    QTemporaryDir d_directory;
};

/// The program's own main window and what a user reads on it.
class TWindow
{
public:
    TWindow();
    ~TWindow();

    void Import(const std::string& path);
    /// Saves the set on display under the present moment, which is another one for each set.
    void Save();
    /// Loads the `index`-th stored set from the database window.
    void Load(int index);
    /// Types an expression, presses Apply, if that is possible, and pulls the slider.
    void Set_Tolerance(const TExactTolerance& tolerance);
    /// Selects a position; none where there are not as many.
    void Select(int position);

    /// What a field of the panels shows, by its object name; whether it is marked as not understood.
    std::string Field(const std::string& name) const;
    bool Is_Marked(const std::string& name) const;
    /// Types machine limits and reads them back as they are used.
    std::vector<double> Machine_Limits(const std::vector<std::string>& typed);

    std::string Report() const;
    /// The points of the bars (0) and of the tolerance band (1); none where the report says that there are
    /// none.
    std::vector<TVector2> Histogram(int data_set) const;

private:
    int Shown_Positions() const;

    std::unique_ptr<TKelvora> d_window;
    int d_positions{0}; ///< that the report counts
    std::map<std::string, QLineEdit*> d_fields;
};

/// The program's database window, which is given the names of files instead of asking for them.
class TStore : public TDatabaseDialog
{
public:
    /// Opens the database of the home directory.
    explicit TStore(const TPrivateHome& home);

    /// Reads a measurement file and stores it under a time of its own.
    bool Save(const std::string& file, int number);
    /// What the table shows of all sets, cell by cell.
    std::vector<std::vector<std::string>> Summary();
    /// What the commands write; the summary first selects all sets.
    std::string Written_Backup();
    std::string Written_Export();
    /// Restores the backup into a new database, in place of the present one.
    void Restore_Into_New_Database();
    /// The stored statistics of each set: count, minimum, maximum, mean, median, standard deviation.
    std::vector<std::vector<double>> Stored_Summaries() const;
    /// The positions of the `index`-th set, as the main window takes them over.
    const std::vector<Types::TBallbar_Item>& Loaded(int index);

protected:
    QString Choose_Backup_File() override;
    QString Choose_Restore_File() override;
    QString Choose_Export_File() override;

private:
    const TPrivateHome& d_home;
};

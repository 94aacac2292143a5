// SPDX-License-Identifier: MIT
// The database against SQLite itself, through its own interface and its shell, doing the same work.
#include "database.h"
#include "databasedialog.h"
#include "databasestatements.h"
#include "ratio.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <cstdlib>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace
{

constexpr int LARGE_SET = 100000;
constexpr int SETS = 1000;
constexpr int SET_SIZE = 50;
constexpr int ROUNDS = 5;

void Check(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

void Compare(const char* name, int rounds, double goal, const std::function<void()>& ours,
             const std::function<void()>& reference)
{
    const TComparison times(rounds, ours, reference);
    Print_Ratio(name, times.ours * 1e3, times.reference * 1e3, goal);
    std::fflush(stdout);
}

/// A connection through SQLite's own interface.
class TReference
{
public:
    explicit TReference(const QString& file)
    {
        Check(sqlite3_open(file.toUtf8().constData(), &d_database) == SQLITE_OK, "opening the reference");
    }
    ~TReference() { sqlite3_close(d_database); }
    TReference(const TReference&) = delete;
    TReference& operator=(const TReference&) = delete;

    void Execute(const std::vector<QByteArray>& statements)
    {
        for (const QByteArray& statement : statements)
            Check(sqlite3_exec(d_database, statement.constData(), nullptr, nullptr, nullptr) == SQLITE_OK,
                  statement.constData());
    }

    /// Reads all columns of all rows; the sum keeps the work from being optimised away.
    double Read(const QByteArray& statement)
    {
        sqlite3_stmt* query = nullptr;
        Check(sqlite3_prepare_v2(d_database, statement.constData(), -1, &query, nullptr) == SQLITE_OK,
              statement.constData());
        double sum = 0.0;
        while (sqlite3_step(query) == SQLITE_ROW) {
            d_names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(query, 0)));
            for (int column = 1; column < sqlite3_column_count(query); ++column)
                sum += sqlite3_column_double(query, column);
        }
        sqlite3_finalize(query);
        d_names.clear();
        return sum;
    }

private:
    sqlite3* d_database{nullptr};
    std::vector<std::string> d_names;
};

/// The dialog with the choice of files made beforehand.
class TPresetDialog : public TDatabaseDialog
{
public:
    QString d_file;

protected:
    QString Choose_Backup_File() override { return d_file; }
    QString Choose_Restore_File() override { return d_file; }
};

TDatabaseItem Make_Set(int number, int count)
{
    TDatabaseItem item;
    item.Set_Date(QString("2026 Day %1").arg(number / 4));
    item.Set_Time(QString("10:15:%1 AM").arg(number % 4));
    for (int i = 0; i < count; ++i) {
        Types::TBallbar_Item position;
        position.name = QString("P%1").arg(i);
        position.sph1 = {100.12345 + i, -200.54321 + number, 33.00017 * i};
        position.sph2 = {400.11111 + i, -200.98765 + number, 33.00021 * i};
        position.sph1_form = 0.00123;
        position.sph2_form = 0.00234;
        position.tool = {0.0, 0.12345, -150.0};
        item.Add_Ballbar(position);
    }
    item.Update_Stats();
    return item;
}

// The statements that saving `item` as the first set of a new database executes.
std::vector<QByteArray> Saving_Statements(const TDatabaseItem& item)
{
    QStringList texts;
    for (const Statements::TTable& table : Statements::TABLES)
        texts << table.create;
    texts << Statements::Insert_Date(item.Date()) << Statements::Insert_Time(1, item.Time())
          << Statements::Delete_Positions(1, 1) << Statements::Begin();
    for (const Types::TBallbar_Item& position : item.Ballbar_Items())
        texts << Statements::Insert_Position(1, 1, position);
    texts << Statements::Commit() << Statements::Delete_Summary(1, 1)
          << Statements::Insert_Summary(1, 1, item);
    std::vector<QByteArray> statements;
    for (const QString& text : texts)
        statements.push_back(text.toUtf8());
    return statements;
}

void Run_Shell(const QStringList& arguments, const QString& output)
{
    QProcess shell;
    shell.setStandardOutputFile(output);
    shell.start("sqlite3", arguments);
    Check(shell.waitForFinished(-1) && shell.exitCode() == 0, "sqlite3");
}

void Bench_Large_Set(const QTemporaryDir& folder)
{
    const TDatabaseItem item = Make_Set(0, LARGE_SET);
    const std::vector<QByteArray> statements = Saving_Statements(item);
    const QString our_file = folder.filePath("ours");
    const QString reference_file = folder.filePath("reference");
    Compare(
        "save 100,000 positions", ROUNDS, 1.2,
        [&] {
            QFile::remove(our_file);
            TDatabase database;
            Check(database.Connect(our_file) && database.Initialize() && database.Add_Database_Item(item),
                  "saving");
        },
        [&] {
            QFile::remove(reference_file);
            TReference(reference_file).Execute(statements);
        });

    TDatabase database;
    Check(database.Connect(our_file), "opening");
    TReference reference(reference_file);
    const QByteArray select = Statements::Select_Positions(1, 1).toUtf8();
    Compare(
        "load 100,000 positions", ROUNDS, 2.5,
        [&] {
            bool valid = false;
            const TDatabaseItem loaded = database.Database_Item(item.Date(), item.Time(), &valid);
            Check(valid && loaded.Ballbar_Count() == LARGE_SET, "loading");
        },
        [&] { Check(reference.Read(select) > 0.0, "the reference's loading"); });
}

void Bench_Archive(const QTemporaryDir& folder)
{
    const QString archive = folder.filePath("archive.db");
    {
        TDatabase database;
        Check(database.Connect(archive) && database.Initialize(), "creating the archive");
        for (int number = 0; number < SETS; ++number)
            Check(database.Add_Database_Item(Make_Set(number, SET_SIZE)), "filling the archive");
    }
    TPresetDialog dialog;
    dialog.d_file = folder.filePath("archive.backup");
    TReference reference(archive);
    std::printf("%-44s %14.3f\n", "start-up with 1,000 sets",
                Seconds([&] { Check(dialog.Connect_To_Database(archive), "connecting"); }) * 1e3);

    dialog.show();
    auto* tree = dialog.findChild<QTreeWidget*>("entries");
    tree->expandAll();
    Compare(
        "select 1,000 sets of 50 positions", 1, 3.0,
        [&] {
            tree->clearSelection();
            tree->blockSignals(true); // whole dates only: a time beside its date would count twice
            for (int i = 0; i < tree->topLevelItemCount(); ++i)
                tree->topLevelItem(i)->setSelected(true);
            tree->blockSignals(false);
            dialog.Selection_Changed();
        },
        [&] {
            for (int time_id = 1; time_id <= SETS; ++time_id)
                reference.Read(Statements::Select_Positions((time_id + 3) / 4, time_id).toUtf8());
        });

    const QString dump = folder.filePath("archive.sql");
    const QString read = folder.filePath("read");
    Compare(
        "backup of 1,000 sets", ROUNDS, 1.0, [&] { dialog.Backup(); },
        [&] {
            Run_Shell({archive, ".dump"}, dump);
        });
    Compare(
        "restore of 1,000 sets", ROUNDS, 4.0, [&] { dialog.Restore(); },
        [&] {
            QFile::remove(read);
            Run_Shell({read, ".read " + dump}, QString());
        });
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    Print_Heading("ours, ms", "SQLite, ms");
    Bench_Large_Set(folder);
    Bench_Archive(folder);
}

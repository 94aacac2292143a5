// SPDX-License-Identifier: MIT
// The database against SQLite itself: each line is a task, our time, SQLite's time for the same work (both
// milliseconds, the median of several runs taken in turn) and the ratio of the two.
#include "database.h"
#include "databasedialog.h"
#include "databasestatements.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace
{

constexpr int LARGE_SET = 100000;
constexpr int SETS = 1000;
constexpr int SET_SIZE = 50;
constexpr int RUNS = 5;

void Check(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

double Milliseconds(const std::function<void()>& task)
{
    QElapsedTimer clock;
    clock.start();
    task();
    return static_cast<double>(clock.nsecsElapsed()) * 1e-6;
}

double Median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void Compare(const char* name, const std::function<void(int)>& ours,
             const std::function<void(int)>& reference, int runs = RUNS)
{
    std::vector<double> our_times;
    std::vector<double> reference_times;
    for (int run = 0; run < runs; ++run) {
        our_times.push_back(Milliseconds([&] { ours(run); }));
        reference_times.push_back(Milliseconds([&] { reference(run); }));
    }
    const double our_time = Median(our_times);
    const double reference_time = Median(reference_times);
    std::printf("%-36s %10.1f %10.1f %8.2f\n", name, our_time, reference_time, our_time / reference_time);
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
    const auto file = [&folder](const char* name, int run) {
        return folder.filePath(name + QString::number(run));
    };
    Compare(
        "save 100,000 positions",
        [&](int run) {
            TDatabase database;
            Check(database.Connect(file("ours", run)) && database.Initialize() &&
                      database.Add_Database_Item(item),
                  "saving");
        },
        [&](int run) { TReference(file("reference", run)).Execute(statements); });

    TDatabase database;
    Check(database.Connect(file("ours", 0)), "opening");
    TReference reference(file("reference", 0));
    const QByteArray select = Statements::Select_Positions(1, 1).toUtf8();
    Compare(
        "load 100,000 positions",
        [&](int) {
            bool valid = false;
            const TDatabaseItem loaded = database.Database_Item(item.Date(), item.Time(), &valid);
            Check(valid && loaded.Ballbar_Count() == LARGE_SET, "loading");
        },
        [&](int) { Check(reference.Read(select) > 0.0, "the reference's loading"); });
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
    Compare(
        "start-up with 1,000 sets", [&](int) { Check(dialog.Connect_To_Database(archive), "connecting"); },
        [&](int) {
            TReference start(archive);
            start.Read(Statements::Select_Dates().toUtf8());
            for (int date_id = 1; date_id <= SETS / 4; ++date_id)
                start.Read(Statements::Select_Times(date_id).toUtf8());
        });

    dialog.show();
    auto* tree = dialog.findChild<QTreeWidget*>("entries");
    tree->expandAll();
    Compare(
        "select 1,000 sets of 50 positions",
        [&](int) {
            tree->clearSelection();
            tree->blockSignals(true); // whole dates only: a time beside its date would count twice
            for (int i = 0; i < tree->topLevelItemCount(); ++i)
                tree->topLevelItem(i)->setSelected(true);
            tree->blockSignals(false);
            dialog.Selection_Changed();
        },
        [&](int) {
            for (int time_id = 1; time_id <= SETS; ++time_id)
                reference.Read(Statements::Select_Positions((time_id + 3) / 4, time_id).toUtf8());
        },
        1);

    const QString dump = folder.filePath("archive.sql");
    Compare(
        "backup of 1,000 sets", [&](int) { dialog.Backup(); },
        [&](int) {
            Run_Shell({archive, ".dump"}, dump);
        });
    Compare(
        "restore of 1,000 sets", [&](int) { dialog.Restore(); },
        [&](int run) {
            Run_Shell({folder.filePath("read" + QString::number(run)), ".read " + dump}, QString());
        });
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    std::printf("%-36s %10s %10s %8s\n", "name", "ours", "reference", "ratio");
    Bench_Large_Set(folder);
    Bench_Archive(folder);
}

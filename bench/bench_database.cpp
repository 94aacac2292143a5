// SPDX-License-Identifier: MIT
// The database against SQLite itself, through its own interface and its shell, doing the same work.
#include "database.h"
#include "databasedialog.h"
#include "ratio.h"
#include "statements.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

constexpr int LARGE_SET = 100000;
constexpr int SET_SIZE = 40;
constexpr int ROUNDS = 5;
constexpr int SCANS = 20; // of the whole table, measured for all

void Check(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

// Prints a line of the table, in ms. The reference does the `share`-th part of its work only.
void Compare(const QString& name, double goal, const std::function<void()>& ours,
             const std::function<void()>& reference, int share = 1)
{
    const TComparison times(ROUNDS, ours, reference);
    Print_Ratio(name.toUtf8().constData(), times.ours * 1e3, times.reference * share * 1e3, goal);
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

    void Execute(const QStringList& statements)
    {
        for (const QString& statement : statements)
            Check(sqlite3_exec(d_database, statement.toUtf8(), nullptr, nullptr, nullptr) == SQLITE_OK,
                  qPrintable(statement));
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
    item.Set_Date(QString("2026 Day %1").arg(number));
    item.Set_Time("10:15:02 AM");
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

QStringList Creating_Statements()
{
    QStringList texts;
    for (const Statements::TTable& table : Statements::TABLES)
        texts << table.create;
    return texts;
}

QStringList Position_Statements(int date_id, int time_id, const TDatabaseItem& item)
{
    QStringList texts;
    for (const Types::TBallbar_Item& position : item.Ballbar_Items())
        texts << Statements::Insert_Position(date_id, time_id, position);
    return texts << Statements::Insert_Summary(date_id, time_id, item);
}

// Executes ready-made texts as a program would that has nothing but Qt's driver.
void Execute_By_Qt(const QString& file, const QStringList& statements)
{
    {
        QSqlDatabase connection = QSqlDatabase::addDatabase("QSQLITE", "reference");
        connection.setDatabaseName(file);
        Check(connection.open(), "opening the reference");
        QSqlQuery query(connection);
        query.setForwardOnly(true);
        for (const QString& statement : statements)
            Check(query.exec(statement), qPrintable(statement));
    }
    QSqlDatabase::removeDatabase("reference");
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
    const QStringList statements = Creating_Statements()
                                   << Statements::Insert_Date(item.Date())
                                   << Statements::Insert_Time(1, item.Time()) << Statements::BEGIN
                                   << Position_Statements(1, 1, item) << Statements::COMMIT;
    const QString our_file = folder.filePath("ours");
    const QString reference_file = folder.filePath("reference");
    Compare(
        "save 100,000 positions (texts by Qt's driver)", 1.15,
        [&] {
            QFile::remove(our_file);
            TDatabase database;
            Check(database.Connect(our_file) && database.Initialize() && database.Add_Database_Item(item),
                  "saving");
        },
        [&] {
            QFile::remove(reference_file);
            Execute_By_Qt(reference_file, statements);
        });

    TDatabase database;
    Check(database.Connect(our_file), "opening");
    TReference reference(reference_file);
    const QByteArray select = Statements::Select_Positions(1, 1).toUtf8();
    Compare(
        "load 100,000 positions (C interface)", 2.5,
        [&] {
            bool valid = false;
            const TDatabaseItem loaded = database.Database_Item(item.Date(), item.Time(), &valid);
            Check(valid && loaded.Ballbar_Count() == LARGE_SET, "loading");
        },
        [&] { Check(reference.Read(select) > 0.0, "the reference's loading"); });
}

/// A database of many sets, one a day, filled without the program, and what is measured with it. Only one may
/// be open at a time.
class TArchive
{
public:
    TArchive(const QTemporaryDir& folder, int sets);

    void Open();
    void Close() { d_dialog.reset(); }
    /// What the program does with an open database.
    void Save();
    void Select_All();
    void Backup() { d_dialog->Backup(); }
    void Restore() { d_dialog->Restore(); }

    /// The time of one of these or of opening, s.
    double Time(void (TArchive::*work)());
    void Compare_With_Reference();

private:
    void Compare_Start();
    void Compare_Select_All();
    void Compare_Backup();
    void Compare_Restore();
    QString Name(const char* what, const char* reference) const;
    void Cool_Down() const;

    int d_sets;
    int d_saved{0}; // besides these
    QString d_file;
    QString d_dump;
    std::unique_ptr<TPresetDialog> d_dialog;
};

TArchive::TArchive(const QTemporaryDir& folder, int sets)
    : d_sets(sets), d_file(folder.filePath(QString("%1.db").arg(sets))), d_dump(d_file + ".sql")
{
    QStringList statements = Creating_Statements() << Statements::BEGIN;
    for (int number = 0; number < sets; ++number) {
        const TDatabaseItem item = Make_Set(number, SET_SIZE);
        statements << Statements::Insert_Date(item.Date()) << Statements::Insert_Time(number + 1, item.Time())
                   << Position_Statements(number + 1, number + 1, item);
    }
    TReference(d_file).Execute(statements << Statements::COMMIT);
}

void TArchive::Open()
{
    d_dialog = std::make_unique<TPresetDialog>();
    d_dialog->d_file = d_file + ".backup";
    Check(d_dialog->Connect_To_Database(d_file), "connecting");
}

void TArchive::Save()
{
    Check(d_dialog->Add_Database_Item(Make_Set(d_sets + d_saved++, SET_SIZE)), "saving");
}

void TArchive::Select_All()
{
    d_dialog->show();
    auto* tree = d_dialog->findChild<QTreeWidget*>("entries");
    tree->clearSelection();
    tree->selectAll(); // every date; its times are folded in
    Check(d_dialog->findChild<QTableWidget*>("summary")->rowCount() >= d_sets, "selecting");
}

double TArchive::Time(void (TArchive::*work)())
{
    if (work == &TArchive::Open)
        Close();
    else if (!d_dialog)
        Open();
    return Seconds([&] { (this->*work)(); });
}

void TArchive::Compare_With_Reference()
{
    Compare_Start();
    Compare_Select_All();
    Compare_Backup();
    Compare_Restore();
    Close();
}

void TArchive::Compare_Start()
{
    Compare(
        Name("start", "C, 3 tables read"), 3.0, [&] { Open(); },
        [&] {
            TReference reference(d_file);
            for (const char* table : {"date", "time", "data"})
                reference.Read(QByteArray("SELECT * FROM ") + table);
        });
}

void TArchive::Compare_Select_All()
{
    TReference reference(d_file);
    Compare(
        Name("select all", "a scan for each set"), 0.2, [&] { Select_All(); },
        [&] {
            for (int i = 1; i <= SCANS; ++i)
                reference.Read(Statements::Select_Positions(i, i).toUtf8());
        },
        d_sets / SCANS);
}

void TArchive::Compare_Backup()
{
    const auto dump = [&] { Run_Shell({d_file, ".dump"}, d_dump); };
    Compare(
        Name("backup, cold", "sqlite3 .dump"), 1.2,
        [&] {
            Cool_Down();
            Backup();
        },
        [&] {
            Cool_Down();
            dump();
        });
    Compare(
        Name("backup", "sqlite3 .dump"), 1.2, [&] { Backup(); }, dump);
}

void TArchive::Compare_Restore()
{
    const QString read = d_file + ".read";
    Compare(
        Name("restore", "sqlite3 .read"), 3.0, [&] { Restore(); },
        [&] {
            QFile::remove(read);
            Run_Shell({read, ".read " + d_dump}, QString());
        });
}

QString TArchive::Name(const char* what, const char* reference) const
{
    return QString("%1, %L2 sets (%3)").arg(what).arg(d_sets).arg(reference);
}

// Takes the database out of the system's memory, so that it comes from the disk again.
void TArchive::Cool_Down() const
{
    QFile file(d_file);
    Check(file.open(QIODevice::ReadOnly) && fdatasync(file.handle()) == 0 &&
              posix_fadvise(file.handle(), 0, 0, POSIX_FADV_DONTNEED) == 0,
          "cooling down");
}

// With ten times the sets nothing may take much more than ten times as long. Both are measured in turns and
// for as long as each other: the machine is not equally quick from one minute to the next.
void Bench_Growth(TArchive* small, TArchive* large)
{
    const std::pair<const char*, void (TArchive::*)()> works[] = {
        {"start", &TArchive::Open},    {"save", &TArchive::Save},       {"select all", &TArchive::Select_All},
        {"backup", &TArchive::Backup}, {"restore", &TArchive::Restore},
    };
    Print_Heading("10,000, ms", "10 x 1,000, ms", "the same, ten times, with a tenth of the sets");
    for (const auto& [name, work] : works) {
        const auto seconds = [timed = work](TArchive* archive, int times) {
            double sum = 0.0;
            for (int i = 0; i < times; ++i)
                sum += archive->Time(timed);
            archive->Close();
            return sum;
        };
        double ten_times = 1e300;
        double once = 1e300;
        for (int round = 0; round < ROUNDS; ++round) {
            ten_times = std::min(ten_times, seconds(small, 10));
            once = std::min(once, seconds(large, 1));
        }
        Print_Ratio(name, once * 1e3, ten_times * 1e3, 1.2);
    }
}

void Bench_Archives(const QTemporaryDir& folder)
{
    TArchive small(folder, 1000);
    TArchive large(folder, 10000);
    small.Compare_With_Reference();
    large.Compare_With_Reference();
    Bench_Growth(&small, &large);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    Print_Heading("ours, ms", "reference, ms");
    Bench_Large_Set(folder);
    Bench_Archives(folder);
}

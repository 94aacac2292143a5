// SPDX-License-Identifier: MIT
#include "databasetest.h"
#include "keptcopies.h"

#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

const QString DATE = "2019 Mar 04";
const QString TIME = "10:15:02 AM";

class Database : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(d_database.Connect(d_file) && d_database.Initialize());
        Rows("PRAGMA synchronous=OFF"); // tests need no disk
    }

    bool Add(const QString& time, int count)
    {
        return d_database.Add_Database_Item(Make_Set(DATE, time, count));
    }
    bool Holds(const QString& time, int count) const
    {
        bool valid = false;
        return d_database.Database_Item(DATE, time, &valid).Ballbar_Count() == count && valid;
    }
    bool Failed_With(const QString& start) const
    {
        return d_database.Last_Error().startsWith(start) &&
               d_database.Last_Error().size() > start.size() + 10;
    }

    QTemporaryDir d_folder;
    QString d_file{d_folder.filePath("a[1].db")};
    TDatabase d_database;
    bool d_valid{false};
};

// Another process that runs statements and keeps its locks until it goes.
class TOtherProcess : public QProcess
{
public:
    TOtherProcess(const QString& file, const QByteArray& statements)
    {
        start("sqlite3", {file});
        write(statements + ";\n.print ready\n");
        EXPECT_TRUE(waitForReadyRead() && readAll().endsWith("ready\n"))
            << readAllStandardError().constData();
    }
    ~TOtherProcess() override
    {
        closeWriteChannel();
        waitForFinished();
    }
};

} // namespace

TEST(DatabaseItem, IsOfNowAndCleansNamesOfItsCopies)
{
    const auto now = [] {
        return QDateTime::currentDateTime().toString("yyyy MMM dd|hh:mm:ss AP").simplified();
    };
    const QString before = now();
    TDatabaseItem item;
    const QString found = item.Date() + "|" + item.Time();
    EXPECT_TRUE(found == before || found == now()) << qPrintable(found);

    const char* const names[][2] = {{"P1,a:b's", "P1abs"},
                                    {"''\"\"%%**[[]]^^\\\\//,,::", ""},
                                    {"%1 (1); -", "1 (1); -"},
                                    {"µ–Ärger'", "µ–Ärger"}};
    for (const auto& [name, cleaned] : names) {
        const Types::TBallbar_Item source{name, {}, {}, {}, 0, 0};
        item.Add_Ballbar(source);
        EXPECT_EQ(item.Ballbar_Items().back().name, QString(cleaned));
        EXPECT_EQ(source.name, QString(name));
    }
    item.Set_Date("2019/Mar'04");
    item.Set_Time(TIME);
    item.Clean_Strings();
    EXPECT_EQ(item.Date() + item.Time(), "2019Mar04101502 AM");
    EXPECT_DEATH(item.Ballbar_Item(-1), "static_cast<unsigned int>\\(index\\) < d_ballbar_items.size\\(\\)");
    EXPECT_DEATH(item.Ballbar_Item(4), "static_cast<unsigned int>\\(index\\) < d_ballbar_items.size\\(\\)");
}

TEST(DatabaseItem, StatisticsFollowWhenAsked)
{
    TDatabaseItem item;
    for (const double length : {2.0, 1.0, 10.0})
        item.Add_Ballbar({"P", {0, 0, 0}, {0, length, 0}, {0, 0, 0}, 0, 0});
    const auto found = [&item] {
        return std::vector<double>{item.Minimum(), item.Maximum(), item.Mean(), item.Median(),
                                   item.Standard_Deviation()};
    };
    EXPECT_EQ(found(), std::vector<double>(5, 0.0));
    item.Update_Stats();
    EXPECT_EQ(found(), std::vector<double>({1.0, 10.0, 13.0 / 3.0, 5.5, std::sqrt(146.0 / 6.0)}));
    item.Clear_Ballbars();
    EXPECT_EQ(found(), std::vector<double>(5, 0.0));
}

TEST_F(Database, CreatesItsTablesOnce)
{
    for (const Statements::TTable& table : Statements::TABLES)
        EXPECT_EQ(Rows(QString("SELECT sql FROM sqlite_master WHERE name='%1'").arg(table.name)).value(0),
                  QString(table.create));
    Rows("ALTER TABLE data RENAME TO other");
    Rows("ALTER TABLE other RENAME TO DATA");
    EXPECT_TRUE(d_database.Initialize());
    EXPECT_EQ(Rows("SELECT count(*) FROM sqlite_master WHERE name NOT LIKE 'sqlite%'"), QStringList("4"));
}

TEST_F(Database, StoresRowsAsTheyAreReadBack)
{
    TDatabaseItem item = Make_Set(DATE, TIME, 0);
    item.Add_Ballbar({"a%1 %2'b", {1.000004, -2, 3}, {4, 5.5, 6}, {7, 8, -9.123456}, 0.1, 0.2});
    item.Add_Ballbar({"%9", {0, 0, 0}, {0, 3, 4}, {0, 0, 0}, 0, 0});
    item.Update_Stats();
    ASSERT_TRUE(d_database.Add_Database_Item(item)) << qPrintable(d_database.Last_Error());
    EXPECT_EQ(d_database.Last_Error(), "Time not found."); // of the look-up before; a success leaves it
    EXPECT_EQ(Rows("SELECT date_id,entry FROM date"), QStringList("1|2019 Mar 04"));
    EXPECT_EQ(Rows("SELECT * FROM time"), QStringList("1|1|10:15:02 AM"));
    EXPECT_EQ(Rows("SELECT * FROM data"),
              QStringList({"1|1|a1 2b|1|-2|3|4|5.5|6|0.1|0.2|7|8|-9.12346", "1|1|9|0|0|0|0|3|4|0|0|0|0|0"}));
    EXPECT_EQ(Rows("SELECT * FROM summary"), QStringList("1|1|2|5|8.6168|6.8084|6.8084|2.5575"));
    EXPECT_TRUE(Statements::Insert_Position(1, 1, item.Ballbar_Item(0))
                    .endsWith(",0.20000,'7.00000',8.00000,-9.12346)"));

    const TDatabaseItem read = d_database.Database_Item(DATE, TIME, &d_valid);
    ASSERT_TRUE(d_valid && read.Ballbar_Count() == 2 && read.Date() == DATE && read.Time() == TIME);
    EXPECT_EQ(Statements::Insert_Position(1, 1, read.Ballbar_Item(0)),
              Statements::Insert_Position(1, 1, item.Ballbar_Item(0)));
    EXPECT_EQ(read.Minimum(), 5.0);
    EXPECT_EQ(d_database.Date_Id("2019 Mar 05"), -1);
    EXPECT_EQ(d_database.Last_Error(), "Date not found.");
    EXPECT_TRUE(d_database.Time_Exists(DATE, TIME) && !d_database.Time_Exists(DATE, "10:15:03 AM"));

    ASSERT_TRUE(Add(TIME, 0));
    EXPECT_NE(d_database.Database_Item(DATE, TIME, &d_valid).Date(), DATE); // without positions it is of now
    EXPECT_TRUE(d_valid);
    EXPECT_EQ(Rows("SELECT * FROM summary"), QStringList("1|1|0|0|0|0|0|0"));
}

TEST_F(Database, ReplacesTheSetUnderTheSameStamp)
{
    // Sets in between, changes and reads in turn: what is known of the rows has to follow.
    for (const int count : {5, 3, 0, 7}) {
        for (const QString& time : {QString("1"), TIME, QString("2")})
            EXPECT_TRUE(Add(time, count) && Holds(time, count) && Holds("1", count));
        EXPECT_EQ(Rows("SELECT count(*) FROM data"), QStringList(QString::number(3 * count)));
        EXPECT_EQ(Rows("SELECT DISTINCT count FROM summary"), QStringList(QString::number(count)));
    }
    EXPECT_TRUE(d_database.Add_Database_Item(Make_Set("2020 Jan 01", TIME, 2)));
    EXPECT_EQ(d_database.Date_List(&d_valid), QStringList({DATE, "2020 Jan 01"}));
    EXPECT_EQ(d_database.Time_List(DATE, &d_valid), QStringList({"1", TIME, "2"}));
    EXPECT_TRUE(d_valid && Holds(TIME, 7));
    TOtherProcess(d_file, "DELETE FROM data WHERE time_id=1; UPDATE data SET rowid=-rowid");
    EXPECT_TRUE(Holds("1", 0) && Holds(TIME, 7));
    d_database.Clear();
    EXPECT_TRUE(d_database.Date_List(&d_valid).isEmpty() && d_valid);
    EXPECT_EQ(Rows("SELECT 1 FROM time UNION ALL SELECT 1 FROM summary UNION ALL SELECT 1 FROM data"),
              QStringList());
}

TEST(DatabaseClosed, SaysSo)
{
    const QTemporaryDir folder;
    TDatabase database;
    bool valid = true;
    EXPECT_FALSE(database.Initialize());
    EXPECT_EQ(database.Last_Error(), "Database not open");
    for (const QString& before : {QString(), folder.filePath("good.db")}) {
        EXPECT_FALSE(database.Connect(folder.filePath("missing/a.db")));
        EXPECT_EQ(database.Last_Error(),
                  "Cannot open database.\n\tDatabase Error: 'unable to open database file'\n"
                  "\tDriver Error: 'Error opening database'\n\t\tDatabase File Name: '" +
                      before + "'\n\tAvailable database drivers:\n\t\t" +
                      QSqlDatabase::drivers().join("\n\t\t") + "\n");
        EXPECT_FALSE(database.Is_Connected() || QSqlDatabase::contains("ballbar_database"));
        EXPECT_TRUE(database.Connect(folder.filePath("good.db")));
    }
    database.Disconnect();
    database.Clear();
    EXPECT_FALSE(database.Add_Database_Item(TDatabaseItem()) || database.Keep_Copy());
    EXPECT_TRUE(database.Date_List(&valid).isEmpty() && !valid);
    EXPECT_EQ(database.Last_Error(), "Not connected");
    EXPECT_DEATH(database.Date_List(nullptr), "valid");
}

TEST_F(Database, TellsWhichTableFailed)
{
    const char* const rows[][2] = {
        {"ALTER TABLE date RENAME TO x", "Cannot add data to table 'date'.  Reason: "},
        {"ALTER TABLE time RENAME COLUMN entry TO x", "Cannot add data to table 'time'.  Reason: "},
        {"ALTER TABLE data RENAME COLUMN time_id TO x", "Cannot delete existing ballbar data.  Reason: "},
        {"ALTER TABLE data RENAME COLUMN tool_z TO x", "Cannot add data to table 'data'.  Reason: "},
        {"ALTER TABLE summary RENAME COLUMN time_id TO x", "Cannot delete existing summary data.  Reason: "},
        {"ALTER TABLE summary RENAME COLUMN count TO x", "Cannot add data to table 'summary'.  Reason: "},
    };
    for (const auto& [damage, error] : rows) {
        ASSERT_TRUE(d_database.Connect(d_folder.filePath(damage)) && d_database.Initialize());
        Rows(damage);
        EXPECT_FALSE(Add(TIME, 2));
        EXPECT_TRUE(Failed_With(error)) << damage << qPrintable(d_database.Last_Error());
    }
    Rows("ALTER TABLE data RENAME COLUMN name TO x");
    d_database.Database_Item(DATE, TIME, &d_valid);
    EXPECT_FALSE(d_valid);
    EXPECT_TRUE(d_database.Last_Error().contains("no such column: name"))
        << qPrintable(d_database.Last_Error());
}

TEST_F(Database, AFullDiskLeavesNoHalfSet)
{
    ASSERT_TRUE(Add("1", 20));
    Rows(QString("PRAGMA max_page_count=%1").arg(Rows("PRAGMA page_count").value(0).toInt() + 4));
    EXPECT_FALSE(Add("2", 5000));
    EXPECT_TRUE(Failed_With("Cannot add data to table 'data'.  Reason: ") &&
                d_database.Last_Error().contains("full"));
    EXPECT_TRUE(Add("3", 5));
    EXPECT_TRUE(Holds("1", 20) && Holds("2", 0) && Holds("3", 5));
}

TEST_F(Database, FilesThatAreNoDatabase)
{
    ASSERT_TRUE(Add(TIME, 2000));
    d_database.Disconnect();
    const QByteArray good = Content(d_file);
    for (const QByteArray& content : {QByteArray(), QByteArray("no database\n").repeated(1000),
                                      good.left(good.size() / 2), good.left(100)}) {
        Write(d_file, content);
        EXPECT_TRUE(d_database.Connect(d_file)); // SQLite looks at a file when it reads it
        EXPECT_EQ(d_database.Initialize(), content.isEmpty()) << qPrintable(d_database.Last_Error());
        EXPECT_FALSE(Holds(TIME, 0));
        if (!content.isEmpty()) {
            EXPECT_EQ(d_database.Last_Error(), "Date not found.");
            EXPECT_FALSE(Add(TIME, 1) || d_database.Keep_Copy());
            EXPECT_EQ(Content(d_file), content);
        }
    }
}

TEST_F(Database, WhatCannotBeWrittenSaysSo)
{
    ASSERT_TRUE(Add(TIME, 3));
    d_database.Disconnect();
    ASSERT_TRUE(QFile::setPermissions(d_file, QFile::Permissions(0x4444)));
    ASSERT_TRUE(QFile::setPermissions(d_folder.path(), QFile::Permissions(0x5555)));
    const uid_t user = geteuid();
    ASSERT_EQ(user == 0 ? seteuid(65534) : 0, 0); // root may write everywhere
    EXPECT_TRUE(d_database.Connect(d_file) && d_database.Initialize());
    EXPECT_FALSE(d_database.Add_Database_Item(Make_Set("2020 Jan 01", TIME, 3)));
    EXPECT_TRUE(Failed_With("Cannot add data to table 'date'.  Reason: "));
    EXPECT_FALSE(d_database.Keep_Copy());
    EXPECT_TRUE(Holds(TIME, 3) && !d_database.Connect(d_folder.filePath("new.db")));
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_TRUE(QFile::setPermissions(d_folder.path(), QFile::Permissions(0x7700)));
}

TEST_F(Database, DoesNotWaitLongForOthers)
{
    ASSERT_TRUE(Add("1", 3) && Add("2", 3));
    {
        const TOtherProcess writer(d_file, "BEGIN IMMEDIATE");
        EXPECT_FALSE(Add("3", 3));
        EXPECT_TRUE(d_database.Last_Error().contains("locked") && Holds("1", 3))
            << qPrintable(d_database.Last_Error());
    }
    {
        const TOtherProcess reader(d_file, "BEGIN; SELECT 1 FROM date WHERE 0");
        EXPECT_FALSE(Add("1", 30) || d_database.Keep_Copy());
        Rows("DELETE FROM data WHERE 0"); // nothing of ours is left open
    }
    {
        const TOtherProcess holder(d_file, "BEGIN EXCLUSIVE");
        for (int i = 0; i < 1000; ++i) // waits once, not a thousand times: the test's time limit tells
            EXPECT_FALSE(Holds("2", 3));
    }
    EXPECT_TRUE(Holds("2", 3) && Add("3", 3) && Holds("3", 3)) << qPrintable(d_database.Last_Error());
    EXPECT_EQ(Rows("PRAGMA busy_timeout"), QStringList(QString::number(TDatabase::BUSY_TIMEOUT)));
}

TEST_F(Database, KeepsFiveCopies)
{
    const QString newer =
        Kept_Copies::File_Name(d_file, {{2099, 3, 1}, {10, 15, 2, 123}}); // by a clock set back
    EXPECT_EQ(newer, d_folder.filePath("a[1]_2099-03-01_10-15-02-123.db"));
    const QStringList others{"a[1]_old.db", "a1_2026-03-01_10-15-02-123.db",
                             "xa[1]_2026-03-01_10-15-02-123.db"};
    for (const QString& name : others)
        Write(d_folder.filePath(name), "");
    Write(newer, "");
    for (int i = 1; i <= 7; ++i) {
        ASSERT_TRUE(Add(QString::number(i), i) && d_database.Keep_Copy())
            << qPrintable(d_database.Last_Error());
        EXPECT_EQ(Kept_Copies::List(d_file).size(), std::min(i + 1, 5));
    }
    for (const QString& name : others)
        EXPECT_TRUE(QFile::exists(d_folder.filePath(name))) << qPrintable(name);
    // What does not fit leaves nothing behind, and the older copies stay.
    const QStringList files = QDir(d_folder.path()).entryList();
    On_A_Full_Disk([this] { EXPECT_FALSE(d_database.Keep_Copy()); });
    EXPECT_TRUE(Failed_With("Cannot keep a copy of the database.  Reason: "));
    EXPECT_EQ(QDir(d_folder.path()).entryList(), files);
    EXPECT_TRUE(d_database.Connect(Kept_Copies::List(d_file)[0]) && Holds("4", 4) && !Holds("5", 5));
}

// What was stored before is there after the process was killed at whatever moment.
TEST_F(Database, SurvivesKills)
{
    const auto restore = [this](bool backup_first = false) {
        TPresetDialog dialog;
        dialog.d_file = d_folder.filePath("backup");
        EXPECT_TRUE(dialog.Connect_To_Database(d_file));
        backup_first ? dialog.Backup() : dialog.Restore();
    };
    const auto intact = [this](const QString& file) {
        EXPECT_TRUE(d_database.Connect(file) && d_database.Initialize())
            << qPrintable(d_database.Last_Error());
        bool good = Rows("PRAGMA integrity_check") == QStringList("ok");
        for (int i = 0; i < 50; ++i)
            good = Holds(QString::number(i), 10) && good;
        d_database.Disconnect();
        return good;
    };
    for (int i = 0; i < 50; ++i)
        ASSERT_TRUE(Add(QString::number(i), 10));
    d_database.Disconnect(); // connections do not survive a fork
    restore(true);
    std::mt19937 random(1);
    int half_saved = 0;
    int half_restored = 0;
    for (int i = 0; i < 100; ++i) {
        const bool restores = i % 2 == 1;
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            TPresetDialog dialog;
            dialog.d_file = d_folder.filePath("backup");
            bool good = dialog.Connect_To_Database(d_file);
            for (close(ready[1]); good;) {
                if (restores)
                    dialog.Restore();
                else
                    good = dialog.Add_Database_Item(Make_Set("new", "1", 300));
            }
            _exit(1);
        }
        close(ready[1]);
        EXPECT_EQ(read(ready[0], &ready[1], 1), 0); // until the child has closed its end
        close(ready[0]);
        usleep(static_cast<useconds_t>(random() % (restores ? 100000 : 20000)));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_TRUE(waitpid(child, &status, 0) == child && WIFSIGNALED(status)) << "the work failed";
        half_saved += !restores && QFile::exists(d_file + "-journal");
        if (intact(d_file))
            continue;
        ++half_restored; // the copy from before it has everything, and the backup brings it back
        ASSERT_TRUE(restores && intact(Kept_Copies::List(d_file).last())) << "kill " << i;
        restore();
    }
    std::printf("%d %d\n", half_saved, half_restored);
    EXPECT_TRUE(half_saved > 0 && half_restored > 0) << half_saved << " " << half_restored;
}

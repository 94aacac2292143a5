// SPDX-License-Identifier: MIT
#include "databasetest.h"
#include "keptcopies.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
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

    bool Holds(const QString& date, const QString& time, int count) const
    {
        bool valid = false;
        return d_database.Database_Item(date, time, &valid).Ballbar_Count() == count && valid;
    }

    QTemporaryDir d_folder;
    QString d_file{d_folder.filePath("ballbar_data.db")};
    TDatabase d_database;
};

// Another process that runs one statement and keeps its lock until it goes.
class TOtherProcess
{
public:
    TOtherProcess(const QString& file, const QString& statement)
    {
        d_process.start("sqlite3", {file});
        d_process.write((statement + ";\nSELECT 'ready';\n").toUtf8());
        QByteArray output;
        while (!output.contains("ready") && d_process.waitForReadyRead())
            output += d_process.readAll();
        EXPECT_TRUE(output.endsWith("ready\n")) << output.constData();
    }
    ~TOtherProcess()
    {
        d_process.closeWriteChannel();
        d_process.waitForFinished();
    }
    TOtherProcess(const TOtherProcess&) = delete;
    TOtherProcess& operator=(const TOtherProcess&) = delete;

private:
    QProcess d_process;
};

// While it lives this process has no rights over files that belong to root.
class TNobody
{
public:
    TNobody() : d_user(geteuid()) { EXPECT_EQ(d_user == 0 ? seteuid(65534) : 0, 0); }
    ~TNobody() { EXPECT_EQ(seteuid(d_user), 0); }
    TNobody(const TNobody&) = delete;
    TNobody& operator=(const TNobody&) = delete;

private:
    uid_t d_user;
};

} // namespace

TEST_F(Database, CreatesItsTablesOnce)
{
    EXPECT_TRUE(d_database.Initialize());
    const QStringList tables = Rows("SELECT name FROM sqlite_master WHERE name NOT LIKE 'sqlite%'");
    EXPECT_EQ(tables, QStringList({"date", "time", "summary", "data"}));
    for (const Statements::TTable& table : Statements::TABLES)
        EXPECT_EQ(Rows(QString("SELECT sql FROM sqlite_master WHERE name='%1'").arg(table.name)).value(0),
                  QString(table.create));
    Rows("ALTER TABLE data RENAME TO other");
    Rows("ALTER TABLE other RENAME TO DATA");
    EXPECT_TRUE(d_database.Initialize());
    EXPECT_EQ(Rows("SELECT count(*) FROM sqlite_master WHERE lower(name)='data'"), QStringList("1"));
}

TEST_F(Database, StoresRowsAsTheyAreReadBack)
{
    TDatabaseItem item;
    item.Set_Date(DATE);
    item.Set_Time(TIME);
    item.Add_Ballbar({"a%1 %2'b", {1.000004, -2, 3}, {4, 5.5, 6}, {7, 8, -9.123456}, 0.1, 0.2});
    item.Add_Ballbar({"%9", {0, 0, 0}, {0, 3, 4}, {0, 0, 0}, 0, 0});
    item.Update_Stats();
    ASSERT_TRUE(d_database.Add_Database_Item(item)) << qPrintable(d_database.Last_Error());

    EXPECT_EQ(Rows("SELECT date_id,entry FROM date"), QStringList("1|2019 Mar 04"));
    EXPECT_EQ(Rows("SELECT * FROM time"), QStringList("1|1|10:15:02 AM"));
    EXPECT_EQ(Rows("SELECT * FROM data"),
              QStringList({"1|1|a1 2b|1|-2|3|4|5.5|6|0.1|0.2|7|8|-9.12346", "1|1|9|0|0|0|0|3|4|0|0|0|0|0"}));
    EXPECT_EQ(Rows("SELECT typeof(tool_x) FROM data LIMIT 1"), QStringList("real"));
    EXPECT_EQ(Rows("SELECT * FROM summary"), QStringList("1|1|2|5|8.6168|6.8084|6.8084|2.5575"));

    bool valid = false;
    const TDatabaseItem read = d_database.Database_Item(DATE, TIME, &valid);
    ASSERT_TRUE(valid && read.Ballbar_Count() == 2);
    EXPECT_EQ(read.Date(), DATE);
    EXPECT_EQ(read.Time(), TIME);
    EXPECT_EQ(read.Ballbar_Item(0).name, "a1 2b");
    EXPECT_EQ(read.Ballbar_Item(0).tool.z, -9.12346);
    EXPECT_EQ(read.Ballbar_Item(0).sph2_form, 0.2);
    EXPECT_EQ(read.Minimum(), 5.0);

    EXPECT_EQ(d_database.Date_Id("2019 Mar 05"), -1);
    EXPECT_EQ(d_database.Last_Error(), "Date not found.");
    EXPECT_EQ(d_database.Time_Id(1, "10:15:03 AM"), -1);
    EXPECT_TRUE(d_database.Time_Exists(DATE, TIME));
    EXPECT_EQ(d_database.Last_Error(), "Time not found."); // a success leaves it

    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 0)));
    EXPECT_NE(d_database.Database_Item(DATE, TIME, &valid).Date(), DATE); // without positions it is of now
    EXPECT_TRUE(valid);
    EXPECT_EQ(Rows("SELECT * FROM summary"), QStringList("1|1|0|0|0|0|0|0"));
}

TEST_F(Database, ReplacesTheSetUnderTheSameStamp)
{
    // Sets in between, changes and reads in turn: what is known of the rows has to follow.
    for (const int count : {5, 3, 0, 7}) {
        for (const QString& time : {QString("1"), TIME, QString("2")}) {
            ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, time, count, count)));
            EXPECT_TRUE(Holds(DATE, time, count));
        }
        EXPECT_TRUE(Holds(DATE, TIME, count));
        EXPECT_EQ(Rows("SELECT count(*) FROM data"), QStringList(QString::number(3 * count)));
        EXPECT_EQ(Rows("SELECT DISTINCT count FROM summary"), QStringList(QString::number(count)));
    }
    EXPECT_EQ(Rows("SELECT entry FROM date"), QStringList(DATE));
    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set("2020 Jan 01", TIME, 2)));
    bool valid = false;
    EXPECT_EQ(d_database.Date_List(&valid), QStringList({DATE, "2020 Jan 01"}));
    EXPECT_EQ(d_database.Time_List(DATE, &valid), QStringList({"1", TIME, "2"}));
    EXPECT_TRUE(valid && Holds(DATE, TIME, 7) && Holds("2020 Jan 01", TIME, 2));

    { // another process takes part
        const TOtherProcess other(d_file, "DELETE FROM data WHERE time_id=1; UPDATE data SET rowid=-rowid");
    }
    EXPECT_TRUE(Holds(DATE, "1", 0) && Holds(DATE, TIME, 7) && Holds("2020 Jan 01", TIME, 2));
    d_database.Clear();
    EXPECT_TRUE(d_database.Date_List(&valid).isEmpty() && valid);
    EXPECT_FALSE(Holds(DATE, TIME, 7));
    EXPECT_EQ(Rows("SELECT 1 FROM time UNION ALL SELECT 1 FROM summary UNION ALL SELECT 1 FROM data"),
              QStringList());
}

// Texts that were never cleaned stay texts: no statement changes its meaning.
TEST_F(Database, KeysAreNeverStatements)
{
    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 3)));
    for (const QString key : {"x' OR '1'='1", "'); DROP TABLE data;--", "%1", "%2'", "\"", "", "Mär 🙂"}) {
        SCOPED_TRACE(qPrintable(key));
        EXPECT_FALSE(d_database.Date_Exists(key));
        EXPECT_FALSE(d_database.Time_Exists(DATE, key));
        EXPECT_TRUE(d_database.Add_Database_Item(Make_Set(key, key, 1)));
        EXPECT_TRUE(Holds(key, key, 1));
        EXPECT_TRUE(Holds(DATE, TIME, 3));
    }
}

TEST(DatabaseClosed, SaysSo)
{
    TDatabase database;
    bool valid = true;
    EXPECT_FALSE(database.Initialize());
    EXPECT_EQ(database.Last_Error(), "Database not open");
    EXPECT_EQ(database.Date_Id(DATE), -1);
    EXPECT_EQ(database.Last_Error(), "Not connected");
    EXPECT_FALSE(database.Add_Database_Item(TDatabaseItem()));
    EXPECT_FALSE(database.Keep_Copy());
    database.Disconnect();
    database.Clear();
    EXPECT_EQ(database.Time_Id(1, TIME), -1);
    EXPECT_TRUE(database.Date_List(&valid).isEmpty());
    EXPECT_FALSE(valid);
    EXPECT_EQ(database.Database_Item(DATE, TIME, &valid).Ballbar_Count(), 0);
    EXPECT_DEATH(database.Date_List(nullptr), "valid");
}

TEST(DatabaseClosed, AFailedOpenNamesTheFileBefore)
{
    const QTemporaryDir folder;
    TDatabase database;
    for (const QString& before : {QString(), folder.filePath("good.db")}) {
        EXPECT_FALSE(database.Connect(folder.filePath("missing/a.db")));
        EXPECT_EQ(database.Last_Error(),
                  "Cannot open database.\n\tDatabase Error: 'unable to open database file'\n"
                  "\tDriver Error: 'Error opening database'\n\t\tDatabase File Name: '" +
                      before + "'\n\tAvailable database drivers:\n\t\t" +
                      QSqlDatabase::drivers().join("\n\t\t") + "\n");
        EXPECT_FALSE(database.Is_Connected());
        EXPECT_FALSE(QSqlDatabase::contains("ballbar_database"));
        EXPECT_TRUE(database.Connect(folder.filePath("good.db")));
    }
}

TEST_F(Database, TellsWhichTableFailed)
{
    const struct
    {
        const char* damage; // each drops or replaces a table of a fresh database
        const char* error;
    } rows[] = {
        {"ALTER TABLE date RENAME TO x", "Cannot add data to table 'date'.  Reason: "},
        {"ALTER TABLE time RENAME COLUMN entry TO x", "Cannot add data to table 'time'.  Reason: "},
        {"ALTER TABLE data RENAME COLUMN time_id TO x", "Cannot delete existing ballbar data.  Reason: "},
        {"ALTER TABLE data RENAME COLUMN tool_z TO x", "Cannot add data to table 'data'.  Reason: "},
        {"ALTER TABLE summary RENAME COLUMN time_id TO x", "Cannot delete existing summary data.  Reason: "},
        {"ALTER TABLE summary RENAME COLUMN count TO x", "Cannot add data to table 'summary'.  Reason: "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.damage);
        const QString file = d_folder.filePath(QString("damaged%1.db").arg(&row - rows));
        ASSERT_TRUE(d_database.Connect(file) && d_database.Initialize());
        Rows(row.damage);
        EXPECT_FALSE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 2)));
        EXPECT_TRUE(d_database.Last_Error().startsWith(row.error)) << qPrintable(d_database.Last_Error());
        EXPECT_GT(d_database.Last_Error().size(), QString(row.error).size() + 10);
    }
    bool valid = true;
    Rows("ALTER TABLE data RENAME COLUMN name TO x");
    EXPECT_EQ(d_database.Database_Item(DATE, TIME, &valid).Ballbar_Count(), 0);
    EXPECT_FALSE(valid);
    EXPECT_TRUE(d_database.Last_Error().contains("name")) << qPrintable(d_database.Last_Error());
    Rows("DROP TABLE date");
    Rows("CREATE VIEW date AS SELECT 1");
    EXPECT_FALSE(d_database.Initialize());
    EXPECT_EQ(d_database.Last_Error(), "Cannot create table 'date(...)'");
}

TEST_F(Database, AFullDiskLeavesNoHalfSet)
{
    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, "1", 20)));
    const int pages = Rows("PRAGMA page_count").value(0).toInt();
    Rows(QString("PRAGMA max_page_count=%1").arg(pages + 4));
    EXPECT_FALSE(d_database.Add_Database_Item(Make_Set(DATE, "2", 5000)));
    EXPECT_TRUE(d_database.Last_Error().startsWith("Cannot add data to table 'data'.  Reason: "))
        << qPrintable(d_database.Last_Error());
    EXPECT_TRUE(d_database.Last_Error().contains("full"));
    EXPECT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, "3", 5)));
    EXPECT_TRUE(Holds(DATE, "1", 20) && Holds(DATE, "2", 0) && Holds(DATE, "3", 5));
    Rows("PRAGMA max_page_count=1000000");
    EXPECT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, "2", 5000)));
    EXPECT_TRUE(Holds(DATE, "2", 5000));
}

TEST_F(Database, FilesThatAreNoDatabase)
{
    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 2000)));
    d_database.Disconnect();
    const QByteArray good = Content(d_file);
    const struct
    {
        const char* name;
        QByteArray content;
        bool initialized;
    } rows[] = {
        {"empty", "", true},
        {"text", QByteArray("no database at all\n").repeated(1000), false},
        {"half", good.left(good.size() / 2), false},
        {"header only", good.left(100), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString file = d_folder.filePath(row.name);
        Write(file, row.content);
        EXPECT_TRUE(d_database.Connect(file)); // SQLite looks at a file when it reads it
        EXPECT_EQ(d_database.Initialize(), row.initialized) << qPrintable(d_database.Last_Error());
        bool valid = true;
        EXPECT_EQ(d_database.Database_Item(DATE, TIME, &valid).Ballbar_Count(), 0);
        EXPECT_FALSE(valid);
        if (!row.initialized) {
            EXPECT_FALSE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 1)));
            EXPECT_FALSE(d_database.Keep_Copy());
            EXPECT_EQ(Content(file), row.content);
        }
    }
}

TEST_F(Database, WhatCannotBeWrittenSaysSo)
{
    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 3)));
    d_database.Disconnect();
    const auto everybody_reads = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    const auto everybody_enters = QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    ASSERT_TRUE(QFile::setPermissions(d_file, everybody_reads));
    ASSERT_TRUE(QFile::setPermissions(d_folder.path(), everybody_reads | everybody_enters));
    {
        const TNobody nobody;
        ASSERT_TRUE(d_database.Connect(d_file) && d_database.Initialize());
        EXPECT_FALSE(d_database.Add_Database_Item(Make_Set("2020 Jan 01", TIME, 3)));
        EXPECT_TRUE(d_database.Last_Error().startsWith("Cannot add data to table 'date'.  Reason: "));
        EXPECT_FALSE(d_database.Keep_Copy());
        EXPECT_TRUE(Holds(DATE, TIME, 3));
        EXPECT_FALSE(d_database.Connect(d_folder.filePath("new.db")));
    }
    EXPECT_TRUE(
        QFile::setPermissions(d_folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

TEST_F(Database, DoesNotWaitLongForOthers)
{
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, QString::number(i), 3)));
    const TDatabaseItem item = Make_Set("2020 Jan 01", TIME, 3);
    bool valid = true;
    {
        const TOtherProcess writer(d_file, "BEGIN IMMEDIATE");
        EXPECT_FALSE(d_database.Add_Database_Item(item));
        EXPECT_TRUE(d_database.Last_Error().contains("lock")) << qPrintable(d_database.Last_Error());
        EXPECT_TRUE(Holds(DATE, "1", 3));
        EXPECT_FALSE(d_database.Keep_Copy());
    }
    { // may read on, so that only the commit is refused
        const TOtherProcess reader(d_file, "BEGIN; SELECT count(*) FROM date WHERE 0");
        d_database.Date_List(&valid);
        EXPECT_FALSE(d_database.Add_Database_Item(Make_Set(DATE, "1", 30)));
    }
    {
        const TOtherProcess holder(d_file, "BEGIN EXCLUSIVE");
        for (int i = 0; i < 1000; ++i) // waits once, not a thousand times: the test's time limit tells
            EXPECT_FALSE(Holds(DATE, "1", 3));
        EXPECT_FALSE(d_database.Add_Database_Item(item));
    }
    EXPECT_TRUE(d_database.Add_Database_Item(item)) << qPrintable(d_database.Last_Error());
    EXPECT_TRUE(Holds(DATE, "0", 3) && Holds(DATE, "2", 3) && Holds("2020 Jan 01", TIME, 3));
    EXPECT_EQ(Rows("PRAGMA busy_timeout"), QStringList(QString::number(TDatabase::BUSY_TIMEOUT)));
}

TEST_F(Database, KeepsFiveCopies)
{
    QStringList copies;
    for (int i = 1; i <= 7; ++i) {
        ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, QString::number(i), i)));
        ASSERT_TRUE(d_database.Keep_Copy()) << qPrintable(d_database.Last_Error());
        copies = Kept_Copies::List(d_file);
        EXPECT_EQ(copies.size(), std::min(i, TDatabase::COPIES_KEPT));
    }
    ASSERT_TRUE(d_database.Connect(copies.front()));
    EXPECT_TRUE(Holds(DATE, "3", 3) && !Holds(DATE, "4", 4));
    ASSERT_TRUE(d_database.Connect(copies.back()));
    EXPECT_TRUE(Holds(DATE, "7", 7));
}

// The file system takes no more: neither the copy nor anything of it is left, and the older ones stay.
TEST_F(Database, ACopyThatDoesNotFitIsNone)
{
    ASSERT_TRUE(d_database.Add_Database_Item(Make_Set(DATE, TIME, 3000)));
    ASSERT_TRUE(d_database.Keep_Copy());
    const QStringList files = QDir(d_folder.path()).entryList();
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(d_database.Keep_Copy());
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_TRUE(d_database.Last_Error().startsWith("Cannot keep a copy of the database.  Reason: "));
    EXPECT_EQ(QDir(d_folder.path()).entryList(), files);
    EXPECT_TRUE(Holds(DATE, TIME, 3000));
}

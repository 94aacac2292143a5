// SPDX-License-Identifier: MIT
#include "backuptransfer.h"
#include "databasedialog.h"
#include "keptcopies.h"
#include "testing.h"

#include <QtSql>

#include <cerrno>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

const QString DATE = "2019 Mar 04", TIME = "10:15:02 AM";
const QByteArray HEADER = "Kelvora_Data:Version=1:Type=Backup\n";

// A set of `count` positions whose values depend on `seed`.
TDatabaseItem Make_Set(const QString& date, const QString& time, int count, int seed = 0)
{
    TDatabaseItem item;
    item.Set_Date(date);
    item.Set_Time(time);
    for (double x = seed; item.Ballbar_Count() < count; x += 1 / 7.0)
        item.Add_Ballbar({"P µ", {x, -x / 3, 1.5}, {x + 300.123456, 1, -x}, {1, x, -150}, 0.0012, 0.0023});
    item.Update_Stats();
    return item;
}

// The rows of a table, "a|b" each.
QStringList Rows(const QAbstractItemModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows << model.index(row, 0).data().toString();
        for (int column = 1; column < model.columnCount(); ++column)
            rows.back() += "|" + model.index(row, column).data().toString();
    }
    return rows;
}

// The rows that a statement finds over the program's connection.
QStringList Rows(const QString& statement)
{
    QSqlQueryModel model;
    model.setQuery(statement, QSqlDatabase::database("ballbar_database"));
    return Rows(model);
}

// All sets that are stored with the number of their positions, "date|time=2 date|other=3".
QString Stored()
{
    const QString positions =
        "(SELECT count(*) FROM data p WHERE p.date_id=d.date_id AND p.time_id=t.time_id)";
    return Rows("SELECT d.entry,t.entry||'='||" + positions + " FROM date d LEFT JOIN time t USING(date_id)")
        .join(' ');
}

// Does `work` while no file can grow beyond a size, as on a full disk.
template<typename TWork> void On_A_Full_Disk(rlim_t size, const TWork& work)
{
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{size, before.rlim_max};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    work();
    setrlimit(RLIMIT_FSIZE, &before);
}

// Another program that uses the same database and does not wait for locks.
class TOtherProgram
{
public:
    explicit TOtherProgram(const QString& file) : d_database(QSqlDatabase::addDatabase("QSQLITE", "other"))
    {
        d_database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=0");
        d_database.setDatabaseName(file);
        EXPECT_TRUE(d_database.open());
    }
    ~TOtherProgram()
    {
        d_database = QSqlDatabase();
        QSqlDatabase::removeDatabase("other");
    }
    bool Does(const QString& statement) { return QSqlQuery(d_database).exec(statement); }
    bool Can_Write() { return Does("BEGIN EXCLUSIVE") && Does("ROLLBACK"); }

private:
    QSqlDatabase d_database;
};

// The dialog with the choices of files made beforehand.
struct TPresetDialog : TDatabaseDialog
{
    QString d_file;
    QString Choose_Backup_File() override { return d_file; }
    QString Choose_Restore_File() override { return d_file; }
    QString Choose_Export_File() override { return d_file; }
};

struct Database : testing::Test
{
    void SetUp() override { Open(d_file); }
    void Open(const QString& file)
    {
        ASSERT_TRUE(d_database.Connect(file));
        ASSERT_TRUE(d_database.Initialize());
        Rows("PRAGMA synchronous=OFF");  // tests need no disk,
        Rows("PRAGMA busy_timeout=100"); // and no patience
    }
    bool Add(const QString& time, int n) { return d_database.Add_Database_Item(Make_Set(DATE, time, n)); }
    // The number of positions of a set, or why it cannot be read.
    QString Count(const QString& time, const QString& date = DATE)
    {
        bool valid = false;
        const int count = d_database.Database_Item(date, time, &valid).Ballbar_Count();
        return valid ? QString::number(count) : d_database.Last_Error();
    }
    // All dates, or the times of one, or why they cannot be read.
    QString List(const QString& date = {})
    {
        bool valid = false;
        const QStringList texts =
            date.isEmpty() ? d_database.Date_List(&valid) : d_database.Time_List(date, &valid);
        return valid ? texts.join(", ") : d_database.Last_Error() + QString(texts.size(), '!');
    }
    // How a change ended, and the sets that are stored then.
    QString Outcome(bool good) const
    {
        const QString reason = d_database.Last_Error().section("Reason: ", 1).remove(" Unable to fetch row");
        return (good ? "done: " : reason + ": ") + Stored().remove(DATE + '|');
    }
    QString Save(const QString& time, int n) { return Outcome(Add(time, n)); }
    // Replaces everything by sets of such sizes under the times "a", "b" ...
    QString Replace(const std::vector<int>& sets)
    {
        char time = 'a';
        return Outcome(d_database.Replace_All([&] {
            for (const int size : sets)
                Add(QChar(time++), size);
        }));
    }
    QTemporaryDir d_folder;
    QString Path(const QString& name) const { return d_folder.filePath(name); }
    QString d_file{Path("a[1].db")};
    TDatabase d_database;
};

struct DatabaseDialog : Database
{
    void SetUp() override
    {
        d_dialog.d_file = Path("chosen");
        ASSERT_TRUE(d_dialog.Connect_To_Database(d_file));
        Rows("PRAGMA synchronous=OFF");
        Rows("PRAGMA busy_timeout=100");
        d_dialog.show();
    }
    QTreeWidget* Tree() const { return d_dialog.findChild<QTreeWidget*>("entries"); }
    QPushButton* Button(const char* name) const { return d_dialog.findChild<QPushButton*>(name); }
    QProgressDialog* Progress() const { return d_dialog.findChild<QProgressDialog*>("progress"); }
    bool Add(const QString& date, const QString& time, int count, int seed = 0)
    {
        return d_dialog.Add_Database_Item(Make_Set(date, time, count, seed));
    }
    // The buttons that can be clicked.
    QString Offers() const
    {
        QStringList names;
        for (const QPushButton* button : d_dialog.findChildren<QPushButton*>())
            if (button->isEnabled())
                names << button->objectName();
        return names.join(' ');
    }
    QStringList Summary() const { return Rows(*d_dialog.findChild<QTableWidget*>("summary")->model()); }
    // What a command writes over the file that was there.
    QByteArray Written(const char* button)
    {
        QTest::mouseClick(Button(button), Qt::LeftButton);
        return Content(d_dialog.d_file);
    }
    void Restore(const QByteArray& content)
    {
        Write(d_dialog.d_file, content);
        QTest::mouseClick(Button("restore"), Qt::LeftButton);
    }

    TPresetDialog d_dialog;
};

TEST(DatabaseItem, IsOfNowAndCleansNamesOfItsCopies)
{
    const auto now = [] {
        return QDateTime::currentDateTime().toString("yyyy MMM ddhh:mm:ss AP").simplified();
    };
    QString begun;
    TDatabaseItem item;
    do { // again where a second ended in between
        begun = now();
        item = TDatabaseItem();
    } while (begun != now());
    EXPECT_EQ(item.Date() + item.Time(), begun);
    const Types::TBallbar_Item source{"%1 µ–(Ä);''\"\"%%**[[]]^^\\\\//,,::-", {}, {0, 0, 2}, {}, 0, 0};
    item.Add_Ballbar(source);
    EXPECT_EQ(item.Ballbar_Item(0).name, "1 µ–(Ä);-");
    EXPECT_EQ(source.name.size(), 32);
    item.Update_Stats();
    EXPECT_EQ(item.Maximum(), 2.0);
    item.Clear_Ballbars();
    EXPECT_EQ(State(item.Maximum(), item.Ballbar_Count(), item.Date() + item.Time()), "0 0 " + begun);
    item.Set_Date("2019/Mar'04");
    item.Set_Time("10:15");
    item.Clean_Strings();
    EXPECT_EQ(item.Date() + item.Time(), "2019Mar041015");
}

TEST_F(Database, CreatesItsTablesOnce)
{
    Rows("ALTER TABLE data RENAME TO other");
    Rows("ALTER TABLE other RENAME TO DATA");
    EXPECT_TRUE(d_database.Initialize());
    EXPECT_EQ(Rows("SELECT name FROM sqlite_master").size(), 5); // one is SQLite's own
    EXPECT_EQ(Rows("SELECT group_concat(name||' '||type||pk) FROM pragma_table_info('time')")[0],
              "time_id INTEGER1,date_id INTEGER0,entry TEXT0");
}

TEST_F(Database, StoresRowsAsTheyAreReadBack)
{
    TDatabaseItem item = Make_Set(DATE, TIME, 0);
    item.Add_Ballbar({"a%1 %2'b", {1.000004, -2, 3}, {4, 5.5, 6}, {7, 8, -9.123456}, 0.1, 0.2});
    item.Add_Ballbar({"%9", {0, 0, 0}, {0, 3, 4}, {0, 0, 0}, 0, 0});
    item.Update_Stats();
    ASSERT_TRUE(d_database.Add_Database_Item(item)) << qPrintable(d_database.Last_Error());
    EXPECT_EQ(d_database.Last_Error(), "Time not found."); // of the look-up before; a success leaves it
    EXPECT_EQ(Rows("SELECT date_id,entry FROM date UNION ALL SELECT date_id,entry FROM time"),
              QStringList({"1|2019 Mar 04", "1|10:15:02 AM"}));
    EXPECT_EQ(Rows("SELECT * FROM data"),
              QStringList({"1|1|a1 2b|1|-2|3|4|5.5|6|0.1|0.2|7|8|-9.12346", "1|1|9|0|0|0|0|3|4|0|0|0|0|0"}));
    EXPECT_EQ(Rows("SELECT * FROM summary"), QStringList("1|1|2|5|8.6168|6.8084|6.8084|2.5575"));

    bool valid = false;
    const TDatabaseItem read = d_database.Database_Item(DATE, TIME, &valid);
    EXPECT_EQ(State(valid, read.Date(), read.Time(), read.Ballbar_Count()), "true 2019 Mar 04 10:15:02 AM 2");
    ASSERT_TRUE(Add("later", 1));
    const auto exist = [this](const QString& date, const QString& time) {
        return State(d_database.Date_Exists(date), d_database.Time_Exists(date, time));
    };
    EXPECT_EQ(exist(DATE, "later"), "true true");
    EXPECT_EQ(exist(DATE, "x"), "true false");
    EXPECT_EQ(exist("x", TIME), "false false");
    for (const QString& found : {List("x"), Count(TIME, "x")})
        EXPECT_EQ(found, "Date not found.");

    ASSERT_TRUE(Add(TIME, 0));
    EXPECT_NE(d_database.Database_Item(DATE, TIME, &valid).Date(), DATE); // it is of now
    EXPECT_EQ(Count(TIME), "0");
    EXPECT_EQ(Rows("SELECT * FROM summary WHERE time_id=1"), QStringList("1|1|0|0|0|0|0|0"));
}

TEST_F(Database, ReplacesTheSetUnderTheSameStamp)
{
    for (const int count : {5, 3, 0, 7}) {
        for (const QString& time : {QString("1"), TIME, QString("2")}) {
            EXPECT_TRUE(Add(time, count));
            EXPECT_EQ(State(Count(time), Count("1")), State(count, count));
        }
        EXPECT_EQ(Stored().remove(DATE), QString("|1=%1 |%2=%1 |2=%1").arg(count).arg(TIME));
        EXPECT_EQ(Rows("SELECT DISTINCT count FROM summary"), QStringList(QString::number(count)));
    }
    EXPECT_TRUE(d_database.Add_Database_Item(Make_Set("2020 Jan 01", TIME, 2)));
    // What is read of one state is what single statements find, also where rows of sets are mixed.
    Rows("UPDATE data SET rowid=-rowid WHERE rowid%3=0");
    Rows("INSERT INTO time(date_id,entry) VALUES(1,'2')"); // the first of its name counts
    for (const bool in_scope : {false, true}) {
        const auto reading = in_scope ? std::make_unique<TDatabase::TReading>(&d_database) : nullptr;
        EXPECT_EQ(List(), DATE + ", 2020 Jan 01");
        EXPECT_EQ(List(DATE), "1, " + TIME + ", 2, 2");
        EXPECT_EQ(State(Count(TIME), Count("2"), Count("x")), "7 7 Time not found.");
        EXPECT_EQ(State(Count(TIME, "2020 Jan 01"), Count("2", "2020 Jan 01")), "2 Time not found.");
        EXPECT_EQ(List("x"), "Date not found.");
    }
    d_database.Clear();
    EXPECT_EQ(List(), "");
    EXPECT_EQ(Rows("SELECT 1 FROM time UNION SELECT 1 FROM summary UNION SELECT 1 FROM data").size(), 0);
}

TEST_F(Database, SaysThatItIsClosed)
{
    d_database.Disconnect();
    TDatabase database;
    EXPECT_FALSE(database.Initialize());
    EXPECT_EQ(database.Last_Error(), "Database not open");
    for (const QString& before : {QString(), d_file}) {
        EXPECT_FALSE(database.Connect(Path("missing/a.db")));
        EXPECT_FALSE(database.Is_Connected());
        EXPECT_FALSE(QSqlDatabase::contains("ballbar_database"));
        const QString error = "Cannot open database.\n\tDatabase Error: 'unable to open database file'\n"
                              "\tDriver Error: 'Error opening database'\n\t\tDatabase File Name: '%1'\n"
                              "\tAvailable database drivers:\n\t\t%2\n";
        EXPECT_EQ(database.Last_Error(), error.arg(before, QSqlDatabase::drivers().join("\n\t\t")));
        EXPECT_TRUE(database.Connect(d_file));
    }
    d_database.Clear();
    EXPECT_FALSE(d_database.Add_Database_Item(TDatabaseItem()));
    EXPECT_EQ(d_database.Last_Error(), "Not connected");
    EXPECT_FALSE(d_database.Replace_All([] {}));
    EXPECT_EQ(List(), "Not connected");
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
        Open(Path(damage));
        Rows(damage);
        EXPECT_FALSE(Add(TIME, 2));
        EXPECT_EQ(d_database.Last_Error().left(int(strlen(error))), error);
    }
    Rows("ALTER TABLE data RENAME COLUMN name TO x");
    EXPECT_EQ(Count(TIME), "no such column: name Unable to execute statement");
}

TEST_F(Database, AFailedSaveLeavesWhatWasThere)
{
    EXPECT_EQ(Save("1", 20), "done: 1=20");
    Rows("CREATE TRIGGER stop BEFORE INSERT ON data WHEN NEW.sph1_x>3 BEGIN "
         "SELECT CASE NEW.time_id WHEN 1 THEN RAISE(IGNORE) ELSE RAISE(ABORT,'no') END; END");
    EXPECT_EQ(Save("2", 30), "no: 1=20 2=22"); // the transaction stays open
    EXPECT_EQ(Save("1", 30), "A trigger left the row out: 1=22 2=0");
    EXPECT_EQ(Save("3", 5), "done: 1=20 2=0 3=5");
    Rows("DROP TRIGGER stop");
    // Between its look-up and its first change another program replaces the database.
    Rows("CREATE TRIGGER other BEFORE DELETE ON data BEGIN DELETE FROM time; END");
    EXPECT_EQ(Save("1", 1), "another program has replaced the database: 1=20 2=0 3=5");
    Rows("DROP TRIGGER other");
    Rows("ALTER TABLE data ADD COLUMN y DEFAULT 9 REFERENCES date DEFERRABLE INITIALLY DEFERRED");
    Rows("PRAGMA foreign_keys=ON"); // the commit fails
    EXPECT_EQ(Save("1", 5), "FOREIGN KEY constraint failed: 1=20 2=0 3=5");
    Rows("PRAGMA max_page_count=1"); // no more than there are, as on a full disk
    EXPECT_EQ(Save("1", 5000), "database or disk is full: 1=20 2=0 3=5");
}

TEST_F(Database, ReplacesAllOrNothing)
{
    EXPECT_EQ(Save("old", 20), "done: old=20");
    const QString refuse = "CREATE TRIGGER stop BEFORE INSERT ON data WHEN NEW.sph1_x>3 "
                           "BEGIN SELECT RAISE(%1,'no'); END";
    TOtherProgram other(d_file);
    Rows(refuse.arg("ROLLBACK"));
    EXPECT_EQ(Replace({3, 30, 5}), "no: old=20");
    EXPECT_TRUE(other.Can_Write());
    Rows("DROP TRIGGER stop");
    Rows(refuse.arg("ABORT"));
    EXPECT_EQ(Replace({3, 30, 5}), "done: a=3 c=5"); // one that is refused is left out, with its time
    EXPECT_TRUE(other.Can_Write());
    EXPECT_FALSE(QFile::exists(d_file + "-journal"));
    Rows("PRAGMA max_page_count=1");
    EXPECT_EQ(Replace({3, 5, 7, 22, 22, 22, 22, 22, 22, 22}), "database or disk is full: a=3 c=5");
    Rows("PRAGMA max_page_count=1000000");
    Rows("ALTER TABLE summary RENAME TO x");
    EXPECT_EQ(Replace({3}), "no such table: summary Unable to execute statement: a=3 c=5");
    Rows("ALTER TABLE x RENAME TO summary");
    EXPECT_TRUE(other.Can_Write());
    // Sets of one time replace each other, and one that is refused does not.
    EXPECT_TRUE(d_database.Replace_All([&] {
        for (const auto& [time, size] : {std::pair("1", 3), {"2", 4}, {"1", 5}, {"2", 30}, {"1", 6}})
            EXPECT_EQ(Add(time, size), size < 30);
    }));
    EXPECT_EQ(Stored().remove(DATE + '|'), "1=6 2=4");
    EXPECT_EQ(Rows("SELECT count FROM summary ORDER BY count"), QStringList({"4", "6"}));
    // Nobody else gets in from the start to the end, and nothing is begun while somebody is in.
    EXPECT_TRUE(d_database.Replace_All([&] { EXPECT_FALSE(other.Does("SELECT 1 FROM date")); }));
    EXPECT_EQ(Stored(), "");
    for (const char* statement : {"INSERT INTO date(entry) VALUES('B')", "BEGIN IMMEDIATE"})
        EXPECT_TRUE(other.Does(statement)) << statement;
    EXPECT_EQ(Replace({3}), "database is locked: B|");
    EXPECT_TRUE(other.Does("ROLLBACK"));
    EXPECT_TRUE(other.Can_Write());
}

TEST_F(Database, OneStateIsReadWhateverOthersWrite)
{
    ASSERT_TRUE(Add("1", 3));
    TOtherProgram other(d_file);
    {
        const TDatabase::TReading reading(&d_database);
        const TDatabase::TReading inner(&d_database);
        EXPECT_FALSE(other.Does("DELETE FROM data"));
        EXPECT_FALSE(Add("2", 1));
        EXPECT_EQ(Count("1"), "3");
    }
    // Two programs save the same key at once: one row is enough.
    Rows("CREATE TRIGGER d BEFORE INSERT ON date BEGIN INSERT INTO date SELECT NULL,NEW.entry; END");
    Rows("CREATE TRIGGER t BEFORE INSERT ON time BEGIN INSERT INTO time SELECT NULL,NEW.date_id,NEW.entry; "
         "END");
    EXPECT_TRUE(d_database.Add_Database_Item(Make_Set("B", "1", 2)));
    EXPECT_EQ(Stored(), DATE + "|1=3 B|1=2");
    EXPECT_TRUE(other.Does("BEGIN EXCLUSIVE"));
    const TDatabase::TReading reading(&d_database);
    for (int i = 0; i < 10000; ++i) // waits once, not each time: the test's time limit tells
        EXPECT_EQ(List(), "database is locked Unable to fetch row");
    EXPECT_EQ(Count("1"), "Date not found.");
}

TEST_F(Database, FilesThatCannotBeUsed)
{
    const QString refused = "attempt to write a readonly database: 1=2000";
    ASSERT_TRUE(Add("1", 2000));
    ASSERT_TRUE(QFile::setPermissions(d_file, QFile::Permissions(0x4444)));
    for (const int folder : {0x7777, 0x5555}) {
        ASSERT_TRUE(QFile::setPermissions(d_folder.path(), QFile::Permissions(folder)));
        Open(d_file);
        EXPECT_EQ(Save("2", 3), refused);
        EXPECT_EQ(Replace({3}), refused);
        EXPECT_EQ(QDir(d_folder.path()).entryList(QDir::Files).size(), 1); // no copy
    }
    EXPECT_TRUE(QFile::setPermissions(d_folder.path(), QFile::Permissions(0x7700)));
    EXPECT_TRUE(QFile::setPermissions(d_file, QFile::Permissions(0x6600)));

    const QByteArray good = Content(d_file);
    for (const QByteArray& content : {QByteArray("text\n").repeated(1000), good.left(good.size() / 2)}) {
        Write(d_file, content);
        EXPECT_TRUE(d_database.Connect(d_file)); // SQLite looks at a file when it reads it
        EXPECT_FALSE(d_database.Initialize());
        EXPECT_EQ(Count("1"), "Date not found.");
        EXPECT_FALSE(Add("1", 1));
        EXPECT_FALSE(d_database.Replace_All([] {}));
        EXPECT_EQ(Content(d_file), content);
    }
}

TEST_F(Database, KeepsFiveCopies)
{
    const QStringList others{"a[1]_2.db", "a1_2026-03-01_10-15-02-123.db", "xa[1]_2026-03-01_10-15-02-123.db",
                             "x.backup.AbCdEf"};
    const QStringList leftovers{"a[1].db.copy", "a[1].db.copy-journal", "y.backup.AbCdEf"};
    for (const QString& name : others + leftovers)
        Write(Path(name), "left over");
    QFile old(Path(leftovers[2]));
    ASSERT_TRUE(old.open(QFile::Append));
    ASSERT_TRUE(old.setFileTime(QDateTime::fromSecsSinceEpoch(0), QFile::FileModificationTime));
    for (int i = 1; i <= 7; ++i) {
        EXPECT_EQ(Replace({i}), QString("done: a=%1").arg(i));
        EXPECT_EQ(KeptCopies::List(d_file).size(), std::min(i, 5));
    }
    Open(KeptCopies::List(d_file)[0]);
    EXPECT_EQ(Count("a"), "2");
    Open(d_file);
    const QDateTime moment({2026, 12, 31}, {23, 59, 59, 999});
    const QString taken = Write(KeptCopies::File_Name(d_file, moment), "");
    EXPECT_EQ(KeptCopies::File_Name(d_file, moment), Path("a[1]_2027-01-01_00-00-00-000.db"));
    EXPECT_TRUE(QFile::remove(taken));
    // What does not fit leaves nothing behind, and the older copies stay.
    const QStringList files = QDir(d_folder.path()).entryList();
    On_A_Full_Disk(10000, [this] { EXPECT_FALSE(d_database.Replace_All([] {})); });
    EXPECT_TRUE(d_database.Last_Error().startsWith("Cannot keep a copy of the database.  Reason: "));
    EXPECT_EQ(QDir(d_folder.path()).entryList(), files);
    for (int i = 1; i <= 5; ++i) // from before the clock was set back
        Write(Path(QString("a[1]_209%1-03-01_10-15-02-123.db").arg(i)), "");
    EXPECT_EQ(Replace({8}), "done: a=8"); // they go first
    Open(KeptCopies::List(d_file)[0]);
    EXPECT_EQ(Count("a"), "3");
    for (const QString& name : others + leftovers)
        EXPECT_EQ(QFile::exists(Path(name)), others.contains(name)) << name.toStdString();
}

TEST_F(Database, RestoresWhatTheBackupSays)
{
    const QByteArray p = "Entry:P,0,0,0,300,0,0,0,0,0,0,0\n"; // and how it is written
    const QByteArray q =
        "Entry:P,0.00000,0.00000,0.00000,300.00000" + QByteArray(",0.00000").repeated(7) + '\n';
    const QByteArray a1 = "Entry_Date:A\nEntry_Time:1\n";
    const QByteArray foreign = "Entry_Date:\xD9\xA2 x' OR '1'='1\nEntry_Time:');DROP TABLE data;--%1\n";
    const QByteArray backups[][2] = {
        // what is read and what a backup then writes, both without the header
        {"", ""},
        {a1 + p + "\n" + HEADER + "what\nentry_date:C\n" + p, a1 + q + q},
        {"Entry_Date: \t A \r\nEntry_Time:1\xC2\xA0PM\r\n" + p, "Entry_Date: A\nEntry_Time:1 PM\n" + q},
        {a1 + p.chopped(6), ""}, // cut in the middle
        {a1 + "Entry:P,1\n" + p + "Entry:P,1,2,3,4,5,6,7,8,9,10,11,12\n" + QByteArray(1000000, ','), a1 + q},
        {a1 + p + "Entry_Time:2\nEntry_Date:B\n" + p, a1 + q + "Entry_Date:B\nEntry_Time:2\n" + q},
        {a1 + p + p + "Entry_Time:1\n" + p, a1 + q},
        {a1 + "Entry:P,0,+0, -0 ,3e2,nan,inf,0x10,1e999,1;5,1 5,x\n", a1 + q},
        {a1 + "Entry:%P,,--1,'1',300.000004,\xFF,,,,,,\n", a1 + q},
        {foreign + p + a1 + p, foreign + q + a1 + q},
        {QByteArray(300000, '\xff') + "\n" + QByteArray(9, '\0') + "\n" + a1 + p, a1 + q},
        {"Entry_Date:\xEF\xBF\xBE\nEntry_Time:A" + QByteArray(1, '\0') + "\xEF\xBF\xBF\n" + p + a1 + p,
         "Entry_Date:\uFFFD\nEntry_Time:A\uFFFD\uFFFD\n" + q + a1 + q},
    };
    const auto no_progress = [](int /*done*/, int /*all*/) {};
    const auto backup_of_restored = [&](const QByteArray& content) {
        EXPECT_EQ(BackupTransfer::Read(content, &d_database, no_progress).end,
                  BackupTransfer::TOutcome::COMPLETE);
        QBuffer backup;
        backup.open(QIODevice::WriteOnly);
        EXPECT_EQ(BackupTransfer::Write(&d_database, &backup, no_progress).left_out, 0);
        return backup.data();
    };
    for (const auto& [read, written] : backups) {
        ASSERT_TRUE(Add("old", 2));
        const QByteArray found = backup_of_restored("\xEF\xBB\xBF  " + HEADER.chopped(1) + "\r\n" + read);
        EXPECT_EQ(found, written.isEmpty() ? written : HEADER + written);
    }
    // Positions before any date are filed under the present moment.
    const auto today = [] { return "Entry_Date:" + TDatabaseItem().Date().toUtf8(); };
    const QByteArray begun = today();
    const QByteArray filed = backup_of_restored(HEADER + p).split('\n')[1];
    EXPECT_THAT(filed, testing::AnyOf(begun, today()));
}

TEST_F(DatabaseDialog, ShowsAndLoadsWhatIsSelected)
{
    for (const auto& [date, time, count] :
         {std::tuple("A", "1", 2), {"A", "2", 1}, {"B", "1", 3}, {"A", "3", 0}})
        ASSERT_TRUE(Add(date, time, count));
    QTreeWidgetItem* a = Tree()->topLevelItem(0);
    QTreeWidgetItem* b = Tree()->topLevelItem(1);
    QSignalSpy loaded(&d_dialog, &TDatabaseDialog::Load_From_Database);
    // The selected items, the sets of the rows, and, where it is a single one, its positions.
    const std::tuple<QList<QTreeWidgetItem*>, QStringList, size_t> rows[] = {
        {{a}, {"A|1", "A|2", "A|3"}, 0},
        {{a->child(1)}, {"A|2"}, 1},
        {{b}, {"B|1"}, 3},
        {{b, a->child(0)}, {"B|1", "A|1"}, 0},
        {{}, {}, 0},
        {{a, a->child(0)}, {"A|1", "A|2", "A|3", "A|1"}, 0},
    };
    for (const auto& [items, sets, positions] : rows) {
        Tree()->clearSelection();
        for (QTreeWidgetItem* item : items)
            item->setSelected(true);
        EXPECT_EQ(Summary().replaceInStrings(QRegularExpression("\\|\\d+\\..*"), ""), sets);
        EXPECT_EQ(Offers(), QString("backup restore ") + (positions > 0 ? "load " : "") +
                                (items.isEmpty() ? "" : "export ") + "close");
        QTest::mouseClick(Button("load"), Qt::LeftButton);
        if (positions > 0) {
            EXPECT_EQ(d_dialog.Ballbar_Items().size(), positions);
        }
    }
    EXPECT_EQ(loaded.size(), 2);
    TDatabaseItem item = Make_Set("C", "1", 0);
    for (const double length : {1.0, 2.0, 10.0})
        item.Add_Ballbar({"P", {0, 0, 0}, {0, 0, length}, {0, 0, 0}, 0, 0});
    ASSERT_TRUE(d_dialog.Add_Database_Item(item)); // with statistics of 0, which are not read
    EXPECT_EQ(Offers() + Summary().join(' '), "backup restore close"); // the selection is lost
    d_dialog.Export();
    EXPECT_EQ(Content(d_dialog.d_file), "(no file)");
    Tree()->topLevelItem(2)->setSelected(true);
    EXPECT_EQ(Summary(), QStringList("C|1|1.0000|10.0000|4.3333|5.5000|14.7986|9.0000"));
    const auto& table = Child<QTableWidget>(d_dialog, "summary");
    EXPECT_EQ(State(table.updatesEnabled(), int(table.editTriggers()), Tree()->headerItem()->text(1)),
              "true 0 Time");
    const QString titles = "Date,Time,Min Length,Max Length,Mean_Length,Median Length,Est. Range,Range\n";
    EXPECT_EQ(Written("export").replace('"', ""), (titles + Summary()[0].replace("|", ",") + "\n").toUtf8());
    EXPECT_EQ(Content(d_dialog.d_file).count("\",\""), 14);
    Rows("ALTER TABLE data RENAME TO x");
    d_dialog.Load(); // what can no longer be read
    EXPECT_EQ(State(loaded.size(), d_dialog.Ballbar_Items().size()), "2 0");
    d_dialog.Selection_Changed();
    EXPECT_EQ(Summary(), QStringList());
    Written("close");
    EXPECT_FALSE(d_dialog.isVisible());
}

TEST_F(DatabaseDialog, BackupRestoreBackupIsTheSameToTheByte)
{
    EXPECT_EQ(Written("backup"), "");
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(Add(QString("Mär %1").arg(i / 3), QString("10:15:%1 AM").arg(i % 3), i % 7 + 1, i));
    const QByteArray backup = Written("backup");
    EXPECT_FALSE(Progress()->isVisible());
    EXPECT_TRUE(backup.startsWith(HEADER + "Entry_Date:Mär 0\nEntry_Time:10:15:0 AM\n"
                                           "Entry:P µ,0.00000,0.00000,1.50000,300.12346,1.00000,0.00000,"
                                           "0.00120,0.00230,1.00000,0.00000,-150.00000\n"));
    ASSERT_TRUE(Add("later", "1", 1));
    Restore(backup);
    EXPECT_EQ(Written("backup"), backup);
    EXPECT_FALSE(QFile::exists(d_file + "-journal"));
    EXPECT_EQ(Rows("SELECT count(*) FROM summary WHERE min_length>300"), QStringList("200"));
    EXPECT_EQ(Rows("PRAGMA locking_mode"), QStringList("normal"));
    ASSERT_EQ(KeptCopies::List(d_file).size(), 1);
    ASSERT_TRUE(d_dialog.Connect_To_Database(KeptCopies::List(d_file)[0]));
    EXPECT_EQ(Written("backup").count("Entry_Date:later\nEntry_Time:1\nEntry:"), 1);
}

TEST_F(DatabaseDialog, WhatIsNoBackupChangesNothing)
{
    ASSERT_TRUE(Add("A", "1", 2));
    for (const QByteArray& content :
         {QByteArray(), "\n" + HEADER, "x" + HEADER, HEADER.toLower(), HEADER.left(20),
          QByteArray(1000000, '\0'), HEADER.chopped(1) + '\0' + '\n'}) {
        Restore(content); // the progress is left on screen: this was no backup
        EXPECT_EQ(State(Progress()->isVisible(), Progress()->isModal(), Offers()),
                  State(!content.isEmpty(), false, "backup restore close"));
    }
    EXPECT_EQ(Progress()->labelText(), "This file is not a backup");
    d_dialog.close();
    EXPECT_FALSE(Progress()->isVisible());
    EXPECT_EQ(d_dialog.Failures(), QStringList());
    // What cannot be read to its end is refused.
    ASSERT_EQ(mkfifo(qPrintable(Path("pipe")), 0600), 0);
    ASSERT_TRUE(QFile::resize(Write(Path("large"), ""), 3000000000)); // sparse
    const QStringList rows[] = {{Path("pipe"), "is not a file"},
                                {d_folder.path(), "is not a file"},
                                {Path("large"), "is larger than 2 GB"},
                                {"/proc/self/mem", qt_error_string(EIO)}};
    for (const QStringList& row : rows) {
        d_dialog.d_file = row[0];
        d_dialog.Restore();
        EXPECT_EQ(d_dialog.Failures().value(0).right(row[1].size()), row[1]);
    }
    EXPECT_EQ(Stored(), "A|1=2");
    EXPECT_TRUE(KeptCopies::List(d_file).isEmpty());
}

TEST_F(DatabaseDialog, TellsWhatFailed)
{
    ASSERT_TRUE(Add("A", "1", 2));
    ASSERT_TRUE(Add("A", "2", 100));
    const QByteArray good = Written("backup");
    Tree()->selectAll();
    for (int rows = 0; rows < 3; ++rows)
        d_dialog.Export();
    On_A_Full_Disk(100, [&] { EXPECT_EQ(Written("backup"), Written("export")); });
    EXPECT_EQ(d_dialog.Failures(), QStringList({"Backup failed: " + qt_error_string(EFBIG),
                                                "Export Summary failed: " + qt_error_string(EFBIG)}));
    d_dialog.d_file = d_file; // the database itself
    for (const char* command : {"backup", "export"})
        EXPECT_EQ(Written(command).left(6), "SQLite") << command;
    d_dialog.d_file.clear(); // cancelled, which tells nothing
    d_dialog.Backup();
    EXPECT_EQ(d_dialog.Failures().filter("' is the database or a copy of it").size(), 2);
    d_dialog.d_file = Path("other");
    Written("export");
    EXPECT_EQ(Written("backup"), good);
    EXPECT_EQ(d_dialog.Failures(), QStringList()); // what was done well in the end

    TOtherProgram other(d_file);
    EXPECT_TRUE(other.Does("BEGIN EXCLUSIVE"));
    Restore(good);
    EXPECT_EQ(Written("backup"), good); // the older file
    EXPECT_EQ(d_dialog.Failures(), QStringList({"Backup failed: database is locked Unable to fetch row",
                                                "Restore failed: Cannot keep a copy of the database.  "
                                                "Reason: database is locked Unable to fetch row"}));
    EXPECT_TRUE(other.Does("ROLLBACK"));
    Rows("CREATE TRIGGER stop BEFORE INSERT ON data WHEN NEW.sph1_x>9 BEGIN SELECT RAISE(ABORT,'no'); END");
    Restore(good);
    EXPECT_EQ(Stored(), "A|1=2");
    const QString left_out = "Restore left out 1 of the sets: Cannot add data to table 'data'.  Reason: no";
    EXPECT_EQ(d_dialog.Failures().value(1), left_out + " Unable to fetch row");
    Rows("ALTER TABLE data RENAME COLUMN name TO x");
    EXPECT_EQ(Written("backup"), HEADER + "Entry_Date:A\n");
    EXPECT_EQ(d_dialog.Failures().value(0).left(51), "Backup left out 1 of the sets: no such column: name");
    // Of unreadable times the rest is written, but without any date the older file is better than none.
    Rows("ALTER TABLE time RENAME TO x");
    EXPECT_EQ(Written("backup"), HEADER + "Entry_Date:A\n");
    EXPECT_TRUE(Progress()->isVisible());
    EXPECT_EQ(Offers(), "backup restore close");
    EXPECT_EQ(d_dialog.Failures().value(0).left(41), "Backup was cut short: no such table: time");
    Rows("ALTER TABLE date RENAME TO y");
    EXPECT_EQ(Written("backup"), HEADER + "Entry_Date:A\n");
}

TEST_F(DatabaseDialog, OpensTheDatabaseAnew)
{
    const auto width = [metrics = Tree()->fontMetrics()](const QString& text) {
        return metrics.horizontalAdvance(text);
    };
    const QString long_date(30, 'B');
    ASSERT_TRUE(Add(long_date, "1", 2));
    EXPECT_GT(Tree()->columnWidth(0), width(long_date)) << "while it is shown";
    const QString longer = long_date + long_date;
    EXPECT_TRUE(TOtherProgram(d_file).Does("INSERT INTO date(entry) VALUES('" + longer + "')"));
    for (const int dates : {2, 0}) {
        d_dialog.hide();
        QTimer::singleShot(0, &d_dialog, &QWidget::close);
        d_dialog.exec();
        EXPECT_EQ(Tree()->topLevelItemCount(), dates);
        EXPECT_EQ(Tree()->columnWidth(0) > width(longer), dates > 0);
        EXPECT_GT(Tree()->columnWidth(1), width(TDatabaseItem().Time())) << "folded in or not";
        EXPECT_EQ(d_dialog.Failures().size(), dates == 0);
        QFile::remove(d_file);
        QDir(d_folder.path()).mkdir("a[1].db");
    }
    EXPECT_TRUE(d_dialog.Failures().value(0).startsWith("Error connecting to database: Cannot open"));
}

TEST_F(DatabaseDialog, StaysSafeWhileItIsBusy)
{
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(Add(QString::number(i), "1", 20, i));
    const QByteArray backup = Written("backup");
    int visits = 0;
    QTimer visitor;
    QObject::connect(&visitor, &QTimer::timeout, &visitor, [&] {
        ++visits;
        Tree()->topLevelItem(0)->setSelected(true);
        EXPECT_EQ(Offers(), "");
        const auto* cancel = Progress()->findChild<QPushButton*>();
        QTest::keyClick(Progress(), Qt::Key_Escape);
        EXPECT_FALSE(Progress()->close());
        EXPECT_EQ(State(Progress()->isVisible(), cancel->text(), cancel->isEnabled()), "true Cancel false");
        // Nothing comes between, not even by a direct call.
        EXPECT_FALSE(d_dialog.close());
        EXPECT_FALSE(Add("X", "1", 1));
        EXPECT_FALSE(d_dialog.Connect_To_Database(d_file));
        EXPECT_EQ(d_dialog.exec(), QDialog::Rejected);
        d_dialog.Restore();
        QCoreApplication::quit();
    });
    visitor.start(0);
    Restore(backup);
    EXPECT_GT(visits, 50); // once for each line
    EXPECT_EQ(Written("backup"), backup);
    visitor.stop();
    EXPECT_EQ(Offers(), "backup restore load export close");
    Restore("x");
    Progress()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Progress()));
    QTest::keyClick(Progress(), Qt::Key_Escape);
    EXPECT_FALSE(Progress()->isVisible());
}

// SPDX-License-Identifier: MIT
#include "databasetest.h"
#include "keptcopies.h"

#include <QApplication>
#include <QDir>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace
{

const QByteArray HEADER = "Kelvora_Data:Version=1:Type=Backup\n";
const QByteArray POSITION = "Entry:P1,0,0,0,300,0,0,0,0,0,0,0\n";

class DatabaseDialog : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(d_dialog.Connect_To_Database(d_database));
        Rows("PRAGMA synchronous=OFF"); // tests need no disk
        d_dialog.d_file = d_folder.filePath("chosen");
        d_dialog.show();
    }

    QTreeWidget* Tree() const { return d_dialog.findChild<QTreeWidget*>("entries"); }
    QTableWidget* Table() const { return d_dialog.findChild<QTableWidget*>("summary"); }
    QPushButton* Button(const char* name) const { return d_dialog.findChild<QPushButton*>(name); }
    QProgressDialog* Progress() const { return d_dialog.findChild<QProgressDialog*>("progress"); }
    void Press(const char* name) { QTest::mouseClick(Button(name), Qt::LeftButton); }

    void Add(const QString& date, const QString& time, int count, int seed = 0)
    {
        ASSERT_TRUE(d_dialog.Add_Database_Item(Make_Set(date, time, count, seed)));
    }

    // The tree as "date: time time; date: time".
    QString Entries() const
    {
        QStringList dates;
        for (int i = 0; i < Tree()->topLevelItemCount(); ++i) {
            QStringList times;
            const QTreeWidgetItem* date = Tree()->topLevelItem(i);
            for (int k = 0; k < date->childCount(); ++k)
                times << date->child(k)->text(0) + date->child(k)->text(1);
            dates << date->text(0) + ": " + times.join(' ');
        }
        return dates.join("; ");
    }

    QString Row(int row) const
    {
        QStringList cells;
        for (int column = 0; column < Table()->columnCount(); ++column)
            cells << Table()->item(row, column)->text();
        return cells.join('|');
    }

    QByteArray Backup(const char* name)
    {
        d_dialog.d_file = d_folder.filePath(name);
        Press("backup");
        return Content(d_dialog.d_file);
    }

    void Restore(const QByteArray& content)
    {
        d_dialog.d_file = d_folder.filePath("restored");
        Write(d_dialog.d_file, content);
        Press("restore");
    }

    QTemporaryDir d_folder;
    QString d_database{d_folder.filePath("ballbar_data.db")};
    TPresetDialog d_dialog;
};

} // namespace

TEST_F(DatabaseDialog, ShowsWhatIsSelected)
{
    EXPECT_FALSE(Button("load")->isEnabled() || Button("export")->isEnabled());
    Add("A", "1", 2);
    Add("A", "2", 1);
    Add("B", "1", 3);
    Add("A", "3", 0);
    EXPECT_EQ(Entries(), "A: 1 2 3; B: 1");
    QTreeWidgetItem* a = Tree()->topLevelItem(0);
    QTreeWidgetItem* b = Tree()->topLevelItem(1);

    const struct
    {
        QList<QTreeWidgetItem*> items;
        QStringList keys; // of the rows
        bool load;
    } rows[] = {
        {{a}, {"A|1", "A|2", "A|3"}, false},
        {{a->child(1)}, {"A|2"}, true},
        {{b}, {"B|1"}, true},
        {{b, a->child(0)}, {"B|1", "A|1"}, false},
        {{a, a->child(0)}, {"A|1", "A|2", "A|3", "A|1"}, false},
        {{}, {}, false},
    };
    for (const auto& row : rows) {
        Tree()->clearSelection();
        for (QTreeWidgetItem* item : row.items)
            item->setSelected(true);
        QStringList keys;
        for (int i = 0; i < Table()->rowCount(); ++i)
            keys << Row(i).section('|', 0, 1);
        EXPECT_EQ(keys, row.keys);
        EXPECT_EQ(Button("load")->isEnabled(), row.load);
        EXPECT_EQ(Button("export")->isEnabled(), !row.items.isEmpty());
        EXPECT_TRUE(Table()->updatesEnabled());
    }

    TDatabaseItem item;
    item.Set_Date("C");
    item.Set_Time("1");
    for (const double length : {1.0, 2.0, 10.0})
        item.Add_Ballbar({"P", {0, 0, 0}, {0, 0, length}, {0, 0, 0}, 0, 0});
    ASSERT_TRUE(d_dialog.Add_Database_Item(item));
    EXPECT_TRUE(Tree()->selectedItems().isEmpty());
    Tree()->topLevelItem(2)->setSelected(true);
    EXPECT_EQ(Row(0), "C|1|1.0000|10.0000|4.3333|5.5000|14.7986|9.0000");
    EXPECT_EQ(Table()->item(0, 7)->textAlignment(), Qt::AlignCenter);
    Rows("DELETE FROM time");
    d_dialog.Selection_Changed();
    EXPECT_EQ(Table()->rowCount(), 0);
}

TEST_F(DatabaseDialog, LoadsTheOneSelectedSet)
{
    Add("A", "1", 2, 5);
    Add("A", "2", 3, 6);
    QSignalSpy loaded(&d_dialog, &TDatabaseDialog::Load_From_Database);
    d_dialog.Load();
    EXPECT_TRUE(loaded.isEmpty());
    Tree()->expandAll();
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {},
                      Tree()->visualItemRect(Tree()->topLevelItem(0)->child(1)).center());
    Press("load");
    ASSERT_EQ(loaded.size(), 1);
    ASSERT_EQ(d_dialog.Ballbar_Items().size(), 3U);
    EXPECT_EQ(d_dialog.Ballbar_Items()[0].sph1.x, 6.0);
    EXPECT_TRUE(d_dialog.isVisible());
    QTest::keyClick(Tree(), Qt::Key_Up);
    EXPECT_EQ(Row(0).section('|', 0, 1), "A|1");
    Rows("ALTER TABLE data RENAME TO x");
    Press("load"); // of what can no longer be read
    EXPECT_EQ(loaded.size(), 1);
    EXPECT_TRUE(d_dialog.Ballbar_Items().empty());
    Press("close");
    EXPECT_FALSE(d_dialog.isVisible());
}

TEST_F(DatabaseDialog, TellsWhyItFailed)
{
    EXPECT_FALSE(d_dialog.Connect_To_Database(d_folder.filePath("missing/x.db")));
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Error connecting to database: Cannot open database.\n"));
    EXPECT_FALSE(d_dialog.Add_Database_Item(Make_Set("A", "1", 1)));
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Error connecting"));
    Write(d_folder.filePath("text"), QByteArray("text\n").repeated(500));
    EXPECT_FALSE(d_dialog.Connect_To_Database(d_folder.filePath("text")));
    EXPECT_EQ(d_dialog.Last_Error(), "Error initializing database: Cannot create table 'date(...)'");
    EXPECT_FALSE(d_dialog.Add_Database_Item(Make_Set("A", "1", 1)));
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Cannot add data to table 'date'.  Reason: "));
    EXPECT_TRUE(d_dialog.Connect_To_Database(d_database));
}

TEST_F(DatabaseDialog, BackupRestoreBackupIsTheSameToTheByte)
{
    EXPECT_EQ(Backup("empty"), "");
    for (int i = 0; i < 200; ++i)
        Add(QString("2019 Mär %1").arg(i / 3), QString("10:15:%1 AM").arg(i % 3), i % 7, i);
    const QString entries = Entries();
    const QByteArray first = Backup("first");
    EXPECT_EQ(first.count("\nEntry:"), Rows("SELECT count(*) FROM data").value(0).toInt());
    EXPECT_TRUE(first.startsWith(HEADER + "Entry_Date:2019 Mär 0\nEntry_Time:10:15:0 AM\n"
                                          "Entry_Time:10:15:1 AM\nEntry:P0 µ,1.00000,"));
    EXPECT_FALSE(Progress()->isVisible());
    Add("later", "1", 1);
    Restore(first);
    EXPECT_EQ(Backup("second").count("later"), 0);
    const QByteArray second = Content(d_dialog.d_file);
    Restore(second);
    EXPECT_EQ(Backup("third"), second);
    EXPECT_EQ(Rows("PRAGMA synchronous") + Rows("PRAGMA locking_mode"), QStringList({"2", "normal"}));
    EXPECT_FALSE(QFile::exists(d_database + "-journal"));
    EXPECT_EQ(Rows("PRAGMA integrity_check"), QStringList("ok"));
    // Times without positions are in the first backup only: a restore makes nothing of them.
    QByteArray expected;
    const QList<QByteArray> lines = first.split('\n');
    for (int i = 0; i + 1 < lines.size(); ++i) {
        if (!lines[i].startsWith("Entry_Time:") || lines[i + 1].startsWith("Entry:"))
            expected += lines[i] + '\n';
    }
    EXPECT_EQ(second, expected);

    const QStringList copies = Kept_Copies::List(d_database);
    ASSERT_EQ(copies.size(), 2);
    ASSERT_TRUE(d_dialog.Connect_To_Database(copies[0]));
    EXPECT_EQ(Entries(), entries + "; later: 1");
}

TEST_F(DatabaseDialog, RestoresWhatTheFileSays)
{
    const struct
    {
        QByteArray lines; // after the header
        const char* entries;
        int positions;
    } rows[] = {
        {"", "", 0},
        {"Entry_Date:A\nEntry_Time:1\n" + POSITION + POSITION, "A: 1", 2},
        {"Entry_Date:A\r\nEntry_Time:1\r\n" + POSITION + "\r\n", "A: 1", 1},
        {"Entry_Date:A\nEntry_Time:1\n" + POSITION.chopped(6), "", 0}, // cut in the middle
        {"Entry_Date:A\nEntry_Time:1\nEntry:P,1\n" + POSITION + "Entry:P,1,2,3,4,5,6,7,8,9,10,11,12\n",
         "A: 1", 1},
        {"Entry_Date:A\nEntry_Time:1\n" + POSITION + "Entry_Time:2\nEntry_Date:B\n" + POSITION, "A: 1; B: 2",
         2},
        {"Entry_Date:A\nEntry_Time:1\n" + POSITION + POSITION + "Entry_Time:1\n" + POSITION, "A: 1", 1},
        {"Entry_Date:A\nEntry_Time:1\n\n" + HEADER + "what\n" + POSITION, "A: 1", 1},
        {"Entry_Date:x' OR '1'='1\nEntry_Time:');DROP TABLE data;--\n" + POSITION + "Entry_Date:%1\n" +
             POSITION,
         "x' OR '1'='1: ');DROP TABLE data;--; %1: ');DROP TABLE data;--", 2},
        {QByteArray("Entry_Date:A\0B\nEntry_Time:1\n", 28) + POSITION + "Entry_Date:C\n" + POSITION,
         "A: 1; C: 1", 2},
        {QByteArray(300000, '\xff') + "\nEntry_Date:A\nEntry_Time:1\n" + POSITION, "A: 1", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.lines.right(150).constData());
        Add("old", "1", 2);
        Restore("  " + HEADER + row.lines);
        EXPECT_EQ(Entries(), QString(row.entries));
        EXPECT_EQ(Rows("SELECT count(*) FROM data").value(0).toInt(), row.positions);
        EXPECT_FALSE(Progress()->isVisible());
        EXPECT_TRUE(Button("restore")->isEnabled());
    }
    const TDatabaseItem now;
    Restore(HEADER + POSITION); // positions before any date are filed under the present moment
    EXPECT_TRUE(Entries().startsWith(now.Date() + ": " + now.Time().left(5))) << qPrintable(Entries());
}

TEST_F(DatabaseDialog, WhatIsNoBackupChangesNothing)
{
    Add("A", "1", 2);
    for (const QByteArray& content :
         {QByteArray(), QByteArray("\n" + HEADER), "x" + HEADER, HEADER.left(20),
          QByteArray("SQLite format 3\0\1\2\n\n\n", 21), QByteArray(1000000, '\0')}) {
        Restore(content);
        EXPECT_EQ(Entries(), "A: 1");
        EXPECT_EQ(Progress()->isVisible(), !content.isEmpty()); // left on screen: this was no backup
        EXPECT_FALSE(Progress()->isModal());
        EXPECT_TRUE(Button("backup")->isEnabled());
    }
    EXPECT_TRUE(Kept_Copies::List(d_database).isEmpty());
    for (const QString& name : {QString(), d_folder.filePath("missing"), d_folder.path()}) {
        d_dialog.d_file = name;
        for (const char* button : {"backup", "restore"})
            Press(button);
        d_dialog.Export();
        EXPECT_EQ(Rows("SELECT count(*) FROM data"), QStringList("2"));
    }
}

TEST_F(DatabaseDialog, WithoutACopyNothingIsDeleted)
{
    Add("A", "1", 2);
    ASSERT_TRUE(QDir(d_folder.path()).mkdir("ballbar_data.db.copy")); // in the way of the copy
    Restore(HEADER + "Entry_Date:B\nEntry_Time:1\n" + POSITION);
    EXPECT_EQ(Entries(), "A: 1");
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Cannot keep a copy of the database.  Reason: "));
    EXPECT_FALSE(Progress()->isVisible());
    EXPECT_TRUE(Button("restore")->isEnabled());
}

TEST_F(DatabaseDialog, OlderFilesSurviveWhatFails)
{
    Add("A", "1", 3000);
    const QByteArray good = Backup("chosen");
    Add("B", "1", 3000);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{10000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0); // as on a full disk
    Press("backup");
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_TRUE(Content(d_dialog.d_file) == good);

    // Of unreadable times the rest is written, but without any date the older file is better than none.
    Rows("UPDATE time SET date_id=0 WHERE date_id=2");
    EXPECT_EQ(Backup("chosen"), good + "Entry_Date:B\n");
    Rows("ALTER TABLE time RENAME TO x");
    EXPECT_EQ(Backup("chosen"), HEADER + "Entry_Date:A\n");
    EXPECT_TRUE(Progress()->isVisible());
    EXPECT_TRUE(Button("backup")->isEnabled());
    Rows("ALTER TABLE date RENAME TO y");
    EXPECT_EQ(Backup("chosen"), HEADER + "Entry_Date:A\n");
}

TEST_F(DatabaseDialog, ExportsTheTable)
{
    Add("A", "1", 2);
    Press("export");
    d_dialog.Export();
    EXPECT_FALSE(QFile::exists(d_dialog.d_file));
    Tree()->topLevelItem(0)->setSelected(true);
    Press("export");
    EXPECT_EQ(
        Content(d_dialog.d_file),
        "\"Date\",\"Time\",\"Min Length\",\"Max Length\",\"Mean_Length\",\"Median Length\",\"Est. Range\","
        "\"Range\"\n\"" +
            Row(0).replace("|", "\",\"").toUtf8() + "\"\n");
}

TEST_F(DatabaseDialog, StaysSafeWhileItIsBusy)
{
    for (int i = 0; i < 5; ++i)
        Add(QString::number(i), "1", 20, i);
    const QByteArray backup = Backup("backup");
    int visits = 0;
    QTimer visitor;
    QObject::connect(&visitor, &QTimer::timeout, [&] {
        ++visits;
        Tree()->topLevelItem(0)->setSelected(true);
        for (const char* name : {"backup", "restore", "load", "export", "close"})
            EXPECT_FALSE(Button(name)->isEnabled()) << name;
        const auto* cancel = Progress()->findChild<QPushButton*>();
        EXPECT_TRUE(Progress()->isVisible() && cancel->text() == "Cancel" && !cancel->isEnabled());
        d_dialog.close();
        if (visits == 30) // the dialog is closed and the main window saves
            Add("between", "1", 3);
        QApplication::quit();
    });
    visitor.start(0);
    Restore(backup);
    visitor.stop();
    EXPECT_GT(visits, 50); // once for each line
    EXPECT_FALSE(d_dialog.isVisible());
    d_dialog.show();
    EXPECT_EQ(Entries(), "0: 1; between: 1; 1: 1; 2: 1; 3: 1; 4: 1");
    visitor.start(0);
    EXPECT_TRUE(Backup("again").contains("Entry_Date:between"));
    visitor.stop();
    for (const char* name : {"backup", "restore", "close"})
        EXPECT_TRUE(Button(name)->isEnabled());
}

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

namespace
{

const QByteArray HEADER = "Kelvora_Data:Version=1:Type=Backup\n";

class DatabaseDialog : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(d_dialog.Connect_To_Database(d_database));
        Rows("PRAGMA synchronous=OFF"); // tests need no disk
        d_dialog.show();
    }

    QTreeWidget* Tree() const { return d_dialog.findChild<QTreeWidget*>("entries"); }
    QPushButton* Button(const char* name) const { return d_dialog.findChild<QPushButton*>(name); }
    QProgressDialog* Progress() const { return d_dialog.findChild<QProgressDialog*>("progress"); }
    bool Add(const char* date, const QString& time, int count, int seed = 0)
    {
        return d_dialog.Add_Database_Item(Make_Set(date, time, count, seed));
    }

    // The first `columns` cells of each row of the summary.
    QStringList Summary(int columns) const
    {
        const auto* table = d_dialog.findChild<QTableWidget*>("summary");
        QStringList rows;
        for (int row = 0; row < table->rowCount(); ++row) {
            rows << table->item(row, 0)->text();
            for (int column = 1; column < columns; ++column)
                rows.back() += "|" + table->item(row, column)->text();
        }
        return rows;
    }

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

    QTemporaryDir d_folder;
    QString d_database{d_folder.filePath("ballbar_data.db")};
    TPresetDialog d_dialog;
};

} // namespace

TEST_F(DatabaseDialog, ShowsAndLoadsWhatIsSelected)
{
    EXPECT_FALSE(Button("load")->isEnabled() || Button("export")->isEnabled());
    ASSERT_TRUE(Add("A", "1", 2) && Add("A", "2", 1) && Add("B", "1", 3) && Add("A", "3", 0));
    QTreeWidgetItem* a = Tree()->topLevelItem(0);
    QTreeWidgetItem* b = Tree()->topLevelItem(1);
    QSignalSpy loaded(&d_dialog, &TDatabaseDialog::Load_From_Database);
    const struct
    {
        QList<QTreeWidgetItem*> items;
        QStringList keys; // of the rows
        size_t loads;     // positions; none where the set is not the only one
    } rows[] = {
        {{a}, {"A|1", "A|2", "A|3"}, 0},
        {{a->child(1)}, {"A|2"}, 1},
        {{b}, {"B|1"}, 3},
        {{b, a->child(0)}, {"B|1", "A|1"}, 0},
        {{}, {}, 0},
        {{a, a->child(0)}, {"A|1", "A|2", "A|3", "A|1"}, 0},
    };
    for (const auto& row : rows) {
        Tree()->clearSelection();
        for (QTreeWidgetItem* item : row.items)
            item->setSelected(true);
        EXPECT_EQ(Summary(2), row.keys);
        EXPECT_EQ(Button("load")->isEnabled(), row.loads > 0);
        EXPECT_EQ(Button("export")->isEnabled(), !row.items.isEmpty());
        QTest::mouseClick(Button("load"), Qt::LeftButton);
        EXPECT_TRUE(row.loads == 0 || d_dialog.Ballbar_Items().size() == row.loads);
    }
    EXPECT_EQ(loaded.size(), 2);

    TDatabaseItem item = Make_Set("C", "1", 0);
    for (const double length : {1.0, 2.0, 10.0})
        item.Add_Ballbar({"P", {0, 0, 0}, {0, 0, length}, {0, 0, 0}, 0, 0});
    ASSERT_TRUE(d_dialog.Add_Database_Item(item)); // with statistics of 0, which are not read
    EXPECT_TRUE(Summary(2).isEmpty() && !Button("export")->isEnabled()); // the selection is lost
    d_dialog.d_file = d_folder.filePath("export");
    d_dialog.Export();
    EXPECT_FALSE(QFile::exists(d_dialog.d_file));
    Tree()->topLevelItem(2)->setSelected(true);
    EXPECT_EQ(Summary(8), QStringList("C|1|1.0000|10.0000|4.3333|5.5000|14.7986|9.0000"));
    EXPECT_EQ(Written("export"),
              "\"Date\",\"Time\",\"Min Length\",\"Max Length\",\"Mean_Length\",\"Median Length\","
              "\"Est. Range\",\"Range\"\n\"C\",\"1\",\"1.0000\",\"10.0000\",\"4.3333\",\"5.5000\","
              "\"14.7986\",\"9.0000\"\n");
    Rows("ALTER TABLE data RENAME TO x");
    d_dialog.Load(); // what can no longer be read
    EXPECT_TRUE(loaded.size() == 2 && d_dialog.Ballbar_Items().empty());
    d_dialog.Selection_Changed();
    EXPECT_TRUE(Summary(2).isEmpty());
    QTest::mouseClick(Button("close"), Qt::LeftButton);
    EXPECT_FALSE(d_dialog.isVisible());
}

TEST_F(DatabaseDialog, TellsWhyItFailed)
{
    EXPECT_FALSE(d_dialog.Connect_To_Database(d_folder.filePath("missing/x.db")) || Add("A", "1", 1));
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Error connecting to database: Cannot open database.\n"));
    Write(d_folder.filePath("text"), QByteArray("text\n").repeated(500));
    EXPECT_FALSE(d_dialog.Connect_To_Database(d_folder.filePath("text")));
    EXPECT_EQ(d_dialog.Last_Error(), "Error initializing database: Cannot create table 'date(...)'");
    EXPECT_FALSE(Add("A", "1", 1));
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Cannot add data to table 'date'.  Reason: "));
}

TEST_F(DatabaseDialog, BackupRestoreBackupIsTheSameToTheByte)
{
    d_dialog.d_file = d_folder.filePath("backup");
    EXPECT_EQ(Written("backup"), "");
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(Add(qPrintable(QString("2019 Mär %1").arg(i / 3)), QString("10:15:%1 AM").arg(i % 3),
                        i % 7 + 1, i));
    const QByteArray backup = Written("backup");
    EXPECT_TRUE(backup.startsWith(
        HEADER + "Entry_Date:2019 Mär 0\nEntry_Time:10:15:0 AM\nEntry:P0 µ,0.00000,0.00000,"
                 "1.50000,300.12346,0.10000,0.00000,0.00120,0.00230,0.25000,0.00000,-150.00000\n"));
    ASSERT_TRUE(Add("later", "1", 1));
    Restore(backup);
    EXPECT_TRUE(Written("backup") == backup && !Progress()->isVisible());
    EXPECT_EQ(Rows("PRAGMA synchronous") + Rows("PRAGMA locking_mode"), QStringList({"2", "normal"}));
    EXPECT_FALSE(QFile::exists(d_database + "-journal"));
    ASSERT_EQ(Kept_Copies::List(d_database).size(), 1);
    ASSERT_TRUE(d_dialog.Connect_To_Database(Kept_Copies::List(d_database)[0]));
    EXPECT_EQ(Written("backup").count("Entry_Date:later\nEntry_Time:1\nEntry:"), 1);
}

TEST_F(DatabaseDialog, RestoresWhatTheFileSays)
{
    const QByteArray p = "Entry:P,0,0,0,300,0,0,0,0,0,0,0\n"; // and how it is written
    const QByteArray q =
        "Entry:P,0.00000,0.00000,0.00000,300.00000" + QByteArray(",0.00000").repeated(7) + "\n";
    const QByteArray a1 = "Entry_Date:A\nEntry_Time:1\n";
    const QByteArray foreign =
        "Entry_Date:4 mars \xD9\xA2 x' OR '1'='1\nEntry_Time:');DROP TABLE data;--%1\n";
    const struct
    {
        QByteArray lines;
        QByteArray backup; // afterwards; both without the header
    } rows[] = {
        {"", ""},
        {a1 + p + "\n" + HEADER + "what\nentry_date:C\n" + p, a1 + q + q},
        {"Entry_Date: \t A \r\nEntry_Time:1\r\n" + p.chopped(1) + "\r\n",
         "Entry_Date: A\nEntry_Time:1\n" + q},
        {"Entry_Date:A\nEntry_Time:1\xC2\xA0PM\n" + p,
         "Entry_Date:A\nEntry_Time:1 PM\n" + q}, // no-break space
        {a1 + p.chopped(6), ""},                 // cut in the middle
        {a1 + "Entry:P,1\n" + p + "Entry:P,1,2,3,4,5,6,7,8,9,10,11,12\n" + QByteArray(1000000, ','), a1 + q},
        {a1 + p + "Entry_Time:2\nEntry_Date:B\n" + p, a1 + q + "Entry_Date:B\nEntry_Time:2\n" + q},
        {a1 + p + p + "Entry_Time:1\n" + p, a1 + q},
        {a1 + "Entry: a  b, 1 ,-2,+3,4.5,5e1,6,.7,8,9,10,-150.000004\n" +
             "Entry:%1,nan,inf,0x10,1e999,1;5,1 5,x,'1',--1,\xFF,\n",
         a1 +
             "Entry: a "
             "b,1.00000,-2.00000,3.00000,4.50000,50.00000,6.00000,0.70000,8.00000,9.00000,10.00000,-150."
             "00000\n" +
             "Entry:1" + QByteArray(",0.00000").repeated(11) + "\n"},
        {foreign + p + a1 + p, foreign + q + a1 + q},
        {QByteArray(300000, '\xff') + "\n" + QByteArray(9, '\0') + "\n" + a1 + p, a1 + q},
    };
    d_dialog.d_file = d_folder.filePath("backup");
    for (const auto& row : rows) {
        ASSERT_TRUE(Add("old", "1", 2));
        Restore(" \xEF\xBB\xBF"); // no header
        Restore("\xEF\xBB\xBF  " + HEADER.chopped(1) + "\r\n" + row.lines);
        const QByteArray backup = Written("backup");
        EXPECT_TRUE(backup == (row.backup.isEmpty() ? "" : HEADER + row.backup)) << backup.constData();
        EXPECT_FALSE(Progress()->isVisible());
    }
    const TDatabaseItem now;
    Restore(HEADER + p); // positions before any date are filed under the present moment
    EXPECT_EQ(Tree()->topLevelItem(0)->text(0), now.Date());
}

TEST_F(DatabaseDialog, WhatIsNoBackupChangesNothing)
{
    ASSERT_TRUE(Add("A", "1", 2));
    d_dialog.d_file = d_folder.filePath("chosen");
    for (const QByteArray& content : {QByteArray(), "\n" + HEADER, "x" + HEADER, HEADER.toLower(),
                                      HEADER.left(20), QByteArray(1000000, '\0')}) {
        Restore(content);
        EXPECT_EQ(Progress()->isVisible(), !content.isEmpty()); // left on screen: this was no backup
        EXPECT_TRUE(!Progress()->isModal() && Button("backup")->isEnabled() &&
                    Button("restore")->isEnabled());
    }
    EXPECT_TRUE(Kept_Copies::List(d_database).isEmpty());
    ASSERT_TRUE(QDir(d_folder.path()).mkdir("ballbar_data.db.copy")); // in the way of a copy
    Restore(HEADER);
    EXPECT_TRUE(d_dialog.Last_Error().startsWith("Cannot keep a copy of the database.  Reason: "));
    EXPECT_FALSE(Progress()->isVisible());
    for (const QString& name : {QString(), d_folder.filePath("missing"), d_folder.path()}) {
        d_dialog.d_file = name;
        d_dialog.Restore();
        if (name != d_folder.filePath("missing"))
            d_dialog.Backup();
    }
    EXPECT_EQ(Rows("SELECT count(*) FROM data"), QStringList("2"));
}

TEST_F(DatabaseDialog, OlderFilesSurviveWhatFails)
{
    ASSERT_TRUE(Add("A", "1", 300));
    d_dialog.d_file = d_folder.filePath("chosen");
    const QByteArray good = Written("backup");
    ASSERT_TRUE(Add("B", "1", 300));
    On_A_Full_Disk([&] { EXPECT_TRUE(Written("backup") == good); });
    // Of unreadable times the rest is written, but without any date the older file is better than none.
    Rows("UPDATE time SET date_id=0 WHERE date_id=2");
    EXPECT_EQ(Written("backup"), good + "Entry_Date:B\n");
    Rows("ALTER TABLE time RENAME TO x");
    EXPECT_EQ(Written("backup"), HEADER + "Entry_Date:A\n");
    EXPECT_TRUE(Progress()->isVisible() && Button("backup")->isEnabled());
    Rows("ALTER TABLE date RENAME TO y");
    EXPECT_EQ(Written("backup"), HEADER + "Entry_Date:A\n");
}

TEST_F(DatabaseDialog, StaysSafeWhileItIsBusy)
{
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(Add(QByteArray::number(i), "1", 20, i));
    d_dialog.d_file = d_folder.filePath("chosen");
    const QByteArray backup = Written("backup");
    int visits = 0;
    QTimer visitor;
    QObject::connect(&visitor, &QTimer::timeout, [&] {
        EXPECT_TRUE(++visits != 10 || Add("between", "1", 3));
        Tree()->topLevelItem(0)->setSelected(true);
        for (const char* name : {"backup", "restore", "load", "export", "close"})
            EXPECT_FALSE(Button(name)->isEnabled()) << name;
        const auto* cancel = Progress()->findChild<QPushButton*>();
        EXPECT_TRUE(Progress()->isVisible() && cancel->text() == "Cancel" && !cancel->isEnabled());
        EXPECT_FALSE(d_dialog.close());
        QApplication::quit();
    });
    visitor.start(0);
    Restore(backup);
    EXPECT_GT(visits, 50); // once for each line
    EXPECT_EQ(Written("backup").count("Entry_Date:between\n"), 1);
    visitor.stop();
    for (const char* name : {"backup", "restore", "load", "export", "close"})
        EXPECT_TRUE(Button(name)->isEnabled()) << name;
}

// SPDX-License-Identifier: MIT
// The program is killed at random moments: what was stored before has to be there afterwards.
#include "databasetest.h"
#include "keptcopies.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <random>

namespace
{

constexpr int SETS = 20;
constexpr int KILLS = 50;

void Kill_After(const QStringList& arguments, unsigned long microseconds)
{
    QProcess victim;
    victim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    victim.start(VICTIM, arguments);
    ASSERT_TRUE(victim.waitForReadyRead()) << "the victim did not start";
    QThread::usleep(microseconds);
    ASSERT_EQ(victim.state(), QProcess::Running);
    victim.kill();
    victim.waitForFinished();
}

// The number of the original sets that a database holds unchanged.
int Intact_Sets(const QString& file)
{
    TDatabase database;
    EXPECT_TRUE(database.Connect(file) && database.Initialize()) << qPrintable(database.Last_Error());
    EXPECT_EQ(Rows("PRAGMA integrity_check"), QStringList("ok"));
    int intact = 0;
    for (int i = 0; i < SETS; ++i) {
        bool valid = false;
        const TDatabaseItem item = database.Database_Item("old", QString::number(i), &valid);
        const TDatabaseItem original = Make_Set("old", QString::number(i), 30, i);
        intact += valid && item.Ballbar_Count() == 30 && qAbs(item.Mean() - original.Mean()) < 1e-4;
    }
    return intact;
}

class DatabaseKill : public testing::Test
{
protected:
    void SetUp() override
    {
        TPresetDialog dialog;
        ASSERT_TRUE(dialog.Connect_To_Database(d_file));
        for (int i = 0; i < SETS; ++i)
            ASSERT_TRUE(dialog.Add_Database_Item(Make_Set("old", QString::number(i), 30, i)));
        dialog.d_file = d_backup;
        dialog.Backup();
    }

    QTemporaryDir d_folder;
    QString d_file{d_folder.filePath("ballbar_data.db")};
    QString d_backup{d_folder.filePath("backup")};
    std::mt19937 d_random{1};
};

} // namespace

TEST_F(DatabaseKill, WhileSaving)
{
    for (int i = 0; i < KILLS; ++i) {
        Kill_After({"save", d_file}, d_random() % 40000);
        ASSERT_EQ(Intact_Sets(d_file), SETS) << "kill " << i;
    }
}

TEST_F(DatabaseKill, WhileRestoring)
{
    int unfinished = 0;
    for (int i = 0; i < KILLS; ++i) {
        Kill_After({"restore", d_file, d_backup}, d_random() % 40000);
        if (Intact_Sets(d_file) == SETS)
            continue;
        ++unfinished;
        // The copy from before this restore, and the backup, bring everything back.
        const QStringList copies = Kept_Copies::List(d_file);
        ASSERT_FALSE(copies.isEmpty());
        ASSERT_EQ(Intact_Sets(copies.back()), SETS) << "kill " << i;
        TPresetDialog dialog;
        ASSERT_TRUE(dialog.Connect_To_Database(d_file));
        dialog.d_file = d_backup;
        dialog.Restore();
        ASSERT_LE(Kept_Copies::List(d_file).size(), TDatabase::COPIES_KEPT);
    }
    EXPECT_GT(unfinished, 0) << "no kill met a restore half done";
}

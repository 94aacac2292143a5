// SPDX-License-Identifier: MIT
#include "backup.h"
#include "keptcopies.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using Backup_File::TRecord;

namespace
{

// A record in one readable line.
QString Text(const TRecord& record)
{
    const Types::TBallbar_Item& p = record.position;
    switch (record.kind) {
    case TRecord::HEADER:
        return "header";
    case TRecord::DATE:
        return "date " + record.text;
    case TRecord::TIME:
        return "time " + record.text;
    case TRecord::POSITION: {
        QString text = p.name;
        for (const double value : {p.sph1.x, p.sph1.y, p.sph1.z, p.sph2.x, p.sph2.y, p.sph2.z, p.sph1_form,
                                   p.sph2_form, p.tool.x, p.tool.y, p.tool.z})
            text += QString(" %1").arg(value);
        return text;
    }
    case TRecord::UNKNOWN:
        break;
    }
    return "-";
}

} // namespace

TEST(Backup, WritesLines)
{
    TDatabaseItem item;
    item.Add_Ballbar({"P1, µ", {0, 0, 0}, {300.012, -1e-9, 1e6}, {0, 0, -150}, 0.001, 0.0020049});
    EXPECT_EQ(Backup_File::Header_Line(), "Kelvora_Data:Version=1:Type=Backup\n");
    EXPECT_EQ(Backup_File::Date_Line("2019 Mär 04"), "Entry_Date:2019 Mär 04\n");
    EXPECT_EQ(Backup_File::Time_Line("10:15:02 AM"), "Entry_Time:10:15:02 AM\n");
    EXPECT_EQ(Backup_File::Position_Lines(item),
              "Entry:P1 µ,0.00000,0.00000,0.00000,300.01200,-0.00000,1000000.00000,0.00100,0.00200,"
              "0.00000,0.00000,-150.00000\n");
    EXPECT_EQ(Backup_File::Position_Lines(TDatabaseItem()), "");
    EXPECT_EQ(Backup_File::Summary_Line({"a", "", "1.0000"}), "\"a\",\"\",\"1.0000\"\n");
    EXPECT_EQ(Backup_File::Summary_Line(Backup_File::Summary_Titles()),
              "\"Date\",\"Time\",\"Min Length\",\"Max Length\",\"Mean_Length\",\"Median Length\","
              "\"Est. Range\",\"Range\"\n");
}

TEST(Backup, ReadsLines)
{
    const struct
    {
        QByteArray line;
        const char* record;
    } rows[] = {
        {"Kelvora_Data:Version=1:Type=Backup\n", "header"},
        {" \t Kelvora_Data:Version=1:Type=Backup \r\n", "header"},
        {"\xEF\xBB\xBFKelvora_Data:Version=1:Type=Backup", "header"}, // byte order mark
        {"kelvora_Data:Version=1:Type=Backup", "-"},
        {"Kelvora_Data:Version=2:Type=Backup", "-"},
        {"Kelvora_Data:Version=1:Type=Backup2", "-"},
        {"", "-"},
        {"\n", "-"},
        {"Entry_Date:2019 Mar 04\n", "date 2019 Mar 04"},
        {"Entry_Date:2019  \t Mar 04\r\n", "date 2019 Mar 04"},
        {"Entry_Date:4 mars \xD9\xA2\xD9\xA0", "date 4 mars ٢٠"},
        {"Entry_Date:", "date "},
        {"entry_date:2019", "-"},
        {"Entry_Time:10:15:02\xC2\xA0"
         "AM",
         "time 10:15:02 AM"}, // no-break space
        {"Entry_Time:'); DROP TABLE data;--", "time '); DROP TABLE data;--"},
        {"Entry:P1,1,-2,+3,4.5,5e1,6,.7,8,9,10,-150.00000", "P1 1 -2 3 4.5 50 6 0.7 8 9 10 -150"},
        {"  Entry:a b,1, 2 ,3,4,5,6,7,8,9,10,11  ", "a b 1 2 3 4 5 6 7 8 9 10 11"},
        {"Entry:,,,,,,,,,,,", " 0 0 0 0 0 0 0 0 0 0 0"},
        {"Entry:%1,nan,inf,-inf,0x10,1e999,1;5,1 5,x,'1',--1,\xFF", "%1 0 0 0 0 0 0 0 0 0 0 0"},
        {"Entry:P1,1,2,3,4,5,6,7,8,9,10", "-"},
        {"Entry:P1,1,2,3,4,5,6,7,8,9,10,11,12", "-"},
        {"Entry:", "-"},
        {"Entry", "-"},
        {"SQLite format 3", "-"},
        {"Entry:" + QByteArray(10 * 1000 * 1000, ','), "-"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Text(Backup_File::Read_Line(row.line)), QString(row.record))
            << row.line.left(80).constData();
}

TEST(KeptCopies, AreFoundAndCounted)
{
    const QTemporaryDir folder;
    const QString database = folder.filePath("a[1].db");
    QStringList names;
    for (int day = 1; day <= 7; ++day)
        names.prepend(Kept_Copies::File_Name(database, QDateTime({2026, 3, day}, {10, 15, 2, 123})));
    EXPECT_EQ(names.back(), folder.filePath("a[1]_2026-03-01_10-15-02-123.db"));
    const QStringList others = {"a[1].db", "a[1]_old.db", "a1_2026-03-01_10-15-02-123.db",
                                "xa[1]_2026-03-01_10-15-02-123.db", "a[1]_2026-03-01_10-15-02-123.db.txt"};
    for (const QString& name : others + names) {
        QFile file(QDir(folder.path()).absoluteFilePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    Kept_Copies::Remove_Old(database, 5);
    std::reverse(names.begin(), names.end());
    EXPECT_EQ(Kept_Copies::List(database), names.mid(2));
    for (const QString& name : others)
        EXPECT_TRUE(QFile::exists(folder.filePath(name))) << qPrintable(name);
    Kept_Copies::Remove_Old(database, 5);
    EXPECT_EQ(Kept_Copies::List(database).size(), 5);
    EXPECT_FALSE(Kept_Copies::Put_In_Place(folder.filePath("none"), folder.filePath("new")));
}

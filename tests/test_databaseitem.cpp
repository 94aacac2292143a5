// SPDX-License-Identifier: MIT
#include "databaseitem.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <cmath>

namespace
{

Types::TBallbar_Item Position(const QString& name, double length)
{
    Types::TBallbar_Item item;
    item.name = name;
    item.sph2 = {0, length, 0};
    return item;
}

} // namespace

TEST(DatabaseItem, IsFiledUnderThePresentMoment)
{
    const QDateTime before = QDateTime::currentDateTime();
    const TDatabaseItem item;
    const QDateTime after = QDateTime::currentDateTime();
    const auto key = [](const QDateTime& moment) {
        return moment.toString("yyyy MMM dd|hh:mm:ss AP")
            .replace(QChar(0x202F), ' ')
            .replace(QChar(0xA0), ' ');
    };
    const QString found = item.Date() + "|" + item.Time();
    EXPECT_TRUE(found == key(before) || found == key(after)) << qPrintable(found);
    EXPECT_EQ(item.Time(), item.Time().simplified());
    EXPECT_EQ(item.Ballbar_Count(), 0);
}

TEST(DatabaseItem, CleansNamesOfItsCopiesOnly)
{
    const struct
    {
        const char* text;
        const char* cleaned;
    } rows[] = {
        {"P1,a:b's", "P1abs"},   {"''\"\"%%**[[]]^^\\\\//,,::", ""},
        {"%1 %2", "1 2"},        {"plain (1); -x_y.z", "plain (1); -x_y.z"},
        {"µ–Ärger'", "µ–Ärger"}, {"", ""},
    };
    for (const auto& row : rows) {
        const Types::TBallbar_Item source = Position(row.text, 1);
        TDatabaseItem item;
        item.Add_Ballbar(source);
        EXPECT_EQ(item.Ballbar_Item(0).name, QString(row.cleaned));
        EXPECT_EQ(source.name, QString(row.text));
        EXPECT_EQ(TDatabaseItem::Clean_String(QString(row.text)), QString(row.cleaned));
    }
    TDatabaseItem item;
    item.Set_Date("2019/Mar'04");
    item.Set_Time("10:15:02 AM");
    item.Clean_Strings();
    EXPECT_EQ(item.Date(), "2019Mar04");
    EXPECT_EQ(item.Time(), "101502 AM");
}

TEST(DatabaseItem, StatisticsFollowOnlyWhenAsked)
{
    TDatabaseItem item;
    item.Set_Date("2019 Mar 04");
    for (const double length : {2.0, 1.0, 10.0})
        item.Add_Ballbar(Position("P", length));
    EXPECT_EQ(item.Maximum(), 0.0);
    item.Update_Stats();
    const TDatabaseItem copy = item;
    item.Clear_Ballbars();

    EXPECT_EQ(item.Date(), "2019 Mar 04");
    EXPECT_EQ(item.Ballbar_Count(), 0);
    for (const double value :
         {item.Minimum(), item.Maximum(), item.Mean(), item.Median(), item.Standard_Deviation()})
        EXPECT_EQ(value, 0.0);

    EXPECT_EQ(copy.Ballbar_Count(), 3);
    EXPECT_EQ(copy.Minimum(), 1.0);
    EXPECT_EQ(copy.Maximum(), 10.0);
    EXPECT_DOUBLE_EQ(copy.Mean(), 13.0 / 3.0);
    EXPECT_EQ(copy.Median(), 5.5);
    EXPECT_DOUBLE_EQ(copy.Standard_Deviation(), std::sqrt(146.0 / 6.0));
}

TEST(DatabaseItemDeathTest, IndexOutsideTheSet)
{
    TDatabaseItem item;
    item.Add_Ballbar(Position("P", 1));
    const char* text = "static_cast<unsigned int>\\(index\\) < d_ballbar_items.size\\(\\)";
    EXPECT_DEATH(item.Ballbar_Item(-1), text);
    EXPECT_DEATH(item.Ballbar_Item(1), text);
    EXPECT_DEATH(TDatabaseItem::Clean_String(nullptr), "str");
}

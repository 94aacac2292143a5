// SPDX-License-Identifier: MIT
#include "databaseitem.h"

#include <QDateTime>

#include <cassert>

TDatabaseItem::TDatabaseItem()
{
    // Read the clock once, so that midnight cannot fall between date and time. Some languages write a
    // no-break space before AM and PM; restoring a backup would turn it into a blank and so into another key.
    const QDateTime now = QDateTime::currentDateTime();
    d_date = now.toString(QStringLiteral("yyyy MMM dd")).simplified();
    d_time = now.toString(QStringLiteral("hh:mm:ss AP")).simplified();
}

void TDatabaseItem::Add_Ballbar(const Types::TBallbar_Item& item)
{
    d_ballbar_items.push_back(item);
    Clean_String(&d_ballbar_items.back().name);
}

void TDatabaseItem::Clear_Ballbars()
{
    d_ballbar_items.clear();
    d_statistics = TStatistics();
}

Types::TBallbar_Item TDatabaseItem::Ballbar_Item(int index) const
{
    assert(static_cast<unsigned int>(index) < d_ballbar_items.size());
    return d_ballbar_items[static_cast<size_t>(index)];
}

void TDatabaseItem::Update_Stats()
{
    d_statistics = Length_Statistics(d_ballbar_items);
}

void TDatabaseItem::Clean_String(QString* str)
{
    assert(str);
    for (const char unsafe : {'\'', '"', '%', '*', '[', ']', '^', '\\', '/', ',', ':'})
        str->remove(QLatin1Char(unsafe));
}

QString TDatabaseItem::Clean_String(const QString& str)
{
    QString cleaned = str;
    Clean_String(&cleaned);
    return cleaned;
}

void TDatabaseItem::Clean_Strings()
{
    Clean_String(&d_date);
    Clean_String(&d_time);
}

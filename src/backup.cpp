// SPDX-License-Identifier: MIT
#include "backup.h"

#include "numbers.h"

#include <QVector>

#include <algorithm>

namespace
{

const QLatin1String HEADER("Kelvora_Data:Version=1:Type=Backup");
const QLatin1String DATE_KEY("Entry_Date:");
const QLatin1String TIME_KEY("Entry_Time:");
const QLatin1String POSITION_KEY("Entry:");
constexpr int FIELD_COUNT = 12;
constexpr int LONGEST_LINE = 100000000; // bytes; the memory may not suffice for the text of a longer one

QByteArray Key_Line(const QString& key, const QString& text)
{
    return (key + text + QLatin1Char('\n')).toUtf8();
}

void Append_Position_Line(QString* lines, const Types::TBallbar_Item& position)
{
    *lines += POSITION_KEY + position.name;
    for (const double* number : Stored_Numbers(position)) {
        *lines += QLatin1Char(',');
        Append_Fixed(lines, *number, 5);
    }
    *lines += QLatin1Char('\n');
}

// The text of a line without blanks at its ends. Its size is given, or it would end at its first NUL. SQLite
// does not give NUL and the two non-characters back as they were stored, and a set under such a key would not
// be found again: they become U+FFFD, as bytes do that are no UTF-8.
QString Text_Of(const QByteArray& line)
{
    QString text = QString::fromUtf8(line.constData(), line.size()).simplified();
    for (const QChar lost : {QChar(0x0000), QChar(0xfffe), QChar(0xffff)})
        text.replace(lost, QChar::ReplacementCharacter);
    return text;
}

// The counterpart of Append_Position_Line(): `fields` is its text after the key.
Types::TBallbar_Item Position_Of(const QString& fields)
{
    const QVector<QStringRef> parts = fields.splitRef(QLatin1Char(','));
    Types::TBallbar_Item position;
    position.name = parts[0].toString();
    int field = 0;
    for (double* number : Stored_Numbers(position))
        *number = Decimal_Or(parts[++field].toString(), 0.0);
    return position;
}

} // namespace

QByteArray Backup::Header_Line()
{
    return Key_Line(HEADER, QString());
}

QByteArray Backup::Date_Line(const QString& date)
{
    return Key_Line(DATE_KEY, date);
}

QByteArray Backup::Time_Line(const QString& time)
{
    return Key_Line(TIME_KEY, time);
}

QByteArray Backup::Position_Lines(const TDatabaseItem& item)
{
    QString lines;
    for (const Types::TBallbar_Item& position : item.Ballbar_Items())
        Append_Position_Line(&lines, position);
    return lines.toUtf8();
}

Backup::TRecord Backup::Read_Line(const QByteArray& line)
{
    if (line.size() > LONGEST_LINE)
        return {};
    const QString text = Text_Of(line);
    const auto after = [&text](QLatin1String key) { return text.mid(key.size()); };
    if (text == HEADER)
        return {TRecord::HEADER, {}, {}};
    if (text.startsWith(DATE_KEY))
        return {TRecord::DATE, after(DATE_KEY), {}};
    if (text.startsWith(TIME_KEY))
        return {TRecord::TIME, after(TIME_KEY), {}};
    // Counted before splitting: a damaged line may hold millions of commas.
    if (text.startsWith(POSITION_KEY) && text.count(QLatin1Char(',')) == FIELD_COUNT - 1)
        return {TRecord::POSITION, {}, Position_Of(after(POSITION_KEY))};
    return {};
}

QByteArray Backup::Next_Line(const QByteArray& content, int* position)
{
    const int begin = *position;
    const int newline = content.indexOf('\n', begin);
    const int end = newline < 0 ? content.size() : newline;
    *position = std::min(end + 1, content.size());
    return content.mid(begin, end - begin);
}

QStringList Backup::Summary_Titles()
{
    return QStringLiteral("Date,Time,Min Length,Max Length,Mean_Length,Median Length,Est. Range,Range")
        .split(QLatin1Char(','));
}

QByteArray Backup::Summary_Line(const QStringList& cells)
{
    return QStringLiteral("\"%1\"\n").arg(cells.join(QLatin1String("\",\""))).toUtf8();
}

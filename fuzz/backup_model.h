// SPDX-License-Identifier: MIT
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <array>
#include <cmath>
#include <vector>

/// The rules for the lines of backup files once more, as short as can be: what the fuzzers hold against the
/// program, of whose own code nothing is used here.
namespace Backup_Model
{

struct TPosition
{
    QString name;
    std::array<double, 11> numbers;
};

struct TSet
{
    QString date;
    QString time;
    std::vector<TPosition> positions;
};

/// Stands for the present moment, under which positions before the first date and time are filed.
inline const QString NOW = "(now)";

/// The text of a line: runs of blanks are one blank, none at the ends, nothing that SQLite does not give
/// back.
inline QString Text(const QByteArray& line)
{
    QString text;
    for (const QChar c : QString::fromUtf8(line.constData(), line.size())) {
        const bool lost = c.unicode() == 0 || c.unicode() >= 0xfffe;
        if (!c.isSpace())
            text += lost ? QChar(0xfffd) : c;
        else if (!text.isEmpty() && !text.endsWith(' '))
            text += ' ';
    }
    return text.endsWith(' ') ? text.chopped(1) : text;
}

inline double Number(const QString& text)
{
    static const QRegularExpression decimal("^ *[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eE][+-]?[0-9]+)? *$");
    const double number = decimal.match(text).hasMatch() ? text.trimmed().toDouble() : 0.0;
    return std::isfinite(number) ? number : 0.0;
}

/// Reads the fields of a position; returns false where there are not twelve.
inline bool Read_Position(const QString& text, TPosition* position)
{
    const QStringList fields = text.split(',');
    if (fields.size() != 12)
        return false;
    position->name = QString(fields[0]).remove(QRegularExpression(R"(['"%*[\]^\\/,:])"));
    for (int i = 1; i < 12; ++i)
        position->numbers[static_cast<std::size_t>(i - 1)] = Number(fields[i]);
    return true;
}

inline bool Is_Header(const QString& text)
{
    return text == "Kelvora_Data:Version=1:Type=Backup";
}

/// Puts a set in place of the one under its date and time, or behind all others.
inline void Store(std::vector<TSet>* sets, TSet* pending)
{
    if (pending->positions.empty())
        return;
    for (TSet& set : *sets) {
        if (set.date == pending->date && set.time == pending->time) {
            set.positions.swap(pending->positions);
            pending->positions.clear();
            return;
        }
    }
    sets->push_back(*pending);
    pending->positions.clear();
}

/// The sets that a backup file holds, in the order in which their keys come first. Returns false where it is
/// none.
inline bool Read(const QByteArray& content, std::vector<TSet>* sets)
{
    const QList<QByteArray> lines = content.split('\n');
    if (!Is_Header(Text(lines[0])))
        return false;
    sets->clear();
    TSet pending{NOW, NOW, {}};
    for (const QByteArray& line : lines.mid(1)) {
        const QString text = Text(line);
        TPosition position;
        if (text.startsWith("Entry_Date:")) {
            Store(sets, &pending);
            pending.date = text.mid(11);
        } else if (text.startsWith("Entry_Time:")) {
            Store(sets, &pending);
            pending.time = text.mid(11);
        } else if (text.startsWith("Entry:") && Read_Position(text.mid(6), &position)) {
            pending.positions.push_back(position);
        }
    }
    Store(sets, &pending);
    return true;
}

} // namespace Backup_Model

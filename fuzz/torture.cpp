// SPDX-License-Identifier: MIT
// One command of the program on the files of a folder, as a user gives it. torture.py kills it or lets its
// system calls fail, and looks at what is left. Says "done", or "failed: " and why.
#include "databasedialog.h"
#include "settings.h"

#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QThread>
#include <QTreeWidget>

#include <functional>
#include <map>
#include <sys/uio.h>
#include <unistd.h>

namespace
{

constexpr int SET_SIZE = 12;

/// The dialog with the choice of files made beforehand.
struct TPresetDialog : TDatabaseDialog
{
    QString Choose_Backup_File() override { return "out.backup"; }
    QString Choose_Restore_File() override { return "in.backup"; }
    QString Choose_Export_File() override { return "out.csv"; }
};

TDatabaseItem Make_Set(const QString& day, int number, double shift)
{
    TDatabaseItem item;
    item.Set_Date(day);
    item.Set_Time(QString("10:15:%1 AM").arg(number, 4, 10, QChar('0')));
    for (int i = 0; i < SET_SIZE; ++i) {
        const double x = number + i / 7.0 + shift;
        item.Add_Ballbar(
            {QString("P%1").arg(i), {x, -x, 1.5}, {x + 300.0, 1.0, -x}, {1.0, x, -150.0}, 0.0012, 0.0023});
    }
    item.Update_Stats();
    return item;
}

// Not by write(), which may be made to fail.
int Say(bool good, const QString& error, const QString& prefix = QString())
{
    QByteArray text = (prefix + (good ? "done" : "failed: " + error.simplified()) + '\n').toUtf8();
    const iovec piece{text.data(), static_cast<std::size_t>(text.size())};
    return ::writev(STDOUT_FILENO, &piece, 1) == text.size() && good ? 0 : 1;
}

int Save(TPresetDialog* dialog, const TDatabaseItem& item)
{
    return Say(dialog->Add_Database_Item(item), dialog->Last_Error());
}

// Saves `count` sets under the day, each after a pause (ms), and says of each whether it was saved.
int Save_Many(TPresetDialog* dialog, const QString& day, int count, double shift, unsigned long pause)
{
    int result = 0;
    for (int i = 0; i < count; ++i) {
        QThread::msleep(pause);
        const bool saved = dialog->Add_Database_Item(Make_Set(day, i, shift));
        result |= Say(saved, dialog->Last_Error(), QString("%1 ").arg(i));
    }
    return result;
}

int Say_Whether_Done(const TPresetDialog& dialog)
{
    const QStringList failures = dialog.Failures();
    return Say(failures.isEmpty(), failures.join(' '));
}

int Restore(TPresetDialog* dialog)
{
    dialog->Restore();
    return Say_Whether_Done(*dialog);
}

// The copies are put aside, because only the last five would stay.
int Restore_Many(TPresetDialog* dialog, int count, unsigned long pause)
{
    int result = 0;
    for (int i = 0; i < count; ++i) {
        QThread::msleep(pause);
        result |= Restore(dialog);
        const QStringList copies = QDir().entryList({"ballbar_data_*.db"});
        for (const QString& copy : copies)
            QFile::rename(copy, "kept/" + copy);
    }
    return result;
}

int Backup(TPresetDialog* dialog)
{
    dialog->Backup();
    return Say_Whether_Done(*dialog);
}

int Export(TPresetDialog* dialog)
{
    auto* tree = dialog->findChild<QTreeWidget*>("entries");
    if (tree->topLevelItemCount() > 0)
        tree->topLevelItem(0)->setSelected(true);
    dialog->Export();
    return Say_Whether_Done(*dialog);
}

int Write_Settings(double tolerance)
{
    const QString file = QDir().absoluteFilePath("kelvora_settings.ini");
    TSettings settings = TSettings::Read(QSettings(file, QSettings::IniFormat));
    settings.tolerance_a = tolerance;
    return Say(settings.Store(file), "the settings cannot be written");
}

int Run(const QStringList& arguments)
{
    const QString command = arguments.value(1);
    if (command == "settings")
        return Write_Settings(arguments.value(2).toDouble());
    TPresetDialog dialog;
    if (!dialog.Connect_To_Database(QDir().absoluteFilePath("ballbar_data.db")))
        return Say(false, dialog.Last_Error());
    const std::map<QString, std::function<int()>> commands{
        {"save", [&] { return Save(&dialog, Make_Set("2027-01-01", 0, 0.0)); }},
        {"replace", [&] { return Save(&dialog, Make_Set("2026-01-02", 5, 0.5)); }},
        {"restore", [&] { return Restore(&dialog); }},
        {"backup", [&] { return Backup(&dialog); }},
        {"export", [&] { return Export(&dialog); }},
        {"saves",
         [&] {
             return Save_Many(&dialog, arguments.value(2), arguments.value(3).toInt(),
                              arguments.value(4).toDouble(), arguments.value(5).toULong());
         }},
        {"restores",
         [&] { return Restore_Many(&dialog, arguments.value(2).toInt(), arguments.value(3).toULong()); }},
    };
    const auto found = commands.find(command);
    return found == commands.end() ? Say(false, "no such command") : found->second();
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    return Run(QApplication::arguments());
}

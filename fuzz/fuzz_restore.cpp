// SPDX-License-Identifier: MIT
// Restores any file; the database must then hold the sets that the model finds in it, or, where it is no
// backup, what it held before.
#include "backup_model.h"
#include "backuptransfer.h"
#include "database.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{

using Backup_Model::NOW;
using Backup_Model::TSet;

void Check(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

/// The rows that a statement finds over the program's connection.
QSqlQuery Rows(const char* statement)
{
    QSqlQuery query(QSqlDatabase::database("ballbar_database"));
    Check(query.exec(statement), statement);
    return query;
}

// What the statements' five decimals leave of a number; the last bit of a large one is SQLite's affair.
bool Is_Stored(double stored, double number)
{
    const double rounded = QString::number(number, 'f', 5).toDouble();
    return std::abs(stored - rounded) <= 1e-14 * std::abs(rounded);
}

bool Is_Key(const QString& stored, const QString& key)
{
    return key == NOW || stored == key;
}

bool Is_Same(const QSqlQuery& row, const TSet& set, const Backup_Model::TPosition& position)
{
    bool same = Is_Key(row.value(0).toString(), set.date) && Is_Key(row.value(1).toString(), set.time) &&
                row.value(2).toString() == position.name;
    for (int i = 0; i < 11; ++i)
        same = same && Is_Stored(row.value(i + 3).toDouble(), position.numbers[static_cast<std::size_t>(i)]);
    return same;
}

void Compare(const std::vector<TSet>& sets)
{
    QSqlQuery rows = Rows("SELECT date.entry,time.entry,name,sph1_x,sph1_y,sph1_z,sph2_x,sph2_y,sph2_z,"
                          "sph1_form,sph2_form,tool_x,tool_y,tool_z FROM data JOIN time USING(time_id) "
                          "JOIN date ON date.date_id=time.date_id ORDER BY time_id,data.rowid");
    for (const TSet& set : sets) {
        for (const Backup_Model::TPosition& position : set.positions)
            Check(rows.next() && Is_Same(rows, set, position), "a position is not as modelled");
    }
    Check(!rows.next(), "more positions than modelled");
    for (const char* statement : {"SELECT count(*) FROM time", "SELECT count(*) FROM summary"}) {
        QSqlQuery count = Rows(statement);
        Check(count.next() && count.value(0).toUInt() == sets.size(), statement);
    }
}

/// A database in a folder of its own and what it must hold.
struct TState
{
    QTemporaryDir folder;
    TDatabase database;
    std::vector<TSet> sets;

    TState()
    {
        Check(database.Connect(folder.filePath("a.db")) && database.Initialize(), "connecting");
        Rows("PRAGMA synchronous=OFF");
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_restore";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static TState state;

    QByteArray content(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    if (size > 0 && bytes[0] != 'K') // most files shall be backups
        content.prepend("Kelvora_Data:Version=1:Type=Backup\n");
    Backup_Model::Read(content, &state.sets);
    BackupTransfer::Read(content, &state.database, [](int, int) {});
    Compare(state.sets);
    return 0;
}

// SPDX-License-Identifier: MIT
// Saves sets or restores a backup over and over until it is killed:
// database_victim save|restore DATABASE [BACKUP]
#include "databasetest.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    TPresetDialog dialog;
    dialog.d_file = arguments.value(3);
    if (!dialog.Connect_To_Database(arguments.value(2)))
        return 1;
    for (int i = 0;; ++i) {
        if (i == 1) { // the first round is slower, it loads fonts and the like
            std::puts("ready");
            std::fflush(stdout);
        }
        if (arguments.value(1) == "restore")
            dialog.Restore();
        else if (!dialog.Add_Database_Item(Make_Set("new", QString::number(i % 3), 300, i)))
            return 1;
    }
}

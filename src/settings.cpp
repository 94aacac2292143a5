// SPDX-License-Identifier: MIT
#include "settings.h"

#include "numbers.h"
#include "wholefile.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryDir>

namespace
{

constexpr int LARGEST_COORDINATE = 100000; // pixels; beyond it rectangle arithmetic could overflow
constexpr int SMALLEST_WINDOW = 500;       // pixels

int Limited(int pixels)
{
    return qBound(-LARGEST_COORDINATE, pixels, LARGEST_COORDINATE);
}

void Read_Number(const QSettings& store, const char* key, double* value)
{
    *value = Decimal_Or(store.value(QLatin1String(key)).toString(), *value);
}

void Read_Machine_Limit(const QSettings& store, const char* key, double* value)
{
    Read_Number(store, key, value);
    *value = qBound(-TMachineWidget::LARGEST_LIMIT, *value, TMachineWidget::LARGEST_LIMIT);
}

void Read_Point(const QSettings& store, const char* key, QPoint* value)
{
    const QVariant stored = store.value(QLatin1String(key));
    if (stored.type() == QVariant::Point)
        *value = {Limited(stored.toPoint().x()), Limited(stored.toPoint().y())};
}

void Read_Size(const QSettings& store, const char* key, QSize* value)
{
    const QVariant stored = store.value(QLatin1String(key));
    if (stored.type() == QVariant::Size)
        *value = {Limited(stored.toSize().width()), Limited(stored.toSize().height())};
}

void Read_Height(const QSettings& store, const char* key, int* value)
{
    bool valid = false;
    const int stored = store.value(QLatin1String(key)).toInt(&valid);
    if (valid && stored >= 0)
        *value = Limited(stored);
}

void Write(const TSettings& settings, QSettings* store)
{
    store->setValue(QStringLiteral("Mainwindow_Position"), settings.position);
    store->setValue(QStringLiteral("Mainwindow_Size"), settings.size);
    store->setValue(QStringLiteral("Graphic_Window_Height"), settings.graphic_height);
    store->setValue(QStringLiteral("Analysis_Window_Height"), settings.analysis_height);
    store->setValue(QStringLiteral("Tolerance_A"), settings.tolerance_a);
    store->setValue(QStringLiteral("Tolerance_B"), settings.tolerance_b);
    store->setValue(QStringLiteral("Tolerance_C"), settings.tolerance_c);
    store->setValue(QStringLiteral("Tolerance_D"), settings.tolerance_d);
    store->setValue(QStringLiteral("Machine_Min_X"), settings.machine.x_min);
    store->setValue(QStringLiteral("Machine_Max_X"), settings.machine.x_max);
    store->setValue(QStringLiteral("Machine_Min_Y"), settings.machine.y_min);
    store->setValue(QStringLiteral("Machine_Max_Y"), settings.machine.y_max);
    store->setValue(QStringLiteral("Machine_Min_Z"), settings.machine.z_min);
    store->setValue(QStringLiteral("Machine_Max_Z"), settings.machine.z_max);
}

// What the settings file is to hold: these settings and whatever else `old` knows. QSettings writes files
// only.
QByteArray Ini_Text(const TSettings& settings, const QSettings& old)
{
    const QTemporaryDir folder;
    QSettings store(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    const QStringList keys = old.allKeys();
    for (const QString& key : keys)
        store.setValue(key, old.value(key));
    Write(settings, &store);
    store.sync();
    QFile file(store.fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TSettings TSettings::Read(const QSettings& store)
{
    TSettings settings;
    Read_Point(store, "Mainwindow_Position", &settings.position);
    Read_Size(store, "Mainwindow_Size", &settings.size);
    Read_Height(store, "Graphic_Window_Height", &settings.graphic_height);
    Read_Height(store, "Analysis_Window_Height", &settings.analysis_height);
    if (settings.graphic_height + settings.analysis_height == 0) { // both panes closed: nothing would be seen
        settings.graphic_height = TSettings().graphic_height;
        settings.analysis_height = TSettings().analysis_height;
    }
    Read_Number(store, "Tolerance_A", &settings.tolerance_a);
    Read_Number(store, "Tolerance_B", &settings.tolerance_b);
    Read_Number(store, "Tolerance_C", &settings.tolerance_c);
    Read_Number(store, "Tolerance_D", &settings.tolerance_d);
    Read_Machine_Limit(store, "Machine_Min_X", &settings.machine.x_min);
    Read_Machine_Limit(store, "Machine_Max_X", &settings.machine.x_max);
    Read_Machine_Limit(store, "Machine_Min_Y", &settings.machine.y_min);
    Read_Machine_Limit(store, "Machine_Max_Y", &settings.machine.y_max);
    Read_Machine_Limit(store, "Machine_Min_Z", &settings.machine.z_min);
    Read_Machine_Limit(store, "Machine_Max_Z", &settings.machine.z_max);
    return settings;
}

bool TSettings::Store(const QString& file) const
{
    // Where its last block finds no room, QSettings leaves an empty file behind and says nothing.
    const QByteArray text = Ini_Text(*this, QSettings(file, QSettings::IniFormat));
    QSaveFile saved(file);
    return !text.isEmpty() && saved.open(QIODevice::WriteOnly) && saved.write(text) == text.size() &&
           WholeFile::Put_In_Place(&saved).isEmpty();
}

QString Settings_Directory()
{
    const QString name = QStringLiteral(".kelvora");
    QDir home = QDir::home();
    if (!home.exists(name))
        home.mkdir(name);
    return home.absoluteFilePath(name);
}

QRect Window_Geometry(const QRect& stored, const QRect& available)
{
    const QRect visible = stored & available;
    if (visible.isValid() && visible.width() > SMALLEST_WINDOW && visible.height() > SMALLEST_WINDOW)
        return visible;
    const TSettings defaults;
    return {defaults.position, defaults.size};
}

// SPDX-License-Identifier: MIT
#include "settings.h"

#include "numbers.h"

#include <QDir>
#include <QSettings>

namespace
{

constexpr int largest_coordinate = 100000; // pixels; beyond it rectangle arithmetic could overflow
constexpr int smallest_window = 500;       // pixels

int Limited(int pixels)
{
    return qBound(-largest_coordinate, pixels, largest_coordinate);
}

void Read(const QSettings& store, const char* key, double* value)
{
    *value = Decimal_Or(store.value(QLatin1String(key)).toString(), *value);
}

void Read_Machine_Limit(const QSettings& store, const char* key, double* value)
{
    Read(store, key, value);
    *value = qBound(-TMachineWidget::Largest_Limit, *value, TMachineWidget::Largest_Limit);
}

void Read(const QSettings& store, const char* key, QPoint* value)
{
    const QVariant stored = store.value(QLatin1String(key));
    if (stored.type() == QVariant::Point)
        *value = {Limited(stored.toPoint().x()), Limited(stored.toPoint().y())};
}

void Read(const QSettings& store, const char* key, QSize* value)
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

} // namespace

TSettings TSettings::Read(const QSettings& store)
{
    TSettings settings;
    ::Read(store, "Mainwindow_Position", &settings.position);
    ::Read(store, "Mainwindow_Size", &settings.size);
    Read_Height(store, "Graphic_Window_Height", &settings.graphic_height);
    Read_Height(store, "Analysis_Window_Height", &settings.analysis_height);
    if (settings.graphic_height + settings.analysis_height == 0) { // both panes closed: nothing would be seen
        settings.graphic_height = TSettings().graphic_height;
        settings.analysis_height = TSettings().analysis_height;
    }
    ::Read(store, "Tolerance_A", &settings.tolerance_a);
    ::Read(store, "Tolerance_B", &settings.tolerance_b);
    ::Read(store, "Tolerance_C", &settings.tolerance_c);
    ::Read(store, "Tolerance_D", &settings.tolerance_d);
    Read_Machine_Limit(store, "Machine_Min_X", &settings.machine.x_min);
    Read_Machine_Limit(store, "Machine_Max_X", &settings.machine.x_max);
    Read_Machine_Limit(store, "Machine_Min_Y", &settings.machine.y_min);
    Read_Machine_Limit(store, "Machine_Max_Y", &settings.machine.y_max);
    Read_Machine_Limit(store, "Machine_Min_Z", &settings.machine.z_min);
    Read_Machine_Limit(store, "Machine_Max_Z", &settings.machine.z_max);
    return settings;
}

void TSettings::Write(QSettings* store) const
{
    store->setValue(QStringLiteral("Mainwindow_Position"), position);
    store->setValue(QStringLiteral("Mainwindow_Size"), size);
    store->setValue(QStringLiteral("Graphic_Window_Height"), graphic_height);
    store->setValue(QStringLiteral("Analysis_Window_Height"), analysis_height);
    store->setValue(QStringLiteral("Tolerance_A"), tolerance_a);
    store->setValue(QStringLiteral("Tolerance_B"), tolerance_b);
    store->setValue(QStringLiteral("Tolerance_C"), tolerance_c);
    store->setValue(QStringLiteral("Tolerance_D"), tolerance_d);
    store->setValue(QStringLiteral("Machine_Min_X"), machine.x_min);
    store->setValue(QStringLiteral("Machine_Max_X"), machine.x_max);
    store->setValue(QStringLiteral("Machine_Min_Y"), machine.y_min);
    store->setValue(QStringLiteral("Machine_Max_Y"), machine.y_max);
    store->setValue(QStringLiteral("Machine_Min_Z"), machine.z_min);
    store->setValue(QStringLiteral("Machine_Max_Z"), machine.z_max);
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
    if (visible.isValid() && visible.width() > smallest_window && visible.height() > smallest_window)
        return visible;
    const TSettings defaults;
    return {defaults.position, defaults.size};
}

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

// What is stored becomes the value. Where it makes no sense, the value stays as it is.
void Take(const QVariant& stored, double* value)
{
    *value = Decimal_Or(stored.toString(), *value);
}

void Take(const QVariant& stored, QPoint* value)
{
    if (stored.type() == QVariant::Point)
        *value = {Limited(stored.toPoint().x()), Limited(stored.toPoint().y())};
}

void Take(const QVariant& stored, QSize* value)
{
    if (stored.type() == QVariant::Size)
        *value = {Limited(stored.toSize().width()), Limited(stored.toSize().height())};
}

void Take(const QVariant& stored, int* value)
{
    bool valid = false;
    const int height = stored.toInt(&valid);
    if (valid && height >= 0)
        *value = Limited(height);
}

// Calls `visit` with the key and the place of every setting: to read them as well as to write them.
template<typename TValues, typename TVisit> void For_Each(TValues* settings, TVisit visit)
{
    visit("Mainwindow_Position", &settings->position);
    visit("Mainwindow_Size", &settings->size);
    visit("Graphic_Window_Height", &settings->graphic_height);
    visit("Analysis_Window_Height", &settings->analysis_height);
    visit("Tolerance_A", &settings->tolerance_a);
    visit("Tolerance_B", &settings->tolerance_b);
    visit("Tolerance_C", &settings->tolerance_c);
    visit("Tolerance_D", &settings->tolerance_d);
    visit("Machine_Min_X", &settings->machine.x_min);
    visit("Machine_Max_X", &settings->machine.x_max);
    visit("Machine_Min_Y", &settings->machine.y_min);
    visit("Machine_Max_Y", &settings->machine.y_max);
    visit("Machine_Min_Z", &settings->machine.z_min);
    visit("Machine_Max_Z", &settings->machine.z_max);
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
    For_Each(&settings,
             [&store](const char* key, const auto* value) { store.setValue(QLatin1String(key), *value); });
    store.sync();
    QFile file(store.fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TSettings TSettings::Read(const QSettings& store)
{
    TSettings settings;
    For_Each(&settings,
             [&store](const char* key, auto* value) { Take(store.value(QLatin1String(key)), value); });
    if (settings.graphic_height + settings.analysis_height == 0) { // both panes closed: nothing would be seen
        settings.graphic_height = TSettings().graphic_height;
        settings.analysis_height = TSettings().analysis_height;
    }
    TMachineWidget::TDimensions& machine = settings.machine;
    for (double* limit :
         {&machine.x_min, &machine.x_max, &machine.y_min, &machine.y_max, &machine.z_min, &machine.z_max})
        *limit = qBound(-TMachineWidget::LARGEST_LIMIT, *limit, TMachineWidget::LARGEST_LIMIT);
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

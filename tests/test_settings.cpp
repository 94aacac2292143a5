// SPDX-License-Identifier: MIT
#include "settings.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace
{

/// All values of the settings in one comparable list.
std::vector<double> Values(const TSettings& s)
{
    std::vector<double> values{s.tolerance_a, s.tolerance_b, s.tolerance_c, s.tolerance_d};
    for (const int number : {s.position.x(), s.position.y(), s.size.width(), s.size.height(),
                             s.graphic_height, s.analysis_height})
        values.push_back(number);
    const TMachineWidget::TDimensions& machine = s.machine;
    values.insert(values.end(), &machine.x_min, &machine.z_max + 1); // six in a row
    return values;
}

TSettings Read_From(const QByteArray& contents)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("settings.ini")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(contents);
    file.close();
    return TSettings::Read(QSettings(file.fileName(), QSettings::IniFormat));
}

} // namespace

TEST(Settings, RoundTrip)
{
    const QTemporaryDir directory;
    QSettings store(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    TSettings written;
    written.position = {-7, 90};
    written.size = {1234, 600};
    written.graphic_height = 0;
    written.analysis_height = 123;
    written.tolerance_a = 0.1 + 0.2;
    written.tolerance_d = 1e-17;
    written.machine = {-1.5, 2.25, -3.125, 4, 5, 6};
    written.Write(&store);
    store.sync();
    EXPECT_EQ(Values(TSettings::Read(QSettings(store.fileName(), QSettings::IniFormat))), Values(written));
}

TEST(Settings, WhatMakesNoSenseKeepsItsDefault)
{
    const std::vector<double> defaults{0.012, 0.006, 1000, 0,    30, 30,   1001,  801,
                                       800,   400,   0,    1200, 0,  2200, -1000, 0};
    for (const char* contents :
         {"",
          "[General]\nMainwindow_Position=@Size(1 2)\nMainwindow_Size=huge\nTolerance_A=nan\n"
          "Tolerance_B=0,5\nTolerance_C=inf\nTolerance_D=\nMachine_Max_X=1e999\n"
          "Machine_Min_Y=x\nGraphic_Window_Height=-5\nAnalysis_Window_Height=1e3\n",
          "[General]\nGraphic_Window_Height=0\nAnalysis_Window_Height=0\n",
          "\x7f"
          "ELF\x01\x02\xff[[[=\n=\n;;%%%zz=@Invalid()\n@Point("})
        EXPECT_EQ(Values(Read_From(contents)), defaults) << contents;

    const TSettings clamped = Read_From("[General]\nMainwindow_Position=@Point(2147483647 -2147483648)\n"
                                        "Mainwindow_Size=@Size(2147483647 2147483647)\nMachine_Max_X=1e300\n"
                                        "Machine_Min_Z=-1e300\nGraphic_Window_Height=2147483647\n");
    EXPECT_EQ(QRect(clamped.position, clamped.size), QRect(100000, -100000, 100000, 100000));
    EXPECT_EQ(clamped.machine.x_max, 1e6);
    EXPECT_EQ(clamped.machine.z_min, -1e6);
    EXPECT_EQ(clamped.graphic_height, 100000);
}

TEST(Settings, WindowGeometry)
{
    const QRect fallback(30, 30, 1001, 801);
    const struct
    {
        QRect stored, expected;
    } rows[] = {
        {{30, 30, 1001, 801}, {30, 30, 1001, 801}},
        {{-100, 0, 1001, 801}, {0, 20, 901, 781}},
        {{1099, 600, 1001, 801}, {1099, 600, 501, 600}},
        {{1100, 600, 1001, 801}, fallback}, // 500 pixels are not enough
        {{5000, 5000, 1001, 801}, fallback},
        {{0, 0, -5, -5}, fallback},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Window_Geometry(row.stored, {0, 20, 1600, 1180}), row.expected) << row.stored.x();
}

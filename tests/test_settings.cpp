// SPDX-License-Identifier: MIT
#include "settings.h"
#include "testing.h"

/// All values of the settings.
QString Values(const TSettings& s)
{
    return State(s.tolerance_a, s.tolerance_b, s.tolerance_c, s.tolerance_d, s.position, s.size,
                 s.graphic_height, s.analysis_height,
                 std::vector<double>(&s.machine.x_min, &s.machine.z_max + 1)); // six in a row
}

TSettings Read_From(const QByteArray& contents)
{
    const QTemporaryDir directory;
    return TSettings::Read(QSettings(Write(directory.filePath("a.ini"), contents), QSettings::IniFormat));
}

TEST(Settings, RoundTrip)
{
    const QTemporaryDir directory;
    const QString target = Write(directory.filePath("target"), "[Later]\nversion=@Size(6 0)\n");
    const QString link = directory.filePath("settings.ini");
    ASSERT_TRUE(QFile::link(target, link));
    const TSettings written{
        {-7, 90}, {1234, 600}, 0, 123, 0.1 + 0.2, 3, 4, 1e-17, {-1.5, 2.25, -3.125, 4, 5, 6}};
    EXPECT_TRUE(written.Store(link));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(Values(TSettings::Read(QSettings(target, QSettings::IniFormat))), Values(written));
    EXPECT_TRUE(Content(target).contains("[Later]\nversion=@Size(6 0)\n"));
}

TEST(Settings, WhatMakesNoSenseKeepsItsDefault)
{
    const QString defaults = "0.012 0.006 1000 0 QPoint(30,30) QSize(1001, 801) 800 400 "
                             "std::vector(0, 1200, 0, 2200, -1000, 0)";
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
                                        "Machine_Min_Z=-1e300\nGraphic_Window_Height=2147483647\n"
                                        "Analysis_Window_Height=100000\n");
    EXPECT_EQ(QRect(clamped.position, clamped.size), QRect(100000, -100000, 100000, 100000));
    EXPECT_EQ(State(clamped.machine.x_max, clamped.machine.z_min), "1e+06 -1e+06");
    EXPECT_EQ(State(clamped.graphic_height, clamped.analysis_height), "100000 100000");
}

TEST(Settings, WindowGeometry)
{
    const QRect fallback(30, 30, 1001, 801);
    const std::pair<QRect, QRect> rows[] = {
        {fallback, fallback},
        {{-100, 0, 1001, 801}, {0, 20, 901, 781}},
        {{1099, 600, 1001, 801}, {1099, 600, 501, 600}},
        {{1100, 600, 1001, 801}, fallback}, // 500 pixels are not enough
        {{0, 0, -5, -5}, fallback},
    };
    for (const auto& [stored, expected] : rows)
        EXPECT_EQ(Window_Geometry(stored, {0, 20, 1600, 1180}), expected) << stored.x();
}

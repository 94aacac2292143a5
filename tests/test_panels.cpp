// SPDX-License-Identifier: MIT
#include "gui_test.h"
#include "machinewidget.h"
#include "measurementwidget.h"
#include "messagebox.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>

namespace
{

std::vector<double> Limits(const TMachineWidget::TDimensions& dimensions)
{
    return {dimensions.x_min, dimensions.x_max, dimensions.y_min,
            dimensions.y_max, dimensions.z_min, dimensions.z_max};
}

} // namespace

TEST(MachineWidget, ReadsAndSortsLimits)
{
    const struct
    {
        const char* min_text;
        const char* max_text;
        double minimum, maximum;
    } rows[] = {
        {"0.000", "1200.000", 0, 1200}, {"500", "100", 100, 500},
        {"10", "15", 10, 20},           {"", "", 0, 10},
        {"nan", "inf", 0, 10},          {"-1e3", " +5 ", -1000, 5},
        {"1,5", "20", 0, 20},           {"20", "20", 20, 30},
    };
    TMachineWidget panel;
    EXPECT_THAT(Limits(panel.Machine_Dimensions()), testing::ElementsAre(0, 1200, 0, 2200, -1000, 0));
    for (const auto& row : rows) {
        for (const char* axis : {"x", "y", "z"}) {
            Child<QLineEdit>(panel, (std::string("min_") + axis).c_str())
                .setText(QLatin1String(row.min_text));
            Child<QLineEdit>(panel, (std::string("max_") + axis).c_str())
                .setText(QLatin1String(row.max_text));
        }
        EXPECT_THAT(Limits(panel.Machine_Dimensions()),
                    testing::ElementsAre(row.minimum, row.maximum, row.minimum, row.maximum, row.minimum,
                                         row.maximum))
            << row.min_text << " to " << row.max_text;
        EXPECT_EQ(Child<QLineEdit>(panel, "min_x").text(), QLatin1String(row.min_text));
    }
}

TEST(MachineWidget, WritesFieldsAndReportsUpdate)
{
    TMachineWidget panel;
    panel.Set_Machine_Dimensions({1, 1199.9996, 3, 4, -5.25, 6});
    const struct
    {
        const char* name;
        const char* text;
    } rows[] = {{"min_x", "1.000"}, {"max_x", "1200.000"}, {"min_y", "3.000"},
                {"max_y", "4.000"}, {"min_z", "-5.250"},   {"max_z", "6.000"}};
    for (const auto& row : rows)
        EXPECT_EQ(Child<QLineEdit>(panel, row.name).text(), QLatin1String(row.text)) << row.name;

    QSignalSpy updated(&panel, &TMachineWidget::Update_Machine);
    QTest::mouseClick(&Child<QToolButton>(panel, "update"), Qt::LeftButton);
    EXPECT_EQ(updated.count(), 1);
}

TEST(MeasurementWidget, ShowsOnePosition)
{
    TMeasurementWidget panel;
    EXPECT_FALSE(panel.isEnabled());
    panel.Enable_Display(true);
    panel.Set_Position_Name(QStringLiteral("<b>P1</b>"));
    panel.Set_Length(500.0123);
    panel.Set_Mean_Deviation(-0.0031);
    panel.Set_Median_Deviation(0.5);
    panel.Set_Sphere1({1, 2, 3}, 0.00042);
    panel.Set_Sphere2({-1200, 5, 6}, 0.0007);
    panel.Set_Probe({7, 8, 9});

    const char* const rows[][2] = {
        {"name", "<b>P1</b>"},          {"length", "500.0123"},     {"mean_deviation", "-0.0031"},
        {"median_deviation", "0.5000"}, {"sphere1_x", "1.0000"},    {"sphere1_y", "2.0000"},
        {"sphere1_z", "3.0000"},        {"sphere1_form", "0.0004"}, {"sphere2_x", "-1200.0000"},
        {"sphere2_y", "5.0000"},        {"sphere2_z", "6.0000"},    {"sphere2_form", "0.0007"},
        {"probe_x", "7.0000"},          {"probe_y", "8.0000"},      {"probe_z", "9.0000"}};

    // The keyboard runs through the fields as they are shown, each beside its own label.
    panel.show();
    panel.activateWindow();
    const QWidget* field = &Child<QLineEdit>(panel, "name");
    for (const auto& row : rows) {
        EXPECT_EQ(field->objectName(), QLatin1String(row[0]));
        EXPECT_EQ(Child<QLineEdit>(panel, row[0]).text(), QLatin1String(row[1])) << row[0];
        field = field->nextInFocusChain();
        while (field->focusPolicy() == Qt::NoFocus)
            field = field->nextInFocusChain();
    }
    const auto labels = panel.findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        if (label->buddy() != nullptr) {
            EXPECT_NEAR(label->geometry().center().y(), label->buddy()->geometry().center().y(), 2);
        }
    }

    panel.Enable_Display(false);
    EXPECT_FALSE(panel.isEnabled());
    for (const auto& row : rows)
        EXPECT_EQ(Child<QLineEdit>(panel, row[0]).text(), QString()) << row[0];
}

TEST(MessageBox, KeepsItsWidthAndStyle)
{
    TMessageBox box;
    box.setText(QStringLiteral("Done"));
    box.setInformativeText(QStringLiteral("100% of <i>it</i>"));
    EXPECT_EQ(static_cast<QMessageBox&>(box).text(),
              QStringLiteral("<span style=\"font-size:10pt; font-weight:600; color:#000000;\" >Done</span>"));
    EXPECT_EQ(
        box.informativeText(),
        QStringLiteral(
            "<span style=\"font-size:10pt; font-weight:400; color:#000000;\" >100% of <i>it</i></span>"));
    box.show();
    EXPECT_EQ(box.width(), 500);
    box.resize(700, 300);
    EXPECT_EQ(box.width(), 500);
}

TEST(MessageBox, SendsKeysLater)
{
    TMessageBox box;
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.show();
    box.Send_Key(Qt::Key_Escape);
    EXPECT_TRUE(box.isVisible());
    QCoreApplication::processEvents();
    EXPECT_FALSE(box.isVisible());
    box.Send_Key(Qt::Key_Escape);
    EXPECT_EQ(box.exec(), QMessageBox::Cancel);
}

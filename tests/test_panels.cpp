// SPDX-License-Identifier: MIT
#include "gui_test.h"
#include "machinewidget.h"
#include "measurementwidget.h"
#include "messagebox.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolButton>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace
{

std::vector<double> Limits(const TMachineWidget& panel)
{
    const TMachineWidget::TDimensions limits = panel.Machine_Dimensions();
    return {limits.x_min, limits.x_max, limits.y_min, limits.y_max, limits.z_min, limits.z_max};
}

/// The fields that the keyboard reaches from `first` on, `count` of them, as "name=text".
std::vector<std::string> Fields(const QWidget& panel, const char* first, int count)
{
    std::vector<std::string> texts;
    const QWidget* widget = &Child<QLineEdit>(panel, first);
    for (; count > 0; widget = widget->nextInFocusChain()) {
        if (const auto* field = qobject_cast<const QLineEdit*>(widget)) {
            texts.push_back((field->objectName() + QLatin1Char('=') + field->text()).toStdString());
            --count;
        }
    }
    return texts;
}

} // namespace

TEST(MachineWidget, ReadsAndSortsLimits)
{
    const struct
    {
        const char* min_text;
        const char* max_text;
        double low, high;
    } rows[] = {
        {"0.000", "1200.000", 0, 1200}, {"500", "100", 100, 500},
        {"10", "15", 10, 20},           {"", "", 0, 10},
        {"nan", "inf", 0, 10},          {"-1e3", " +5 ", -1000, 5},
        {"1,5", "20", 0, 20},           {"1e20", "1e20", 1e6, 1e6 + 10},
    };
    TMachineWidget panel;
    EXPECT_THAT(Limits(panel), ElementsAre(0, 1200, 0, 2200, -1000, 0));
    for (const auto& row : rows) {
        for (const char* name : {"min_x", "min_y", "min_z"})
            Child<QLineEdit>(panel, name).setText(QLatin1String(row.min_text));
        for (const char* name : {"max_x", "max_y", "max_z"})
            Child<QLineEdit>(panel, name).setText(QLatin1String(row.max_text));
        EXPECT_THAT(Limits(panel), ElementsAre(row.low, row.high, row.low, row.high, row.low, row.high))
            << row.min_text << " to " << row.max_text;
        EXPECT_EQ(Child<QLineEdit>(panel, "min_x").text(), QLatin1String(row.min_text)); // is not corrected
    }

    panel.Set_Machine_Dimensions({1, 1199.9996, 3, 4, -5.25, 6});
    EXPECT_THAT(Fields(panel, "min_x", 6), ElementsAre("min_x=1.000", "max_x=1200.000", "min_y=3.000",
                                                       "max_y=4.000", "min_z=-5.250", "max_z=6.000"));
    QSignalSpy updated(&panel, &TMachineWidget::Update_Machine);
    Child<QToolButton>(panel, "update").click();
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
    EXPECT_THAT(Fields(panel, "name", 15),
                ElementsAre("name=<b>P1</b>", "length=500.0123", "mean_deviation=-0.0031",
                            "median_deviation=0.5000", "sphere1_x=1.0000", "sphere1_y=2.0000",
                            "sphere1_z=3.0000", "sphere1_form=0.0004", "sphere2_x=-1200.0000",
                            "sphere2_y=5.0000", "sphere2_z=6.0000", "sphere2_form=0.0007", "probe_x=7.0000",
                            "probe_y=8.0000", "probe_z=9.0000"));
    panel.show();
    const auto labels = panel.findChildren<QLabel*>();
    for (const QLabel* label : labels) { // each field stands beside its own label
        const QWidget* field = label->buddy() != nullptr ? label->buddy() : label;
        EXPECT_NEAR(label->geometry().center().y(), field->geometry().center().y(), 2);
    }
    panel.Enable_Display(false);
    EXPECT_FALSE(panel.isEnabled());
    const auto fields = panel.findChildren<QLineEdit*>();
    for (const QLineEdit* field : fields)
        EXPECT_EQ(field->text(), QString());
}

TEST(MessageBox, WidthStyleAndKeys)
{
    TMessageBox box;
    box.setText(QStringLiteral("Done"));
    box.setInformativeText(QStringLiteral("100% of <i>it</i>"));
    const QString span =
        QStringLiteral("<span style=\"font-size:10pt; font-weight:%1; color:#000000;\" >%2</span>");
    EXPECT_EQ(static_cast<QMessageBox&>(box).text(), span.arg(QStringLiteral("600"), QStringLiteral("Done")));
    EXPECT_EQ(box.informativeText(), span.arg(QStringLiteral("400"), QStringLiteral("100% of <i>it</i>")));
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.show();
    EXPECT_EQ(box.width(), 500);
    box.resize(700, 300);
    EXPECT_EQ(box.width(), 500);

    box.Send_Key(Qt::Key_Escape);
    EXPECT_TRUE(box.isVisible()); // keys arrive with the next events
    QCoreApplication::processEvents();
    EXPECT_FALSE(box.isVisible());
    box.Send_Key(Qt::Key_Escape);
    EXPECT_EQ(box.exec(), QMessageBox::Cancel);
}

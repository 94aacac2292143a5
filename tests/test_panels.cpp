// SPDX-License-Identifier: MIT
#include "machinewidget.h"
#include "measurementwidget.h"
#include "messagebox.h"
#include "testing.h"

using testing::ElementsAre;

std::vector<double> Limits(const TMachineWidget& panel)
{
    const TMachineWidget::TDimensions limits = panel.Machine_Dimensions();
    return {limits.x_min, limits.x_max, limits.y_min, limits.y_max, limits.z_min, limits.z_max};
}

/// What the keyboard reaches from `first` on: `count` fields, each with its label before it.
QString Fields(const QWidget& panel, const char* first, int count)
{
    QStringList texts;
    for (QWidget* widget = &Child<QLineEdit>(panel, first); count > 0; widget = widget->nextInFocusChain()) {
        for (const QLabel* label : panel.findChildren<QLabel*>())
            if (label->buddy() == widget && count-- > 0)
                texts << label->text() + static_cast<QLineEdit*>(widget)->text();
    }
    return texts.join(' ');
}

TEST(MachineWidget, ReadsAndSortsLimits)
{
    const std::tuple<const char*, const char*, double, double> rows[] = {
        {"\u2212800", "\u00a01200\u2009", -800, 1200},
        {"1\u00a0200", "2\u2007000\u202f000\u2009.5", 1200, 1e6},
        {"1 200", "1\u2009200.5", 0, 1200.5},
        {"500", "100", 100, 500},
        {"10", "15", 10, 20},
        {"", "", 0, 10},
        {"1e20", "1e20", 1e6, 1e6 + 10},
    };
    TMachineWidget panel;
    EXPECT_THAT(Limits(panel), ElementsAre(0, 1200, 0, 2200, -1000, 0));
    for (const auto& [min_text, max_text, low, high] : rows) {
        for (const char* axis : {"x", "y", "z"}) {
            Child<QLineEdit>(panel, qPrintable(QString("min_") + axis)).setText(min_text);
            Child<QLineEdit>(panel, qPrintable(QString("max_") + axis)).setText(max_text);
        }
        EXPECT_THAT(Limits(panel), ElementsAre(low, high, low, high, low, high))
            << min_text << " to " << max_text;
        EXPECT_EQ(Child<QLineEdit>(panel, "min_x").text(), min_text); // is not corrected
    }
    panel.Set_Machine_Dimensions({1, 1199.9996, 3, 4, -5.25, 6});
    EXPECT_EQ(Fields(panel, "min_x", 6),
              "Min X:1.000 Max X:1200.000 Min Y:3.000 Max Y:4.000 Min Z:-5.250 Max Z:6.000");
    QSignalSpy updated(&panel, &TMachineWidget::Update_Machine);
    Child<QToolButton>(panel, "update").click();
    EXPECT_EQ(updated.count(), 1);
}

TEST(MeasurementWidget, ShowsOnePosition)
{
    TMeasurementWidget panel;
    EXPECT_FALSE(panel.isEnabled());
    panel.Show_Position({"<b>P1</b>", {1, 2, 3}, {-1200, 5, 6}, {7, 8, 9}, 0.00042, 0.0007}, -0.0025, 1.0075);
    EXPECT_EQ(Fields(panel, "name", 15),
              "Selected Position:<b>P1</b> Length:1201.0075 Dev. From Mean:-0.0025 Dev. From Median:1.0075 "
              "Sphere 1 X:1.0000 Sphere 1 Y:2.0000 Sphere 1 Z:3.0000 Sphere 1 Form:0.0004 "
              "Sphere 2 X:-1200.0000 Sphere 2 Y:5.0000 Sphere 2 Z:6.0000 Sphere 2 Form:0.0007 "
              "Probe Offset X:7.0000 Probe Offset Y:8.0000 Probe Offset Z:9.0000");
    EXPECT_EQ(Child<QLineEdit>(panel, "name").cursorPosition(), 0); // of a long name the beginning is seen
    panel.Enable_Display(false);
    EXPECT_FALSE(panel.isEnabled());
    for (const QLineEdit* field : panel.findChildren<QLineEdit*>())
        EXPECT_EQ(field->text(), "");
}

TEST(MessageBox, WidthStyleAndKeys)
{
    QApplication::setPalette(QColor(53, 53, 53)); // a dark desktop
    TMessageBox box;
    box.setText("Done");
    box.setInformativeText("100% of <i>it</i>");
    const QString span = "<span style=\"font-size:10pt; font-weight:%1; color:#000000;\" >%2</span>";
    EXPECT_EQ(static_cast<QMessageBox&>(box).text(), span.arg("600", "Done"));
    EXPECT_EQ(box.informativeText(), span.arg("400", "100% of <i>it</i>"));
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.show();
    const QImage button = box.button(QMessageBox::Cancel)->grab().toImage();
    QApplication::setPalette(QApplication::style()->standardPalette());
    EXPECT_GT(qGray(button.pixel(15, 15)), 200) << "light like the box";
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

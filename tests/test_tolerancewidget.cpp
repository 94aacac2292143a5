// SPDX-License-Identifier: MIT
#include "testing.h"
#include "tolerancewidget.h"

const QString PINK = "background-color: rgb(255, 151, 160);";

struct ToleranceWidget : testing::Test
{
    TToleranceWidget d_panel;
    QLineEdit& d_expression = Child<QLineEdit>(d_panel, "expression");
    QToolButton& d_apply = Child<QToolButton>(d_panel, "apply");
    QSlider& d_slider = Child<QSlider>(d_panel, "sub_tolerance");

    /// Range, tolerance and sub-tolerance where there are results.
    QString Results() const
    {
        QStringList texts;
        for (const char* field : {"measured_range", "tolerance", "sub_tolerance_range"})
            texts << Child<QLineEdit>(d_panel, field).text();
        return (Child<QLineEdit>(d_panel, "tolerance").isEnabled() ? "" : "none ") + texts.join(' ');
    }

    /// The expression and its context menu, on the screen.
    void Expect_Readable()
    {
        d_expression.clearFocus(); // the caret can be seen whatever the letters are
        EXPECT_GT(Contrast(d_expression.grab(d_expression.rect().adjusted(4, 4, -4, -4)).toImage()), 4.5);
        QContextMenuEvent request(QContextMenuEvent::Keyboard, QPoint());
        QApplication::sendEvent(&d_expression, &request);
        EXPECT_GT(Contrast(QApplication::activePopupWidget()->grab().toImage()), 4.5);
        QApplication::activePopupWidget()->close();
    }

    void Set_Coefficients(double a, double b, double c, double d)
    {
        std::tie(d_panel.d_tolerance_a, d_panel.d_tolerance_b) = std::pair(a, b);
        std::tie(d_panel.d_tolerance_c, d_panel.d_tolerance_d) = std::pair(c, d);
        d_panel.Update();
    }
};

TEST_F(ToleranceWidget, Grammar)
{
    // The text; whether it is valid, a, b, c, d and the tolerance at 2400 mm.
    QList<QByteArray> rows = Content(TEST_DATA "/tolerances.txt").trimmed().split('\n');
    rows << QByteArray(10000, '1') + "; false 0 0 0 0 0";
    for (const QByteArray& row : rows) {
        const QString text = row.split(';')[0];
        Set_Coefficients(0, 0, 0, 0);
        const bool valid = d_panel.Analyze_Tolerance(text);
        EXPECT_EQ(State(valid, d_panel.d_tolerance_a, d_panel.d_tolerance_b, d_panel.d_tolerance_c,
                        d_panel.d_tolerance_d, d_panel.Tolerance_Value(2400)),
                  row.split(';')[1].trimmed())
            << text.left(40).toStdString();
    }
    EXPECT_DOUBLE_EQ(d_panel.Tolerance_Limit_Position(0.010, 0.020, 1200, 0.020), 600);
    EXPECT_EQ(d_panel.Tolerance_Limit_Position(0.03, 0.020, 1200, 0.020), 0);
}

TEST_F(ToleranceWidget, ExpressionFromCoefficients)
{
    const std::tuple<double, double, double, double, const char*> rows[] = {
        {0.012, 0.006, 1000, 0, "0.0120+0.0060L/1000"},
        {0.01, 0.02, 1200.04, 0.02, "0.0100+0.0200L/1200 | 0.0200"},
        {0.01, 0.00002, 1000, 0, "0.0100+0.0000L/1000"},
        {0.01, 0.00001, 1000, 0, "0.0100"},
        {0.01, 0.02, 1.0, 0, "0.0100"},
        {0.01, 0, 0, 0.02, "before"}, // a limit without a length term is no expression
        {1.5, 0.006, 1000, 0, "before"},
        {-0.5, 0.006, 1000, 0, "before"},
        {0.01, 0.006, 1e300, 0, "before"},
    };
    for (const auto& [a, b, c, d, text] : rows) {
        SCOPED_TRACE(text);
        const QSignalBlocker blocker(d_expression);
        d_expression.setText("before");
        Set_Coefficients(a, b, c, d);
        EXPECT_EQ(d_expression.text(), text);
        EXPECT_EQ(d_expression.styleSheet(), d_expression.text() == "before" ? PINK : "");
        EXPECT_FALSE(d_apply.isEnabled());
    }
}

TEST_F(ToleranceWidget, EditingAndApplying)
{
    EXPECT_EQ(State(d_expression.text(), d_apply.isEnabled()), "0.012 + 0.006L/1000 false");
    QApplication::setPalette(QColor(53, 53, 53)); // a dark desktop
    d_panel.show();
    Set_Coefficients(0.012, 0.006, 1000, 0);
    QSignalSpy changed(&d_panel, &TToleranceWidget::Tolerance_Changed);
    QSignalSpy sub_changed(&d_panel, &TToleranceWidget::Sub_Tolerance_Changed);
    const auto state = [&] {
        return QString(d_expression.styleSheet() == PINK ? "pink, "
                       : d_apply.isEnabled()             ? "to apply, "
                                                         : "") +
               State(d_panel.Tolerance_Value(1000), "changed", changed.count(), "sub", sub_changed.count());
    };
    d_slider.setValue(7);
    EXPECT_DOUBLE_EQ(d_panel.Sub_Tolerance_Percent(), 0.35);
    EXPECT_EQ(state(), "0.018 changed 0 sub 1");
    d_expression.selectAll();
    QTest::keyClicks(&d_expression, "0.02x");
    Expect_Readable();
    EXPECT_EQ(state(), "pink, 0 changed 0 sub 1");
    QTest::keyClick(&d_expression, Qt::Key_Backspace);
    Expect_Readable();
    QApplication::setPalette(QApplication::style()->standardPalette());
    d_slider.setValue(8);
    EXPECT_EQ(state(), "to apply, 0.02 changed 0 sub 1"); // follows the text before it is applied
    QTest::mouseClick(&d_apply, Qt::LeftButton);
    EXPECT_EQ(state(), "0.02 changed 1 sub 1");
}

TEST_F(ToleranceWidget, ResultsAndHelp)
{
    EXPECT_EQ(Results(), "none   ");
    Set_Coefficients(0.012, 0.006, 1000, 0);
    d_slider.setValue(10);
    d_panel.Set_Results(0.00456, 1000);
    EXPECT_EQ(Results(), "0.0046 0.0180 0.0090");
    d_panel.show();
    d_panel.resize(0, 0); // as small as it may become
    const auto& field = Child<QLineEdit>(d_panel, "tolerance");
    EXPECT_GE(field.width(), field.fontMetrics().horizontalAdvance("1000.0000"));
    d_panel.Enable_Results(false);
    EXPECT_EQ(Results(), "none   ");
    auto& help = Child<QTextBrowser>(d_panel, "help_text");
    bool shown = false;
    QTimer::singleShot(0, &help, [&] {
        shown = help.isVisible();
        QApplication::setActiveWindow(help.window());
        help.setFocus();
        if (help.window()->height() < help.screen()->availableSize().height()) {
            EXPECT_EQ(help.verticalScrollBar()->maximum(), 0) << "the last example is seen at once";
        }
        const QImage focused = help.grab().toImage();
        help.clearFocus();
        EXPECT_NE(help.grab().toImage(), focused) << "who has the focus is seen";
        help.window()->close();
    });
    Child<QToolButton>(d_panel, "help").click();
    EXPECT_TRUE(shown);
    EXPECT_TRUE(
        help.toPlainText().contains("as a single value.  The tolerance is independent")); // two blanks
}

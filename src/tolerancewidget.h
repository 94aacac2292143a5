// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLayout;
class QLineEdit;
class QSlider;
class QToolButton;
class TToleranceHelpDialog;

/// The panel in which the length-dependent tolerance T(L) = A + B * L / C, optionally capped by D, is typed,
/// and shown as it applies to the current set. Lengths and tolerances are mm. It passes no verdict.
class TToleranceWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TToleranceWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// Derives the expression from the four coefficients that the owner has written.
    void Update();

    /// The tolerance at `length`; 0 while the expression does not parse.
    double Tolerance_Value(const double& length) const;

    /// The slider's position as a fraction, 0 to 1.
    double Sub_Tolerance_Percent() const;

    /// The length at which a + b * L / c reaches the limit d; 0 where a alone exceeds it.
    double Tolerance_Limit_Position(const double& a, const double& b, const double& c, const double& d) const;

    /// Shows the measured range beside the tolerance at `length`.
    void Set_Results(const double& range, const double& length);

    /// Enables the results, or disables and clears them.
    void Enable_Results(bool state);

    /// Rewrites the expression from the coefficients in its canonical form, without signals.
    void Update_Display();

    /// Parses `text` into the type and the coefficients. On failure the type is 0, and the coefficients keep
    /// what was read before the fault was found.
    bool Analyze_Tolerance(const QString& text);

signals:
    void Tolerance_Changed();
    void Sub_Tolerance_Changed();

private slots:
    void Update_Tolerance();
    void Apply_Tolerance();
    void Show_Tolerance_Help();
    void Change_Sub_Tolerance();
    void Show_Expression_Menu(const QPoint& position);

private:
    void Create_Layout();
    QLayout* Create_Button_Layout();
    QLineEdit* Create_Result_Field(const char* object_name);
    bool Parse_Expression(const QString& expression);

    QWidget* d_results_group;
    QLineEdit* d_expression_edit;
    QLineEdit* d_range_edit;
    QLineEdit* d_tolerance_edit;
    QLineEdit* d_sub_tolerance_edit;
    QToolButton* d_apply_button;
    QToolButton* d_help_button;
    QSlider* d_sub_tolerance_slider;
    TToleranceHelpDialog* d_help_dialog;

    int d_tolerance_type{2}; ///< 0 invalid, 1 fixed, 2 length dependent, 3 length dependent with limit

public:
    double d_tolerance_a{0.0}; ///< constant part, mm
    double d_tolerance_b{0.0}; ///< mm per C mm of length
    double d_tolerance_c{0.0}; ///< length divisor, mm
    double d_tolerance_d{0.0}; ///< limit, mm

private:
    double d_tolerance_length{0.0};
};

// SPDX-License-Identifier: MIT
#include "tolerancewidget.h"

#include "numbers.h"
#include "panellayout.h"
#include "tolerancehelpdialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

namespace
{

constexpr double LARGEST_TOLERANCE = 1.0; // mm, of A, B and D
constexpr double SMALLEST_DIVISOR = 0.1;  // mm; the length term is left out for smaller ones
constexpr int TOLERANCE_DECIMALS = 4;

QString Tolerance_Text(double value)
{
    return Fixed(value, TOLERANCE_DECIMALS);
}

// The texts that `pattern` captures in the whole of `expression`; none where it does not match.
QStringList Captures(const char* pattern, const QString& expression)
{
    const QRegularExpressionMatch match = QRegularExpression(QLatin1String(pattern)).match(expression);
    return match.hasMatch() ? match.capturedTexts().mid(1) : QStringList();
}

// Marks a field whose text cannot be used. The background is fixed, so the text gets its own colour too:
// it has to be readable on a dark desktop as well.
void Mark_Invalid(QLineEdit* field, bool invalid)
{
    field->setStyleSheet(QString()); // brings back the palette from before it was set, so it goes first
    QPalette palette;
    if (invalid)
        palette.setColor(QPalette::Text, Qt::black);
    field->setPalette(palette);
    if (invalid)
        field->setStyleSheet(QStringLiteral("background-color: rgb(255, 151, 160);"));
}

} // namespace

TToleranceWidget::TToleranceWidget(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), d_results_group(new QWidget(this)), d_expression_edit(new QLineEdit(this)),
      d_range_edit(Create_Result_Field("measured_range")), d_tolerance_edit(Create_Result_Field("tolerance")),
      d_sub_tolerance_edit(Create_Result_Field("sub_tolerance_range")), d_apply_button(new QToolButton(this)),
      d_help_button(new QToolButton(this)), d_sub_tolerance_slider(new QSlider(Qt::Horizontal, this)),
      d_help_dialog(new TToleranceHelpDialog(this))
{
    d_expression_edit->setObjectName(QStringLiteral("expression"));
    d_expression_edit->setAlignment(Qt::AlignCenter);
    d_expression_edit->setText(QStringLiteral("0.012 + 0.006L/1000"));
    d_expression_edit->setContextMenuPolicy(Qt::CustomContextMenu);
    d_sub_tolerance_slider->setObjectName(QStringLiteral("sub_tolerance"));
    d_sub_tolerance_slider->setRange(0, 20);
    Create_Layout();
    d_apply_button->setEnabled(false);
    d_results_group->setEnabled(false);

    connect(d_expression_edit, &QLineEdit::textChanged, this, &TToleranceWidget::Update_Tolerance);
    connect(d_expression_edit, &QWidget::customContextMenuRequested, this,
            &TToleranceWidget::Show_Expression_Menu);
    connect(d_apply_button, &QToolButton::clicked, this, &TToleranceWidget::Apply_Tolerance);
    connect(d_help_button, &QToolButton::clicked, this, &TToleranceWidget::Show_Tolerance_Help);
    connect(d_sub_tolerance_slider, &QSlider::valueChanged, this, &TToleranceWidget::Change_Sub_Tolerance);
}

void TToleranceWidget::Create_Layout()
{
    auto* expression_label = new QLabel(tr("Tolerance Expression:"), this);
    expression_label->setBuddy(d_expression_edit);
    QGridLayout* grid = Create_Grid(this);
    grid->addWidget(expression_label, 0, 0, 1, 3);
    grid->addWidget(d_expression_edit, 1, 0, 1, 3);
    grid->addLayout(Create_Button_Layout(), 2, 0, 1, 3);
    grid->addWidget(d_results_group, 3, 0, 1, 3);
    Add_Stretch(grid, 4);

    QGridLayout* results = Create_Grid(d_results_group, 0);
    Add_Row(results, 0, tr("Measured Range:"), d_range_edit, tr("mm"));
    Add_Row(results, 1, tr("Tolerance:"), d_tolerance_edit, tr("mm"));
    Add_Row(results, 2, tr("Sub Tolerance:"), d_sub_tolerance_slider);
    Add_Row(results, 3, tr("Sub Tolerance Range:"), d_sub_tolerance_edit, tr("mm"));

    const QWidgetList tab_order = {d_expression_edit,   d_apply_button,   d_help_button,
                                   d_range_edit,        d_tolerance_edit, d_sub_tolerance_slider,
                                   d_sub_tolerance_edit};
    for (int i = 1; i < tab_order.size(); ++i)
        setTabOrder(tab_order[i - 1], tab_order[i]);
}

QLineEdit* TToleranceWidget::Create_Result_Field(const char* object_name)
{
    auto* field = new QLineEdit(d_results_group);
    field->setObjectName(QLatin1String(object_name));
    field->setReadOnly(true);
    field->setAlignment(Qt::AlignCenter);
    Set_Smallest_Width(field, 8);
    return field;
}

QLayout* TToleranceWidget::Create_Button_Layout()
{
    d_apply_button->setObjectName(QStringLiteral("apply"));
    d_apply_button->setText(tr("Apply"));
    d_help_button->setObjectName(QStringLiteral("help"));
    d_help_button->setText(tr("Help"));

    auto* buttons = new QHBoxLayout;
    buttons->addItem(new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum));
    for (QToolButton* button : {d_apply_button, d_help_button}) {
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        button->setFocusPolicy(Qt::StrongFocus);
        buttons->addWidget(button);
    }
    return buttons;
}

void TToleranceWidget::Update()
{
    d_tolerance_type = 0;
    d_apply_button->setEnabled(false);

    QString text = Tolerance_Text(d_tolerance_a);
    if (d_tolerance_b > 0.00001 && d_tolerance_c > 1.0)
        text += QStringLiteral("+%1L/%2").arg(Tolerance_Text(d_tolerance_b), Fixed(d_tolerance_c, 1));
    if (d_tolerance_d > 0.00001)
        text += QStringLiteral("|%1").arg(Tolerance_Text(d_tolerance_d));

    Mark_Invalid(d_expression_edit, !Analyze_Tolerance(text));
    Update_Display();
}

double TToleranceWidget::Tolerance_Value(const double& length) const
{
    const double length_term =
        d_tolerance_c > SMALLEST_DIVISOR ? d_tolerance_b * length / d_tolerance_c : 0.0;
    switch (d_tolerance_type) {
    case 1:
        return d_tolerance_a;
    case 2:
        return d_tolerance_a + length_term;
    case 3:
        return qMin(d_tolerance_a + length_term, d_tolerance_d);
    default:
        return 0.0;
    }
}

double TToleranceWidget::Sub_Tolerance_Percent() const
{
    const double span = d_sub_tolerance_slider->maximum() - d_sub_tolerance_slider->minimum();
    return span < 0.25 ? 0.0 : d_sub_tolerance_slider->value() / span;
}

double TToleranceWidget::Tolerance_Limit_Position(const double& a, const double& b, const double& c,
                                                  const double& d) const
{
    return a > d ? 0.0 : (d - a) / (b / c);
}

void TToleranceWidget::Set_Results(const double& range, const double& length)
{
    d_results_group->setEnabled(true);
    d_tolerance_length = length;
    const double tolerance = Tolerance_Value(length);
    d_range_edit->setText(Tolerance_Text(range));
    d_tolerance_edit->setText(Tolerance_Text(tolerance));
    d_sub_tolerance_edit->setText(Tolerance_Text(tolerance * Sub_Tolerance_Percent()));
}

void TToleranceWidget::Enable_Results(bool state)
{
    d_results_group->setEnabled(state);
    if (state)
        return;
    d_range_edit->clear();
    d_tolerance_edit->clear();
    d_sub_tolerance_edit->clear();
    d_tolerance_length = 0.0;
}

void TToleranceWidget::Update_Display()
{
    const QString a = Tolerance_Text(d_tolerance_a);
    const QString b = Tolerance_Text(d_tolerance_b);
    const QString c = Fixed(d_tolerance_c, 0);
    const QSignalBlocker blocker(d_expression_edit);
    switch (d_tolerance_type) {
    case 1:
        d_expression_edit->setText(a);
        break;
    case 2:
        d_expression_edit->setText(QStringLiteral("%1+%2L/%3").arg(a, b, c));
        break;
    case 3:
        d_expression_edit->setText(
            QStringLiteral("%1+%2L/%3 | %4").arg(a, b, c, Tolerance_Text(d_tolerance_d)));
        break;
    default:
        break;
    }
}

bool TToleranceWidget::Analyze_Tolerance(const QString& text)
{
    if (Parse_Expression(text.simplified()))
        return true;
    d_tolerance_type = 0;
    return false;
}

bool TToleranceWidget::Parse_Expression(const QString& expression)
{
    const auto set_coefficients = [this](int type, const QStringList& numbers) {
        // "." and "1.2.3" pass the patterns; they count as 0.
        const auto number = [&numbers](int index) { return Decimal_Or(numbers.value(index), 0.0); };
        d_tolerance_type = type;
        d_tolerance_a = number(0);
        d_tolerance_b = number(1);
        d_tolerance_c = number(2);
        d_tolerance_d = number(3);
        return !(d_tolerance_a > LARGEST_TOLERANCE || d_tolerance_b > LARGEST_TOLERANCE ||
                 d_tolerance_d > LARGEST_TOLERANCE);
    };

    const QStringList fixed = Captures("^([0-9.]{1,8})$", expression);
    if (fixed.size() == 1)
        return set_coefficients(1, fixed);

    const QStringList length_dependent = Captures(
        "^([0-9.]{1,8})[ ]{0,1}[+][ ]{0,1}([0-9.]{1,8})[ ]{0,1}[L,l]{1}[ ]{0,1}[/][ ]{0,1}([0-9.]{1,9})$",
        expression);
    if (length_dependent.size() == 3)
        return set_coefficients(2, length_dependent);

    const QStringList limited = Captures(
        "^([0-9.]{1,8})[ ]{0,1}[+][ ]{0,1}([0-9.]{1,8})[ ]{0,1}[L,l]{1}[ ]{0,1}[/][ ]{0,1}([0-9.]{1,9})[ "
        "]{0,1}[|][ ]{0,1}([0-9.]{1,8})$",
        expression);
    return limited.size() == 4 && set_coefficients(3, limited);
}

void TToleranceWidget::Update_Tolerance()
{
    const bool valid = Analyze_Tolerance(d_expression_edit->text());
    d_apply_button->setEnabled(valid);
    Mark_Invalid(d_expression_edit, !valid);
}

void TToleranceWidget::Apply_Tolerance()
{
    emit Tolerance_Changed();
    d_apply_button->setEnabled(false);
}

void TToleranceWidget::Show_Tolerance_Help()
{
    d_help_dialog->exec();
}

void TToleranceWidget::Show_Expression_Menu(const QPoint& position)
{
    QMenu* menu = d_expression_edit->createStandardContextMenu();
    menu->setParent(this, menu->windowFlags()); // as a child of the field it would be pink too
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(d_expression_edit->mapToGlobal(position));
}

void TToleranceWidget::Change_Sub_Tolerance()
{
    // While an edited expression waits to be applied, results would mix two tolerances.
    if (!d_apply_button->isEnabled())
        emit Sub_Tolerance_Changed();
}

// SPDX-License-Identifier: MIT
#include "machinewidget.h"

#include "numbers.h"
#include "panellayout.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QRegularExpression>
#include <QToolButton>

#include <cmath>

namespace
{

constexpr double SHORTEST_AXIS = 10.0; // mm
constexpr int LIMIT_DECIMALS = 3;

// Reads one limit as Qt does, for the true minus sign of a number pasted from a document, and without the
// no-break and thin blanks that part its thousands.
double Read_Limit(const QLineEdit* field)
{
    static const QRegularExpression PARTING_BLANKS(QStringLiteral("[\\x{a0}\\x{2007}\\x{2009}\\x{202f}]"));
    const double limit = field->text().remove(PARTING_BLANKS).toDouble();
    return std::isfinite(limit) ? qBound(-TMachineWidget::LARGEST_LIMIT, limit, TMachineWidget::LARGEST_LIMIT)
                                : 0.0;
}

// Reads one axis, bounds in either order.
void Read_Axis(const QLineEdit* min_edit, const QLineEdit* max_edit, double* minimum, double* maximum)
{
    const double a = Read_Limit(min_edit);
    const double b = Read_Limit(max_edit);
    *minimum = b > a ? a : b;
    *maximum = b > a ? b : a;
    if (*maximum - *minimum < SHORTEST_AXIS)
        *maximum = *minimum + SHORTEST_AXIS;
}

} // namespace

TMachineWidget::TMachineWidget(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), d_max_x_edit(new QLineEdit(this)), d_max_y_edit(new QLineEdit(this)),
      d_max_z_edit(new QLineEdit(this)), d_min_x_edit(new QLineEdit(this)), d_min_y_edit(new QLineEdit(this)),
      d_min_z_edit(new QLineEdit(this)), d_update_button(new QToolButton(this))
{
    const struct
    {
        QString label;
        QLineEdit* field;
        const char* object_name;
    } rows[] = {{tr("Min X:"), d_min_x_edit, "min_x"}, {tr("Max X:"), d_max_x_edit, "max_x"},
                {tr("Min Y:"), d_min_y_edit, "min_y"}, {tr("Max Y:"), d_max_y_edit, "max_y"},
                {tr("Min Z:"), d_min_z_edit, "min_z"}, {tr("Max Z:"), d_max_z_edit, "max_z"}};

    QGridLayout* grid = Create_Grid(this);
    int line = 0;
    QWidget* previous = nullptr;
    for (const auto& row : rows) {
        row.field->setObjectName(QLatin1String(row.object_name));
        row.field->setAlignment(Qt::AlignRight);
        Set_Smallest_Width(row.field, 9);
        Add_Row(grid, line++, row.label, row.field, tr("mm"));
        setTabOrder(previous, row.field);
        previous = row.field;
    }
    setTabOrder(previous, d_update_button);
    d_update_button->setObjectName(QStringLiteral("update"));
    d_update_button->setText(tr("Update"));
    d_update_button->setFocusPolicy(Qt::StrongFocus);
    grid->addWidget(d_update_button, line, 1);
    Add_Stretch(grid, line + 1);

    Set_Machine_Dimensions(TDimensions());
    connect(d_update_button, &QToolButton::clicked, this, &TMachineWidget::Update_Machine);
}

TMachineWidget::TDimensions TMachineWidget::Machine_Dimensions() const
{
    TDimensions dimensions;
    Read_Axis(d_min_x_edit, d_max_x_edit, &dimensions.x_min, &dimensions.x_max);
    Read_Axis(d_min_y_edit, d_max_y_edit, &dimensions.y_min, &dimensions.y_max);
    Read_Axis(d_min_z_edit, d_max_z_edit, &dimensions.z_min, &dimensions.z_max);
    return dimensions;
}

void TMachineWidget::Set_Machine_Dimensions(const TDimensions& dimensions)
{
    d_min_x_edit->setText(Fixed(dimensions.x_min, LIMIT_DECIMALS));
    d_max_x_edit->setText(Fixed(dimensions.x_max, LIMIT_DECIMALS));
    d_min_y_edit->setText(Fixed(dimensions.y_min, LIMIT_DECIMALS));
    d_max_y_edit->setText(Fixed(dimensions.y_max, LIMIT_DECIMALS));
    d_min_z_edit->setText(Fixed(dimensions.z_min, LIMIT_DECIMALS));
    d_max_z_edit->setText(Fixed(dimensions.z_max, LIMIT_DECIMALS));
}

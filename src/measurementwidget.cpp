// SPDX-License-Identifier: MIT
#include "measurementwidget.h"

#include "numbers.h"
#include "panellayout.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <utility>
#include <vector>

namespace
{

void Show_Number(QLineEdit* field, double value)
{
    field->setText(Fixed(value, 4));
}

QFrame* Separator(QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

TMeasurementWidget::TMeasurementWidget(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), d_name_edit(Create_Field("name")), d_length_edit(Create_Field("length")),
      d_mean_deviation_edit(Create_Field("mean_deviation")),
      d_median_deviation_edit(Create_Field("median_deviation")), d_sphere1_x_edit(Create_Field("sphere1_x")),
      d_sphere1_y_edit(Create_Field("sphere1_y")), d_sphere1_z_edit(Create_Field("sphere1_z")),
      d_sphere1_form_edit(Create_Field("sphere1_form")), d_sphere2_x_edit(Create_Field("sphere2_x")),
      d_sphere2_y_edit(Create_Field("sphere2_y")), d_sphere2_z_edit(Create_Field("sphere2_z")),
      d_sphere2_form_edit(Create_Field("sphere2_form")), d_probe_x_edit(Create_Field("probe_x")),
      d_probe_y_edit(Create_Field("probe_y")), d_probe_z_edit(Create_Field("probe_z"))
{
    d_name_edit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    Fill_Layout(Create_Grid(this));
    Enable_Display(false);
}

QLineEdit* TMeasurementWidget::Create_Field(const char* object_name)
{
    auto* field = new QLineEdit(this);
    field->setObjectName(QLatin1String(object_name));
    field->setReadOnly(true);
    field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    field->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    Set_Smallest_Width(field, 12);
    return field;
}

void TMeasurementWidget::Fill_Layout(QGridLayout* layout)
{
    const std::vector<std::pair<QString, QLineEdit*>> groups[] = {
        {{tr("Selected Position:"), d_name_edit}},
        {{tr("Length:"), d_length_edit},
         {tr("Dev. From Mean:"), d_mean_deviation_edit},
         {tr("Dev. From Median:"), d_median_deviation_edit}},
        {{tr("Sphere 1 X:"), d_sphere1_x_edit},
         {tr("Sphere 1 Y:"), d_sphere1_y_edit},
         {tr("Sphere 1 Z:"), d_sphere1_z_edit},
         {tr("Sphere 1 Form:"), d_sphere1_form_edit}},
        {{tr("Sphere 2 X:"), d_sphere2_x_edit},
         {tr("Sphere 2 Y:"), d_sphere2_y_edit},
         {tr("Sphere 2 Z:"), d_sphere2_z_edit},
         {tr("Sphere 2 Form:"), d_sphere2_form_edit}},
        {{tr("Probe Offset X:"), d_probe_x_edit},
         {tr("Probe Offset Y:"), d_probe_y_edit},
         {tr("Probe Offset Z:"), d_probe_z_edit}}};
    int row = 0;
    for (const auto& group : groups) {
        for (const auto& [label, field] : group)
            Add_Row(layout, row++, label, field);
        layout->addWidget(Separator(this), row++, 0, 1, 2);
    }
    auto* unit_label = new QLabel(tr("Reported values in mm."), this);
    unit_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addWidget(unit_label, row, 0, 1, 2);
    Add_Stretch(layout, row + 1);
}

void TMeasurementWidget::Enable_Display(bool state)
{
    setEnabled(state);
    if (state)
        return;
    const auto fields = findChildren<QLineEdit*>();
    for (QLineEdit* field : fields)
        field->clear();
}

void TMeasurementWidget::Show_Position(const Types::TBallbar_Item& position, double mean_deviation,
                                       double median_deviation)
{
    Enable_Display(true);
    Set_Position_Name(position.name);
    Set_Length(position.Length());
    Set_Mean_Deviation(mean_deviation);
    Set_Median_Deviation(median_deviation);
    Set_Sphere1(position.sph1, position.sph1_form);
    Set_Sphere2(position.sph2, position.sph2_form);
    Set_Probe(position.tool);
}

void TMeasurementWidget::Set_Position_Name(const QString& name)
{
    d_name_edit->setText(name);
    d_name_edit->setCursorPosition(0); // of a name too long for the field the beginning is shown
}

void TMeasurementWidget::Set_Length(const double& length)
{
    Show_Number(d_length_edit, length);
}

void TMeasurementWidget::Set_Mean_Deviation(const double& deviation)
{
    Show_Number(d_mean_deviation_edit, deviation);
}

void TMeasurementWidget::Set_Median_Deviation(const double& deviation)
{
    Show_Number(d_median_deviation_edit, deviation);
}

void TMeasurementWidget::Set_Sphere1(const TVector3& center, const double& form)
{
    Show_Number(d_sphere1_x_edit, center.x);
    Show_Number(d_sphere1_y_edit, center.y);
    Show_Number(d_sphere1_z_edit, center.z);
    Show_Number(d_sphere1_form_edit, form);
}

void TMeasurementWidget::Set_Sphere2(const TVector3& center, const double& form)
{
    Show_Number(d_sphere2_x_edit, center.x);
    Show_Number(d_sphere2_y_edit, center.y);
    Show_Number(d_sphere2_z_edit, center.z);
    Show_Number(d_sphere2_form_edit, form);
}

void TMeasurementWidget::Set_Probe(const TVector3& offset)
{
    Show_Number(d_probe_x_edit, offset.x);
    Show_Number(d_probe_y_edit, offset.y);
    Show_Number(d_probe_z_edit, offset.z);
}

// SPDX-License-Identifier: MIT
#pragma once

#include "types.h"

#include <QWidget>

class QGridLayout;
class QLineEdit;

/// The panel that shows the one selected position: name, length, deviations, sphere centres with their form
/// errors and the probe offset. Read-only; all values are mm.
class TMeasurementWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TMeasurementWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// Enables the panel, or disables it and clears every field.
    void Enable_Display(bool state);

    /// Enables the panel and shows a position and how far its length is from the set's mean and median.
    void Show_Position(const Types::TBallbar_Item& position, double mean_deviation, double median_deviation);

    void Set_Position_Name(const QString& name);
    void Set_Length(const double& length);
    void Set_Mean_Deviation(const double& deviation);
    void Set_Median_Deviation(const double& deviation);
    void Set_Sphere1(const TVector3& center, const double& form);
    void Set_Sphere2(const TVector3& center, const double& form);
    void Set_Probe(const TVector3& offset);

private:
    QLineEdit* Create_Field(const char* object_name);
    void Fill_Layout(QGridLayout* layout);

    // In the order of the display, so that the keyboard goes from one to the next.
    QLineEdit* d_name_edit;
    QLineEdit* d_length_edit;
    QLineEdit* d_mean_deviation_edit;
    QLineEdit* d_median_deviation_edit;
    QLineEdit* d_sphere1_x_edit;
    QLineEdit* d_sphere1_y_edit;
    QLineEdit* d_sphere1_z_edit;
    QLineEdit* d_sphere1_form_edit;
    QLineEdit* d_sphere2_x_edit;
    QLineEdit* d_sphere2_y_edit;
    QLineEdit* d_sphere2_z_edit;
    QLineEdit* d_sphere2_form_edit;
    QLineEdit* d_probe_x_edit;
    QLineEdit* d_probe_y_edit;
    QLineEdit* d_probe_z_edit;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLineEdit;
class QToolButton;

/// The panel that holds the measuring volume of the machine, mm.
class TMachineWidget : public QWidget
{
    Q_OBJECT

public:
    /// The machine's volume in machine coordinates, mm.
    struct TDimensions
    {
        double x_min{0.0};
        double x_max{1200.0};
        double y_min{0.0};
        double y_max{2200.0};
        double z_min{-1000.0};
        double z_max{0.0};
    };

    /// No machine is a kilometre long: larger numbers, either sign, count as this one, mm.
    static constexpr double LARGEST_LIMIT = 1e6;

    explicit TMachineWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// The typed volume: text that is no number reads as 0, bounds in the wrong order are swapped, and no
    /// axis is shorter than 10 mm. The fields themselves are not corrected.
    TDimensions Machine_Dimensions() const;

    /// Writes the six fields.
    void Set_Machine_Dimensions(const TDimensions& dimensions);

signals:
    void Update_Machine();

private:
    QLineEdit* d_max_x_edit;
    QLineEdit* d_max_y_edit;
    QLineEdit* d_max_z_edit;
    QLineEdit* d_min_x_edit;
    QLineEdit* d_min_y_edit;
    QLineEdit* d_min_z_edit;
    QToolButton* d_update_button;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QGridLayout;
class QLineEdit;
class QSize;
class QWidget;

/// The grid that every panel of the window is laid out in, set as the layout of `widget`. `margin` is in
/// pixels.
QGridLayout* Create_Grid(QWidget* widget, int margin = 4);

/// Adds one row: a right-aligned label in column 0 whose buddy is the field in column 1, and, if there is
/// one, the unit in column 2. The labels belong to the widget of the grid.
void Add_Row(QGridLayout* grid, int row, const QString& label, QWidget* field,
             const QString& unit = QString());

/// Lets a field become as narrow as `digits` digits; by itself it keeps room for 17 letters.
void Set_Smallest_Width(QLineEdit* field, int digits);

/// Makes a window as large as `size`, in pixels of a desktop with letters of 96 dpi, and larger with larger
/// letters, as far as the screen allows.
void Resize_With_Letters(QWidget* window, const QSize& size);

/// Takes up the height that the rows above `row` leave.
void Add_Stretch(QGridLayout* grid, int row);

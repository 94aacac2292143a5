// SPDX-License-Identifier: MIT
#include "panellayout.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>

QGridLayout* Create_Grid(QWidget* widget, int margin)
{
    auto* grid = new QGridLayout(widget);
    grid->setSpacing(4);
    grid->setContentsMargins(margin, margin, margin, margin);
    return grid;
}

void Add_Row(QGridLayout* grid, int row, const QString& label, QWidget* field, const QString& unit)
{
    QWidget* parent = grid->parentWidget();
    auto* caption = new QLabel(label, parent);
    caption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    caption->setBuddy(field);
    grid->addWidget(caption, row, 0);
    grid->addWidget(field, row, 1);
    if (!unit.isEmpty())
        grid->addWidget(new QLabel(unit, parent), row, 2);
}

void Set_Smallest_Width(QLineEdit* field, int digits)
{
    const QString text(digits + 1, QLatin1Char('0')); // one for the frame
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(text));
}

void Resize_With_Letters(QWidget* window, const QSize& size)
{
    const double growth = qMax(4, window->logicalDpiX() / 24) / 4.0; // in quarters
    window->resize((size * growth).boundedTo(size.expandedTo(window->screen()->availableSize())));
}

void Add_Stretch(QGridLayout* grid, int row)
{
    grid->addItem(new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), row, 0, 1,
                  grid->columnCount());
}

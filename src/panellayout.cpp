// SPDX-License-Identifier: MIT
#include "panellayout.h"

#include <QGridLayout>
#include <QLabel>

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

void Add_Stretch(QGridLayout* grid, int row)
{
    grid->addItem(new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), row, 0, 1,
                  grid->columnCount());
}

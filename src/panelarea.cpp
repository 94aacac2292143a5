// SPDX-License-Identifier: MIT
#include "panelarea.h"

#include <QLineEdit>
#include <QScrollBar>

TPanelArea::TPanelArea(QWidget* panel)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus); // it follows the field that has the focus
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(panel);

    const auto fields = panel->findChildren<QLineEdit*>();
    for (QLineEdit* field : fields)
        field->setAcceptDrops(false);
}

QSize TPanelArea::sizeHint() const
{
    return widget()->sizeHint();
}

QSize TPanelArea::minimumSizeHint() const
{
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 0};
}

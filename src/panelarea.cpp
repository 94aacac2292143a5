// SPDX-License-Identifier: MIT
#include "panelarea.h"

#include <QEvent>
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

bool TPanelArea::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest)
        updateGeometry(); // the panel needs more or less room, which the dock has to know
    return QScrollArea::event(event);
}

QSize TPanelArea::sizeHint() const
{
    return {minimumSizeHint().width(), widget()->sizeHint().height()};
}

QSize TPanelArea::minimumSizeHint() const
{
    const int panel_width = widget()->minimumSizeHint().expandedTo(widget()->minimumSize()).width();
    return {panel_width + verticalScrollBar()->sizeHint().width(), 0};
}

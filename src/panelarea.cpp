// SPDX-License-Identifier: MIT
#include "panelarea.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyle>

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

void TPanelArea::Fit_To_Title(const QDockWidget* dock)
{
    const int margin = dock->style()->pixelMetric(QStyle::PM_DockWidgetTitleMargin, nullptr, dock);
    int width = dock->fontMetrics().horizontalAdvance(dock->windowTitle()) + 6 * margin;
    const auto buttons = dock->findChildren<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
    for (QAbstractButton* button : buttons) {
        button->setFocusPolicy(Qt::TabFocus);
        width += button->sizeHint().width();
    }
    widget()->setMinimumWidth(width);
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

// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

class QDockWidget;

/// Shows one panel of the window: as high as the panel likes, and with a scroll bar where the window is
/// lower. A file dropped on a field of the panel goes on to the window, which imports it.
class TPanelArea : public QScrollArea
{
public:
    /// Takes over `panel`.
    explicit TPanelArea(QWidget* panel);

    /// Makes the panel wide enough for the title of its dock, and gives the keyboard the title's buttons.
    void Fit_To_Title(const QDockWidget* dock);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QProgressDialog>

/// Shows how far a work is. It can be closed only when the work is done, and not be cancelled; it is not
/// modal, so that one which stays on screen locks nothing.
class TWorkProgress : public QProgressDialog
{
    Q_OBJECT

public:
    explicit TWorkProgress(QWidget* parent);

    /// Shows the window for a work that begins.
    void Begin(const QString& text);
    /// Shows what is done of all there is to do, and lets the windows react.
    void Set_Done(int done, int all);
    /// The window stays on screen, but can be closed.
    void End() { d_working = false; }

public slots:
    void reject() override;

private:
    bool d_working{false};
};

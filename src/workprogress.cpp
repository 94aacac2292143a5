// SPDX-License-Identifier: MIT
#include "workprogress.h"

#include <QCoreApplication>
#include <QPushButton>

#include <algorithm>
#include <limits>

// Qt is not asked to create the button: its Escape key would stay when ours takes its place, and of two keys
// Qt obeys neither.
TWorkProgress::TWorkProgress(QWidget* parent) : QProgressDialog(QString(), QString(), 0, 1, parent)
{
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setEnabled(false);
    setCancelButton(cancel);
    // It is shown and hidden by its owner, never by its own clock or by reaching its end.
    setMinimumDuration(std::numeric_limits<int>::max());
    setAutoReset(false);
    setAutoClose(false);
    // Escape and the window's own button would hide it at any time. reject() decides.
    disconnect(this, SIGNAL(canceled()), this, SLOT(cancel())); // finds only connections made in this form
    connect(this, &QProgressDialog::canceled, this, &TWorkProgress::reject);
}

void TWorkProgress::Begin(const QString& text)
{
    d_working = true;
    setLabelText(text);
    setMaximum(1);
    setValue(0);
    show();
}

void TWorkProgress::Set_Done(int done, int all)
{
    // In steps that can be seen: the bar lays its text out anew with each value.
    constexpr qint64 STEPS = 500;
    setMaximum(all);
    if (done == all || done * STEPS / std::max(all, 1) != value() * STEPS / std::max(all, 1))
        setValue(done);
    QCoreApplication::processEvents();
}

void TWorkProgress::reject()
{
    if (!d_working)
        QProgressDialog::reject();
}

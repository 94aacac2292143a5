// SPDX-License-Identifier: MIT
#include "workprogress.h"

#include <QCoreApplication>
#include <QPushButton>

#include <limits>

TWorkProgress::TWorkProgress(QWidget* parent) : QProgressDialog(parent)
{
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setEnabled(false);
    setCancelButton(cancel);
    // It is shown and hidden by its owner, never by its own clock or by reaching its end.
    setMinimumDuration(std::numeric_limits<int>::max());
    setAutoReset(false);
    setAutoClose(false);
    // Escape and the window's own button would hide it at any time.
    disconnect(this, &QProgressDialog::canceled, this, &QProgressDialog::cancel);
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
    setMaximum(all);
    setValue(done);
    QCoreApplication::processEvents();
}

void TWorkProgress::reject()
{
    if (!d_working)
        QProgressDialog::reject();
}

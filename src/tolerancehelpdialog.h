// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

/// Explains the forms a tolerance expression may take.
class TToleranceHelpDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TToleranceHelpDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

private:
    static QString Help_Text();
};

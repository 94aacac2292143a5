// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>

/// The application's message box: fixed width, styled texts, buttons without icons. Texts may hold markup;
/// they are not escaped.
class TMessageBox : public QMessageBox
{
    Q_OBJECT

public:
    explicit TMessageBox(QWidget* parent = nullptr);

    void setText(const QString& text);
    void setInformativeText(const QString& text);

    /// Runs the box modally and returns its result.
    int exec() override;

    /// Posts a press and a release of `key` to the box; they take effect when events are processed.
    void Send_Key(int key);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int d_width{500}; ///< pixels
};

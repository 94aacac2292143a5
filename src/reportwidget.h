// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>

/// The read-only report text in a fixed-pitch font. A click on a line, which is not the end of a text
/// selection by dragging, is reported; moving the cursor from code or by keys is not.
class TReportWidget : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit TReportWidget(QWidget* parent = nullptr);

signals:
    /// The line under the click, from 0, over the whole width of the view, or that of the cursor when Return
    /// is pressed. Clicks below the text are silent.
    void Line_Clicked(int line);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Fit_Letters();
    void Update_Colors();
};

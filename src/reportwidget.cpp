// SPDX-License-Identifier: MIT
#include "reportwidget.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QMouseEvent>
#include <QTextBlock>

namespace
{

/// "Courier New", or the system's fixed-pitch font where it is missing: in any other font the columns of the
/// report do not line up.
QFont Report_Font()
{
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    if (QFontInfo(font).fixedPitch())
        return font;
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

} // namespace

TReportWidget::TReportWidget(QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setUndoRedoEnabled(false);
    setFont(Report_Font());
    setAccessibleName(tr("Analysis"));
}

void TReportWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        emit Line_Clicked(textCursor().blockNumber());
    else
        QPlainTextEdit::keyPressEvent(event);
}

void TReportWidget::mouseReleaseEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || textCursor().hasSelection())
        return;
    const QTextBlock line = cursorForPosition(event->pos()).block();
    if (blockBoundingGeometry(line).translated(contentOffset()).contains(event->pos()))
        emit Line_Clicked(line.blockNumber());
}

// SPDX-License-Identifier: MIT
#include "reportwidget.h"

#include "report.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>

namespace
{

// Whether the columns of a text line up. (Some fonts that are fixed-pitch do not say so.)
bool Is_Fixed_Pitch(const QFont& font)
{
    const QFontMetricsF letters(font);
    return qFuzzyCompare(letters.horizontalAdvance(QLatin1Char('i')),
                         letters.horizontalAdvance(QLatin1Char('W')));
}

// "Courier New", or where neither it nor what the system takes for it is fixed-pitch, one that is.
QFont Report_Font()
{
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    QStringList families = QFontDatabase().families(QFontDatabase::Latin);
    families.prepend(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    for (int i = 0; i < families.size() && !Is_Fixed_Pitch(font); ++i)
        font.setFamilies({font.family(), families[i]});
    return font;
}

constexpr double SMALLEST_LETTERS = 7.0; // points

// The width of the report in pixels.
double Width(const QFont& font)
{
    return QFontMetricsF(font).horizontalAdvance(QString(REPORT_WIDTH, QLatin1Char('-')));
}

} // namespace

TReportWidget::TReportWidget(QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setUndoRedoEnabled(false);
    setFont(Report_Font());
    document()->setDocumentMargin(2);
    Update_Colors();
    setAccessibleName(tr("Analysis"));
    connect(qApp, &QApplication::fontChanged, this, &TReportWidget::Fit_Letters);
}

void TReportWidget::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        Update_Colors();
}

// The hint shown in place of a report is for reading, not for passing over: it is not paler than the report.
void TReportWidget::Update_Colors()
{
    QPalette colors = palette();
    if (colors.color(QPalette::PlaceholderText) == colors.color(QPalette::Text))
        return;
    colors.setColor(QPalette::PlaceholderText, colors.color(QPalette::Text));
    setPalette(colors);
}

void TReportWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        emit Line_Clicked(textCursor().blockNumber());
    else
        QPlainTextEdit::keyPressEvent(event);
}

void TReportWidget::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    Fit_Letters();
}

// Letters of the usual size, or so much smaller that all columns of the report are seen without scrolling.
// Where even the smallest ones do not help, they have the usual size.
void TReportWidget::Fit_Letters()
{
    const double room = width() - 2.0 * frameWidth() - verticalScrollBar()->sizeHint().width() -
                        2.0 * document()->documentMargin();
    const double usual_size = QFontInfo(QApplication::font()).pointSizeF();
    QFont letters = font();
    double size = usual_size;
    do {
        letters.setPointSizeF(size);
        size -= 0.25;
    } while (Width(letters) > room && size >= SMALLEST_LETTERS);
    if (Width(letters) > room)
        letters.setPointSizeF(usual_size);
    setFont(letters);
    if (document()->isEmpty())
        clear(); // after a change of the layout Qt shows the placeholder only if the text is set again
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

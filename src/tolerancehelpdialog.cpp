// SPDX-License-Identifier: MIT
#include "tolerancehelpdialog.h"

#include "panellayout.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace
{

QString Paragraph(const QString& text)
{
    // Two blanks follow a full stop; plain markup would show one.
    return QStringLiteral("<p style=\"margin: 0px; white-space: pre-wrap;\">%1<br/></p>").arg(text);
}

QString Heading(const QString& text)
{
    return Paragraph(
        QStringLiteral(
            "<span style=\"font-size:12pt; font-weight:600; text-decoration: underline;\">%1</span>")
            .arg(text));
}

QString Subheading(const QString& text)
{
    return Paragraph(
        QStringLiteral("<span style=\"font-weight:600; text-decoration: underline;\">%1</span>").arg(text));
}

// One of the forms that an expression may have.
QString Form(const QString& title, const QString& explanation, const QString& example)
{
    return Subheading(title) + Paragraph(explanation) + Paragraph(example);
}

} // namespace

QString TToleranceHelpDialog::Help_Text()
{
    return QStringLiteral("<html><body style=\"font-family:'Arial'; font-size:10pt;\">") +
           Heading(tr("Tolerance Expression Formats")) +
           Paragraph(tr("The tolerance expression can be in one of the supported forms.  The supported forms "
                        "are listed below:")) +
           Form(tr("Fixed Value"),
                tr("Tolerances are entered, in metric, as a single value.  The tolerance is independent of "
                   "the measurement length."),
                tr("Example:  0.010")) +
           Form(tr("Length Dependent Expression"),
                tr("Tolerances are entered, in metric, as an expression that includes the length.  The "
                   "expression consists of a constant and length dependent components."),
                tr("Example:  0.010 + 0.020L/1200")) +
           Form(tr("Length Dependent Expression with Limit"),
                tr("Tolerances are entered, in metric, as an expression that includes the length and a "
                   "maximum value.  The expression consists of a constant and length dependent components "
                   "followed by the upper limit."),
                tr("Example:  0.010 + 0.020L/1200 | 0.020")) +
           QStringLiteral("</body></html>");
}

TToleranceHelpDialog::TToleranceHelpDialog(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags)
{
    auto* text = new QTextBrowser(this);
    text->setObjectName(QStringLiteral("help_text"));
    text->setAccessibleName(tr("Tolerance Help"));
    // A caret shows who has the focus.
    text->setTextInteractionFlags(text->textInteractionFlags() | Qt::TextSelectableByKeyboard);
    text->setHtml(Help_Text());

    auto* close_button = new QPushButton(tr("Close"), this);
    close_button->setObjectName(QStringLiteral("close"));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close_button);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addLayout(buttons);

    setWindowTitle(tr("Tolerance Help"));
    Resize_With_Letters(this, {551, 551});
    connect(close_button, &QPushButton::clicked, this, &TToleranceHelpDialog::close);
}

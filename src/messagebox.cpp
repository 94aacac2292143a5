// SPDX-License-Identifier: MIT
#include "messagebox.h"

#include <QApplication>
#include <QKeyEvent>

namespace
{

// The box's texts are black by markup, so the box is light on dark desktops too.
QPalette Light_Palette()
{
    const QColor window(239, 239, 239);
    QPalette palette(window, window);
    palette.setColor(QPalette::Highlight, QApplication::palette().color(QPalette::Highlight));
    return palette;
}

} // namespace

TMessageBox::TMessageBox(QWidget* parent) : QMessageBox(parent)
{
    setTextFormat(Qt::RichText);
    setPalette(Light_Palette());
    setStyleSheet(QStringLiteral("dialogbuttonbox-buttons-have-icons: 0;\nbutton-layout: 1;"));
}

void TMessageBox::setText(const QString& text)
{
    QMessageBox::setText(
        QStringLiteral("<span style=\"font-size:10pt; font-weight:600; color:#000000;\" >%1</span>")
            .arg(text));
}

void TMessageBox::setInformativeText(const QString& text)
{
    QMessageBox::setInformativeText(
        QStringLiteral("<span style=\"font-size:10pt; font-weight:400; color:#000000;\" >%1</span>")
            .arg(text));
}

int TMessageBox::exec()
{
    return QMessageBox::exec();
}

void TMessageBox::Send_Key(int key)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        QApplication::postEvent(this, new QKeyEvent(type, key, Qt::NoModifier));
}

void TMessageBox::showEvent(QShowEvent* event)
{
    QMessageBox::showEvent(event);
    const auto children = findChildren<QWidget*>(); // buttons come and go with the standard buttons
    for (QWidget* child : children)
        child->setPalette(Light_Palette()); // below a style sheet palettes are not inherited
    setFixedWidth(d_width);
}

void TMessageBox::resizeEvent(QResizeEvent* event)
{
    QMessageBox::resizeEvent(event);
    setFixedWidth(d_width);
}

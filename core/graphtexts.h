// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>
#include <QFont>
#include <QStaticText>

class QPainter;
class QRect;

/// The texts of a graph as they were laid out last: most of them stay from one picture to the next, and to
/// lay them out takes longer than to draw them.
class TGraphTexts
{
public:
    /// Draws one line of text where QPainter::drawText of the same room and alignment would, not clipped.
    void Draw(QPainter* painter, const QRect& room, Qt::Alignment alignment, const QString& text);

    /// Pixels of `text` in the painter's font.
    int Width(const QPainter& painter, const QString& text);

private:
    struct TText
    {
        QFont font;
        QStaticText laid_out;
    };

    QStaticText Laid_Out(const QPainter& painter, const QString& text);

    QCache<QString, TText> d_texts{200};
};

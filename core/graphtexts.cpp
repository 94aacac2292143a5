// SPDX-License-Identifier: MIT
#include "graphtexts.h"

#include <QPainter>

void TGraphTexts::Draw(QPainter* painter, const QRect& room, Qt::Alignment alignment, const QString& text)
{
    const QStaticText laid_out = Laid_Out(*painter, text);
    const QSizeF spare = room.size() - laid_out.size();
    const auto share = [alignment](Qt::AlignmentFlag middle, Qt::AlignmentFlag end) {
        return alignment.testFlag(middle) ? 0.5 : alignment.testFlag(end) ? 1.0 : 0.0;
    };
    painter->drawStaticText(QPointF(room.x() + spare.width() * share(Qt::AlignHCenter, Qt::AlignRight),
                                    room.y() + spare.height() * share(Qt::AlignVCenter, Qt::AlignBottom)),
                            laid_out);
}

int TGraphTexts::Width(const QPainter& painter, const QString& text)
{
    return qRound(Laid_Out(painter, text).size().width());
}

QStaticText TGraphTexts::Laid_Out(const QPainter& painter, const QString& text)
{
    const TText* known = d_texts.object(text);
    if (known != nullptr && known->font == painter.font())
        return known->laid_out;
    QStaticText laid_out(text);
    laid_out.setTextFormat(Qt::PlainText);
    laid_out.prepare(painter.transform(), painter.font());
    d_texts.insert(text, new TText{painter.font(), laid_out});
    return laid_out;
}

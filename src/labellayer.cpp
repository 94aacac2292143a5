// SPDX-License-Identifier: MIT
#include "labellayer.h"

#include <QFontMetrics>
#include <QPainter>

void TLabelLayer::Add(const QString& name, const TVector3& position)
{
    const bool fits = name.size() <= LONGEST_NAME;
    d_Labels.push_back({fits ? name : name.left(LONGEST_NAME) + QChar(0x2026), position, QSize()});
}

void TLabelLayer::Clear()
{
    d_Labels.clear();
}

const QImage& TLabelLayer::Paint(const TCamera& camera, const TVector3 (&anchors)[3], const QFont& font,
                                 double ratio)
{
    if (d_Font != font) {
        d_Font = font;
        for (TLabel& label : d_Labels)
            label.size = QSize();
    }
    Start_Image(camera, ratio);
    QPainter painter(&d_Image);
    painter.setFont(d_Font);
    painter.setPen(Qt::black);

    const auto pixel = [&camera, ratio](const TVector3& point) {
        QPoint position;
        camera.Raster_Position(point, &position.rx(), &position.ry());
        return position / ratio;
    };
    for (int axis = 0; axis < 3; ++axis)
        painter.drawText(pixel(anchors[axis]), QString(QLatin1Char("XYZ"[axis])));

    const QRect visible(QPoint(), d_Image.size() / ratio);
    const QFontMetrics metrics = painter.fontMetrics();
    const QColor background(224, 224, 224, 160);
    for (TLabel& label : d_Labels) {
        if (!label.size.isValid())
            label.size = metrics.size(0, label.name);
        const QRect box(pixel(label.position) - QPoint(1, 1), label.size + QSize(3, 3));
        if (!visible.intersects(box))
            continue;
        painter.fillRect(box, background);
        painter.drawText(box, Qt::AlignHCenter | Qt::AlignVCenter, label.name);
    }
    return d_Image;
}

void TLabelLayer::Start_Image(const TCamera& camera, double ratio)
{
    const QSize size(camera.viewport[2], camera.viewport[3]);
    if (d_Image.size() != size)
        d_Image = QImage(size, QImage::Format_ARGB32_Premultiplied);
    d_Image.setDevicePixelRatio(ratio);
    d_Image.fill(Qt::transparent);
}

// SPDX-License-Identifier: MIT
#include "labelatlas.h"

#include <QFontMetrics>
#include <QPainter>
#include <QVector>

#include <algorithm>

namespace
{

const QSize SHEET_SIZE(2048, 512); // 4 MB, and less than any graphics card's limit
constexpr size_t MOST_SHEETS = 32; // names beyond are painted in every frame
constexpr int MANY_NAMES = 2000;

QString Shown(const QString& name)
{
    return name.size() <= TLabelAtlas::LONGEST_NAME ? name
                                                    : name.left(TLabelAtlas::LONGEST_NAME) + QChar(0x2026);
}

} // namespace

void TLabelAtlas::Begin(const QSize& view, const QFont& font, double ratio)
{
    d_boxes.clear();
    d_view = view;
    if (font == d_font && ratio == d_ratio)
        return;
    Clear();
    d_font = font;
    d_ratio = ratio;
}

void TLabelAtlas::Add(const QString& name, const QPoint& pixel)
{
    TPicture& picture = Measured(name);
    const QRect box(pixel - QPoint(1, 1), picture.size);
    if (!box.intersects(QRect(QPoint(), d_view)))
        return;
    if (picture.sheet < 0 && Find_Place(&picture)) {
        QPainter painter(&d_sheets.back());
        Paint_Box(&painter, {name, picture.place.topLeft(), picture});
    }
    d_boxes.push_back({name, box.topLeft() * d_ratio, picture});
}

// To copy a pixel of a box to the view takes twice as long as to copy one of an image. Where the boxes, which
// overlap, are larger than half of the view together, they go into an image of the view first.
void TLabelAtlas::Draw(QPainter* painter)
{
    const QSize size = d_view * d_ratio;
    const auto area = [](const QSize& s) { return static_cast<double>(s.width()) * s.height(); };
    double pixels = 0.0;
    for (const TBox& box : d_boxes)
        pixels += area(box.picture.size) * d_ratio * d_ratio;
    if (2.0 * pixels < area(size)) {
        Copy_Boxes(painter);
        return;
    }
    if (d_image.size() != size)
        d_image = QImage(size, QImage::Format_ARGB32_Premultiplied);
    d_image.fill(Qt::transparent);
    QPainter image_painter(&d_image);
    Copy_Boxes(&image_painter);
    image_painter.end();
    painter->drawImage(0, 0, d_image);
}

void TLabelAtlas::Make_Room()
{
    if (d_pictures.size() > MANY_NAMES)
        Clear();
}

void TLabelAtlas::Clear()
{
    d_pictures.clear();
    d_sheets.clear();
    d_free = {};
    d_row_height = 0;
}

TLabelAtlas::TPicture& TLabelAtlas::Measured(const QString& name)
{
    TPicture& picture = d_pictures[name];
    if (picture.size.isEmpty())
        picture.size = QFontMetrics(d_font).size(0, Shown(name)) + QSize(3, 3);
    return picture;
}

// Row by row, sheet by sheet. False when the last sheet is full or the picture larger than a sheet.
bool TLabelAtlas::Find_Place(TPicture* picture)
{
    const QSize size = (QSizeF(picture->size) * d_ratio).toSize();
    if (size.width() > SHEET_SIZE.width() || size.height() > SHEET_SIZE.height())
        return false;
    if (d_free.x() + size.width() > SHEET_SIZE.width()) {
        d_free = {0, d_free.y() + d_row_height};
        d_row_height = 0;
    }
    if (d_sheets.empty() || d_free.y() + size.height() > SHEET_SIZE.height()) {
        if (d_sheets.size() == MOST_SHEETS)
            return false;
        d_sheets.emplace_back(SHEET_SIZE);
        d_sheets.back().fill(Qt::transparent);
        d_free = {};
        d_row_height = 0;
    }
    picture->sheet = static_cast<int>(d_sheets.size()) - 1;
    picture->place = QRect(d_free, size);
    d_free.rx() += size.width();
    d_row_height = std::max(d_row_height, size.height());
    return true;
}

void TLabelAtlas::Copy_Boxes(QPainter* painter) const
{
    QVector<QPainter::PixmapFragment> fragments; // all from one sheet
    for (auto box = d_boxes.begin(); box != d_boxes.end(); ++box) {
        const TPicture& picture = box->picture;
        if (picture.sheet < 0) {
            Paint_Box(painter, *box);
            continue;
        }
        const QPointF middle = box->corner + QPointF(picture.place.width(), picture.place.height()) / 2.0;
        fragments.append(QPainter::PixmapFragment::create(middle, picture.place));
        if (box + 1 == d_boxes.end() || (box + 1)->picture.sheet != picture.sheet) {
            painter->drawPixmapFragments(fragments.constData(), fragments.size(),
                                         d_sheets[static_cast<size_t>(picture.sheet)]);
            fragments.clear();
        }
    }
}

void TLabelAtlas::Paint_Box(QPainter* painter, const TBox& box) const
{
    const QRect rect(QPoint(), box.picture.size);
    painter->save();
    painter->translate(box.corner);
    painter->scale(d_ratio, d_ratio);
    painter->fillRect(rect, QColor(224, 224, 224, 160));
    painter->setFont(d_font);
    painter->setPen(Qt::black);
    painter->drawText(rect, Qt::AlignHCenter | Qt::AlignVCenter, Shown(box.name));
    painter->restore();
}

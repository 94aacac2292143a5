// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QHash>
#include <QImage>
#include <QPixmap>
#include <QString>

#include <vector>

class QPainter;

/// Paints names in their boxes. To lay out and paint a text takes far longer than to copy its picture, so
/// each name is painted once, beside others on a sheet, and copied from there in every frame.
class TLabelAtlas
{
public:
    /// Names are cut to this many characters: nobody reads more beside a bar.
    static constexpr int LONGEST_NAME = 200;

    /// Starts a frame for a view of that many logical pixels, `ratio` device pixels to each.
    void Begin(const QSize& view, const QFont& font, double ratio);
    /// Adds the box of a name below and right of a logical pixel.
    void Add(const QString& name, const QPoint& pixel);
    /// Draws all boxes of the frame in their order, each over those before. One device pixel must be one unit
    /// of the painter.
    void Draw(QPainter* painter);

    /// Forgets the names if they are very many. Otherwise they stay: a set often comes again, with another
    /// tolerance.
    void Make_Room();

private:
    struct TPicture
    {
        QSize size;    // of the box in logical pixels
        int sheet{-1}; // on which it is painted, -1 for none
        QRect place;   // on the sheet, in device pixels
    };
    struct TBox
    {
        QString name;
        QPoint corner; // in device pixels
        TPicture picture;
    };

    void Clear();
    TPicture& Measured(const QString& name);
    bool Find_Place(TPicture* picture);
    void Copy_Boxes(QPainter* painter) const;
    void Paint_Box(QPainter* painter, const TBox& box) const;

    QSize d_view;
    QFont d_font;
    double d_ratio{1.0};
    QHash<QString, TPicture> d_pictures;
    std::vector<QPixmap> d_sheets;
    QPoint d_free;             // where on the last sheet the next picture goes
    int d_row_height{0};       // of the row there
    std::vector<TBox> d_boxes; // of the frame
    QImage d_image;            // of the view, for many boxes
};

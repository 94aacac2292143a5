// SPDX-License-Identifier: MIT
#include "graphlegend.h"

#include "graphmapping.h"
#include "graphpainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

// The graph is white on every desktop, so its other colours are fixed as well.
const QColor INK(0x20, 0x20, 0x20);
const QColor FRAME(0x60, 0x60, 0x60);
const QColor GRID(0xdc, 0xdc, 0xdc);
const QColor FINE_GRID(0xf0, 0xf0, 0xf0);

constexpr int TICK_LENGTH = 4;
constexpr int SMALLEST_LETTERS = 8; // pixels

// A room centred on the column `centre`, but moved as little as needed to stay within `band`.
QRect Centred_Within(const QRect& band, int centre, int width)
{
    const int left = std::max(band.left(), std::min(centre - width / 2, band.right() + 1 - width));
    return {left, band.top(), width, band.height()};
}

// One line of text along a band, over `centre` as far as the ends of the band allow.
void Draw_Title(QPainter* painter, TGraphTexts* texts, const QRect& band, int centre, const QString& title)
{
    const int width = texts->Width(*painter, title);
    const QString text = width <= band.width()
                             ? title
                             : painter->fontMetrics().elidedText(title, Qt::ElideRight, band.width());
    texts->Draw(painter, Centred_Within(band, centre, std::min(width, band.width())), Qt::AlignCenter, text);
}

void Draw_Titles(QPainter* painter, TGraphTexts* texts, const TGraphLayout& layout,
                 const TGraphLegend& legend)
{
    const int middle = layout.graph.center().x();
    painter->setPen(INK);

    QRect bottom = layout.horizontal_title;
    bottom.setLeft(legend.cursor_text_width);
    bottom.setRight(layout.widget.right());
    Draw_Title(painter, texts, bottom, middle, legend.horizontal_title);

    painter->save();
    QFont bold = painter->font();
    bold.setBold(true);
    painter->setFont(bold);
    Draw_Title(painter, texts, layout.graph_title, middle, legend.graph_title);
    painter->restore();

    // Turned to the left, so that x runs up the band from its bottom end.
    painter->save();
    painter->rotate(-90.0);
    const int end = layout.vertical_labels.bottom() + 1;
    const QRect upwards(-end, layout.vertical_title.left(), end, layout.vertical_title.width());
    Draw_Title(painter, texts, upwards, -layout.graph.center().y(), legend.vertical_title);
    painter->restore();
}

// Pixels of the label with the most letters, which stands for all.
int Label_Width(const QPainter& painter, TGraphTexts* texts, const std::vector<TGraphTick>& ticks)
{
    QString longest;
    for (const TGraphTick& tick : ticks) {
        if (tick.label.length() > longest.length())
            longest = tick.label;
    }
    return texts->Width(painter, longest);
}

// Letters so much smaller that `width` pixels of text fit into `room`.
void Shrink_Font(QPainter* painter, int width, int room)
{
    QFont font = painter->font();
    if (width <= room)
        return;
    font.setPixelSize(std::max(1, QFontInfo(font).pixelSize() * room / width));
    painter->setFont(font);
}

// Ticks as dense as the labels allow, which may be wider than the cell of their format.
std::vector<TGraphTick> Horizontal_Ticks(const QPainter& painter, TGraphTexts* texts, const TGraphAxis& axis,
                                         const TGraphLabelFormat& format)
{
    const int gap = painter.fontMetrics().averageCharWidth();
    // The cell of a number in full may be wider than the axis, and the number then written otherwise.
    const int third = static_cast<int>(std::abs(axis.end - axis.begin)) / 3;
    for (int spacing = std::min(format.cell.width(), third);;) {
        std::vector<TGraphTick> ticks = Graph_Ticks(axis, format, spacing);
        const int needed = Label_Width(painter, texts, ticks) + gap;
        if (needed <= spacing)
            return ticks;
        spacing = needed;
    }
}

// The labels stand under their ticks; beyond the ends of their row they move inwards. A tick whose label
// would touch the one before is left out.
void Draw_Horizontal_Ticks(QPainter* painter, TGraphTexts* texts, const TGraphLayout& layout,
                           const TGraphAxis& axis, const TGraphLabelFormat& format)
{
    const QRect row = layout.horizontal_labels.adjusted(0, 1 + TICK_LENGTH, 0, 0);
    const int frame = layout.graph.bottom() + 1;
    const std::vector<TGraphTick> ticks = Horizontal_Ticks(*painter, texts, axis, format);
    const int width = Label_Width(*painter, texts, ticks);
    const int gap = painter->fontMetrics().averageCharWidth();
    int taken = row.left();
    for (const TGraphTick& tick : ticks) {
        const int x = qRound(tick.pixel);
        const QLine line(x, layout.graph.top(), x, layout.graph.bottom());
        if (tick.label.isEmpty()) {
            Draw_Straight_Line(painter, line, FINE_GRID);
            continue;
        }
        const bool at_the_end = x - width / 2 < row.left() || x + width / 2 > row.right();
        const QRect room = Centred_Within(row, x, at_the_end ? texts->Width(*painter, tick.label) : width);
        if (room.left() < taken)
            continue;
        taken = room.right() + gap;
        Draw_Straight_Line(painter, line, GRID);
        Draw_Straight_Line(painter, {x, frame, x, frame + TICK_LENGTH}, FRAME);
        texts->Draw(painter, room, Qt::AlignHCenter | Qt::AlignTop, tick.label);
    }
}

void Draw_Vertical_Ticks(QPainter* painter, TGraphTexts* texts, const TGraphLayout& layout,
                         const TGraphAxis& axis, const TGraphLabelFormat& format)
{
    // Some ten lines in a high graph; in a low pane as many labels as find room.
    const double line_height = format.cell.height();
    const double spacing = std::clamp(layout.graph.height() / 10.0, line_height * 1.1, line_height * 3.0);
    const std::vector<TGraphTick> ticks = Graph_Ticks(axis, format, spacing);
    const QRect& column = layout.vertical_labels;
    const int frame = layout.graph.left() - 1;
    const QFont font = painter->font();
    const int height = painter->fontMetrics().height();
    Shrink_Font(painter, Label_Width(*painter, texts, ticks), column.width()); // all of them, or none
    for (const TGraphTick& tick : ticks) {
        const int y = qRound(tick.pixel);
        const bool labelled = !tick.label.isEmpty();
        Draw_Straight_Line(painter, {layout.graph.left(), y, layout.graph.right(), y},
                           labelled ? GRID : FINE_GRID);
        if (!labelled)
            continue;
        Draw_Straight_Line(painter, {frame - TICK_LENGTH, y, frame, y}, FRAME);
        texts->Draw(painter, QRect(column.left(), y - height / 2, column.width(), height),
                    Qt::AlignRight | Qt::AlignVCenter, tick.label);
    }
    painter->setFont(font);
}

// In smaller letters where the wrapped lines would be cut, down to those that can just be read.
void Draw_Empty_Text(QPainter* painter, const QRect& room, const QString& text)
{
    constexpr int FLAGS = Qt::AlignCenter | Qt::TextWordWrap;
    const QFont usual = painter->font();
    QFont font = usual;
    for (int size = QFontInfo(font).pixelSize();
         size > SMALLEST_LETTERS && !room.contains(painter->boundingRect(room, FLAGS, text));) {
        font.setPixelSize(--size);
        painter->setFont(font);
    }
    painter->drawText(room, FLAGS, text);
    painter->setFont(usual);
}

// Just outside the plotting area, where no data can hide it.
void Draw_Frame(QPainter* painter, const QRect& graph)
{
    const QRect frame = graph.adjusted(-1, -1, 1, 1);
    for (const QLine& side :
         {QLine(frame.topLeft(), frame.topRight()), QLine(frame.bottomLeft(), frame.bottomRight()),
          QLine(frame.topLeft(), frame.bottomLeft()), QLine(frame.topRight(), frame.bottomRight())})
        Draw_Straight_Line(painter, side, FRAME);
}

} // namespace

TGraphLayout Graph_Layout(const QSize& size, int line_height)
{
    const int h = line_height;
    const int width = size.width();
    const int height = size.height();
    TGraphLayout layout;
    layout.graph.setCoords(7 * h, 2 * h, width - 2 * h, height - 4 * h);
    layout.vertical_labels.setCoords(2 * h, 0, 6 * h, height - 2 * h);
    layout.vertical_title.setCoords(0, 2 * h, 2 * h, height - 4 * h);
    layout.horizontal_labels.setCoords(6 * h, height - 4 * h, width, height - 2 * h);
    layout.horizontal_title.setCoords(7 * h, height - 2 * h, width - 2 * h, height);
    layout.graph_title.setCoords(7 * h, 0, width, 2 * h);
    layout.widget.setCoords(0, 0, width - 1, height - 1);
    return layout;
}

void Draw_Graph_Legend(QPainter* painter, const TGraphLayout& layout, const TGraphMapping& mapping,
                       const TGraphLegend& legend, TGraphTexts* texts)
{
    if (!layout.graph.isValid())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(INK);
    if (legend.empty) {
        Draw_Empty_Text(painter, layout.graph, legend.empty_text);
    } else {
        Draw_Vertical_Ticks(painter, texts, layout, mapping.vertical, legend.vertical);
        Draw_Horizontal_Ticks(painter, texts, layout, mapping.horizontal, legend.horizontal);
    }
    Draw_Frame(painter, layout.graph);
    Draw_Titles(painter, texts, layout, legend);
    painter->restore();
}

void Draw_Fitted_Text(QPainter* painter, const QRect& room, int alignment, const QString& text)
{
    const QFont font = painter->font();
    Shrink_Font(painter, painter->fontMetrics().horizontalAdvance(text), room.width());
    painter->setPen(INK);
    painter->drawText(room, alignment | Qt::TextSingleLine | Qt::TextDontClip, text);
    painter->setFont(font);
}

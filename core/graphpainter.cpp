// SPDX-License-Identifier: MIT
#include "graphpainter.h"

#include "graphmapping.h"

#include <QLineF>
#include <QPainter>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace
{

// The graph is white on every desktop, so its other colours are fixed as well.
const QColor INK(0x20, 0x20, 0x20);
const QColor FRAME(0x60, 0x60, 0x60);
const QColor GRID(0xdc, 0xdc, 0xdc);
const QColor FINE_GRID(0xf0, 0xf0, 0xf0);

constexpr int TICK_LENGTH = 4;
constexpr int MARKER = 3; // half the size of crosses and squares

// Pixels further away than this cannot be seen, and whole numbers hold them with ease.
constexpr double FAR_AWAY = 1 << 20;

// The pixel that a position lies in. A position that misses the next pixel by no more than the rounding of
// its own arithmetic lies in that one: the upper edge of the data would otherwise be cut off at some heights.
// In this order the comparisons take what is no number to be far away.
int Whole_Pixel(double position)
{
    constexpr double rounding = 1e-7;
    return static_cast<int>(std::max(-FAR_AWAY, std::min(FAR_AWAY, position + rounding)));
}

QPoint Whole_Pixel(const QPointF& position)
{
    return {Whole_Pixel(position.x()), Whole_Pixel(position.y())};
}

bool Is_Drawable(const TVector2& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

bool Is_Near(const QPointF& position)
{
    return std::abs(position.x()) <= FAR_AWAY && std::abs(position.y()) <= FAR_AWAY;
}

// Neither infinite nor so large that the arithmetic of clipping would overflow.
bool Is_Number(const QPointF& position)
{
    return std::abs(position.x()) < 1e300 && std::abs(position.y()) < 1e300;
}

// Narrows the part [first, last] of a segment to where start + part * delta stays within FAR_AWAY.
bool Clip_Part(double start, double delta, double& first, double& last)
{
    if (delta == 0.0)
        return std::abs(start) <= FAR_AWAY;
    const double a = (-FAR_AWAY - start) / delta;
    const double b = (FAR_AWAY - start) / delta;
    first = std::max(first, std::min(a, b));
    last = std::min(last, std::max(a, b));
    return first <= last;
}

// The first point that is not strictly between two corners; `low` and `high` are widened to the y of those
// that are. Values are compared here instead of pixels, which their order allows: a pixel column may hold
// thousands of points. As a function of its own, the loop has the registers for itself.
Q_NEVER_INLINE const TVector2* First_Outside(const TVector2* point, const TVector2* end, const TVector2& from,
                                             const TVector2& to, double& low, double& high)
{
    const double x_from = from.x;
    const double x_to = to.x;
    const double y_from = from.y;
    const double y_to = to.y;
    double least = low;
    double greatest = high;
    for (; point != end; ++point) {
        const double y = point->y;
        if (!(point->x > x_from && point->x < x_to && y > y_from && y < y_to))
            break;
        least = std::min(least, y);
        greatest = std::max(greatest, y);
    }
    low = least;
    high = greatest;
    return point;
}

// The segments of a polyline in whole pixels. What runs up and down within one pixel column becomes a single
// segment: it covers the same pixels. Segments are drawn one by one, for a polyline of the painter loses the
// tips of some spikes.
class TPixelLine
{
public:
    TPixelLine(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points)
        : d_painter(painter), d_mapping(mapping), d_points(points)
    {
        std::tie(d_y_low, d_y_high) = Values_Between(mapping.d_vertical, -0.9 * FAR_AWAY, 0.9 * FAR_AWAY);
    }

    /// Draws all of it. With a translucent colour every segment shows, so that none may be joined.
    void Draw(bool opaque)
    {
        for (size_t i = 0; i < d_points.size();) {
            const QPointF position = d_mapping.Position(d_points[i]);
            if (Is_Near(position)) {
                i = Add_Column(i, position, opaque);
                continue;
            }
            if (Is_Number(position))
                Join(position);
            else
                d_joined = false;
            ++i;
        }
        d_painter.drawLines(d_segments);
    }

private:
    QPainter& d_painter;
    const TGraphMapping& d_mapping;
    const std::vector<TVector2>& d_points;
    QVector<QLine> d_segments;
    QPointF d_last; // the point before, if the next one is joined to it
    bool d_joined{false};
    double d_y_low{0.0}; // y between these is near
    double d_y_high{0.0};

    // Adds the point `first` at `position` and those after it in the same column; returns the next one.
    size_t Add_Column(size_t first, const QPointF& position, bool opaque)
    {
        Join(position);
        const int column = Whole_Pixel(position.x());
        const size_t end = opaque ? d_points.size() : first + 1;
        double low = d_points[first].y;
        double high = low;
        size_t next = first + 1;
        while (next < end) {
            const QPointF candidate = d_mapping.Position(d_points[next]);
            if (!Is_Near(candidate) || Whole_Pixel(candidate.x()) != column)
                break;
            low = std::min(low, d_points[next].y);
            high = std::max(high, d_points[next].y);
            next = Skip_Inside(next + 1, column, low, high);
            d_last = d_mapping.Position(d_points[next - 1]);
        }
        if (next > first + 1)
            d_segments.append({column, Whole_Pixel(d_mapping.d_vertical.Position(low)), column,
                               Whole_Pixel(d_mapping.d_vertical.Position(high))});
        return next;
    }

    // The first point from `next` on that is not safely inside the column. Near the column's edges rounding
    // decides, so that these points are left to the exact mapping.
    size_t Skip_Inside(size_t next, int column, double& low, double& high) const
    {
        const TGraphAxis& axis = d_mapping.d_horizontal;
        const double edge = 1e-6 + 1e-15 * std::abs(axis.d_offset);
        if (column < 1 || edge > 0.25)
            return next;
        const auto [x_low, x_high] = Values_Between(axis, column + edge, column + 1.0 - edge);
        const TVector2* begin = d_points.data();
        const TVector2* stop = First_Outside(begin + next, begin + d_points.size(), {x_low, d_y_low},
                                             {x_high, d_y_high}, low, high);
        return static_cast<size_t>(stop - begin);
    }

    static std::pair<double, double> Values_Between(const TGraphAxis& axis, double first, double second)
    {
        const double a = axis.Value(first);
        const double b = axis.Value(second);
        return {std::min(a, b), std::max(a, b)};
    }

    // The segment from the point before to this one. Where one of them is too far away for whole pixels, only
    // the part that may be seen, so that it keeps its slope.
    void Join(const QPointF& position)
    {
        const QPointF delta = position - d_last;
        double first = 0.0;
        double last = 1.0;
        if (d_joined && Clip_Part(d_last.x(), delta.x(), first, last) &&
            Clip_Part(d_last.y(), delta.y(), first, last))
            d_segments.append({Whole_Pixel(d_last + first * delta),
                               Whole_Pixel(last < 1.0 ? d_last + last * delta : position)});
        d_last = position;
        d_joined = true;
    }
};

// The pixels of all points whose markers reach into `graph`; each but once, unless a translucent colour makes
// markers on top of each other visible.
std::vector<QPoint> Marker_Pixels(const TGraphMapping& mapping, const std::vector<TVector2>& points,
                                  const QRect& graph, bool opaque)
{
    const QRect area = graph.adjusted(-MARKER, -MARKER, MARKER, MARKER);
    std::vector<QPoint> pixels;
    if (!graph.isValid())
        return pixels;
    std::vector<char> taken(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height()), 0);
    for (const TVector2& point : points) {
        if (!Is_Drawable(point))
            continue;
        const QPoint pixel = Whole_Pixel(mapping.Position(point));
        if (!area.contains(pixel))
            continue;
        char& seen = taken[static_cast<size_t>(pixel.y() - area.top()) * static_cast<size_t>(area.width()) +
                           static_cast<size_t>(pixel.x() - area.left())];
        if (seen == 0 || !opaque)
            pixels.push_back(pixel);
        seen = 1;
    }
    return pixels;
}

bool Is_Opaque(const QColor& color)
{
    return color.alpha() == 255;
}

// A room centred on the column `centre`, but moved as little as needed to stay within `band`.
QRect Centred_Within(const QRect& band, int centre, int width)
{
    const int left = std::max(band.left(), std::min(centre - width / 2, band.right() + 1 - width));
    return {left, band.top(), width, band.height()};
}

// One line of text along a band, over `centre` as far as the ends of the band allow.
void Draw_Title(QPainter& painter, const QRect& band, int centre, const QString& title)
{
    const QFontMetrics metrics = painter.fontMetrics();
    QString text = title;
    int width = metrics.horizontalAdvance(text);
    if (width > band.width()) {
        text = metrics.elidedText(title, Qt::ElideRight, band.width());
        width = metrics.horizontalAdvance(text);
    }
    painter.drawText(Centred_Within(band, centre, width), Qt::AlignCenter | Qt::TextDontClip, text);
}

void Draw_Titles(QPainter& painter, const TGraphLayout& layout, const TGraphLegend& legend)
{
    const int middle = layout.graph.center().x();

    QRect bottom = layout.horizontal_title;
    bottom.setLeft(legend.cursor_text_width);
    bottom.setRight(layout.widget.right());
    Draw_Title(painter, bottom, middle, legend.horizontal_title);

    painter.save();
    QFont bold = painter.font();
    bold.setBold(true);
    painter.setFont(bold);
    Draw_Title(painter, layout.graph_title, middle, legend.graph_title);
    painter.restore();

    // Turned to the left: along the band runs upwards from the bottom end.
    painter.save();
    painter.rotate(-90.0);
    const int end = layout.vertical_labels.bottom() + 1;
    const QRect upwards(-end, layout.vertical_title.left(), end, layout.vertical_title.width());
    Draw_Title(painter, upwards, -layout.graph.center().y(), legend.vertical_title);
    painter.restore();
}

struct TPlacedTick
{
    int column;
    QString label;
    QRect room; // of the label
};

// Ticks as dense as the labels allow, which may be wider than the cell of their format. The labels stand in
// `row` centred under their ticks, also beyond its ends.
std::vector<TPlacedTick> Horizontal_Ticks(const QFontMetrics& metrics, const QRect& row,
                                          const TGraphAxis& axis, const TGraphLabelFormat& format)
{
    const int gap = metrics.averageCharWidth();
    for (int spacing = format.cell.width();;) {
        int needed = 0;
        std::vector<TPlacedTick> placed;
        for (const TGraphTick& tick : Graph_Ticks(axis, format, spacing)) {
            const int column = qRound(tick.pixel);
            const int width = metrics.horizontalAdvance(tick.label);
            needed = std::max(needed, width + gap);
            placed.push_back({column, tick.label, {column - width / 2, row.top(), width, row.height()}});
        }
        if (needed <= spacing)
            return placed;
        spacing = needed;
    }
}

// Labels beyond the ends of `row` move inwards. A tick whose label would move into another one goes.
void Move_Labels_Within(const QRect& row, std::vector<TPlacedTick>& ticks)
{
    for (auto tick = ticks.begin(); tick != ticks.end();) {
        const QRect room = Centred_Within(row, tick->column, tick->room.width());
        const bool meets_another = std::any_of(ticks.begin(), ticks.end(), [&](const TPlacedTick& other) {
            return &other != &*tick && other.room.intersects(room);
        });
        if (room != tick->room && meets_another) {
            tick = ticks.erase(tick);
        } else {
            tick->room = room;
            ++tick;
        }
    }
}

void Draw_Horizontal_Ticks(QPainter& painter, const TGraphLayout& layout, const TGraphAxis& axis,
                           const TGraphLabelFormat& format)
{
    const QRect row = layout.horizontal_labels.adjusted(0, 1 + TICK_LENGTH, 0, 0);
    std::vector<TPlacedTick> ticks = Horizontal_Ticks(painter.fontMetrics(), row, axis, format);
    Move_Labels_Within(row, ticks);
    const int frame = layout.graph.bottom() + 1;
    for (const TPlacedTick& tick : ticks) {
        painter.setPen(tick.label.isEmpty() ? FINE_GRID : GRID);
        painter.drawLine(tick.column, layout.graph.top(), tick.column, layout.graph.bottom());
        if (tick.label.isEmpty())
            continue;
        painter.setPen(FRAME);
        painter.drawLine(tick.column, frame, tick.column, frame + TICK_LENGTH);
        painter.setPen(INK);
        painter.drawText(tick.room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextDontClip, tick.label);
    }
}

void Draw_Vertical_Ticks(QPainter& painter, const TGraphLayout& layout, const TGraphAxis& axis,
                         const TGraphLabelFormat& format)
{
    // Some ten lines in a high graph; in a low pane as many labels as find room.
    const double line = format.cell.height();
    const double spacing = std::clamp(layout.graph.height() / 10.0, line * 1.1, line * 3.0);
    const QRect& column = layout.vertical_labels;
    const int frame = layout.graph.left() - 1;
    const int height = painter.fontMetrics().height();
    for (const TGraphTick& tick : Graph_Ticks(axis, format, spacing)) {
        const int y = qRound(tick.pixel);
        painter.setPen(tick.label.isEmpty() ? FINE_GRID : GRID);
        painter.drawLine(layout.graph.left(), y, layout.graph.right(), y);
        if (tick.label.isEmpty())
            continue;
        painter.setPen(FRAME);
        painter.drawLine(frame - TICK_LENGTH, y, frame, y);
        painter.setPen(INK);
        Draw_Fitted_Text(painter, QRect(column.left(), y - height / 2, column.width(), height),
                         Qt::AlignRight | Qt::AlignVCenter, tick.label);
    }
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

void Draw_Graph_Legend(QPainter& painter, const TGraphLayout& layout, const TGraphMapping& mapping,
                       const TGraphLegend& legend)
{
    if (!layout.graph.isValid())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (legend.empty) {
        painter.setPen(INK);
        painter.drawText(layout.graph, Qt::AlignCenter | Qt::TextWordWrap, legend.empty_text);
    } else {
        Draw_Vertical_Ticks(painter, layout, mapping.d_vertical, legend.vertical);
        Draw_Horizontal_Ticks(painter, layout, mapping.d_horizontal, legend.horizontal);
    }

    // Just outside the plotting area, where no data can hide it.
    painter.setPen(FRAME);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(layout.graph.adjusted(-1, -1, 0, 0));

    painter.setPen(INK);
    Draw_Titles(painter, layout, legend);
    painter.restore();
}

void Draw_Fitted_Text(QPainter& painter, const QRect& room, int alignment, const QString& text)
{
    if (text.isEmpty() || room.isEmpty())
        return;
    const QFont font = painter.font();
    const int width = painter.fontMetrics().horizontalAdvance(text);
    if (width > room.width()) {
        QFont smaller = font;
        smaller.setPixelSize(std::max(1, QFontInfo(font).pixelSize() * room.width() / width));
        painter.setFont(smaller);
    }
    painter.setPen(INK);
    painter.drawText(room, alignment | Qt::TextSingleLine | Qt::TextDontClip, text);
    if (width > room.width())
        painter.setFont(font);
}

void Draw_Graph_Line(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                     const QColor& color)
{
    painter.setPen(color);
    TPixelLine(painter, mapping, points).Draw(Is_Opaque(color));
}

void Draw_Graph_Bars(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                     const QColor& color, const TGraphBarWidth& width)
{
    const int zero_row = Whole_Pixel(mapping.d_vertical.Position(0.0));
    for (const TVector2& point : points) {
        if (!Is_Drawable(point))
            continue;
        const QPoint pixel = Whole_Pixel(mapping.Position(point));
        if (pixel.y() == zero_row)
            continue;
        const int top = std::min(pixel.y(), zero_row - 1);
        const int bottom = std::max(pixel.y(), zero_row - 1);
        const auto edge = [&](double x) { return Whole_Pixel(mapping.d_horizontal.Position(x)); };
        const int left = std::max(pixel.x() - width.half, edge(point.x - width.largest / 2.0));
        const int right = std::min(pixel.x() + width.half, edge(point.x + width.largest / 2.0));
        painter.fillRect(left, top, std::max(1, right - left), bottom - top + 1, color);
    }
}

void Draw_Graph_Crosses(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                        const QColor& color, const QRect& graph)
{
    QVector<QLine> strokes;
    for (const QPoint& p : Marker_Pixels(mapping, points, graph, Is_Opaque(color))) {
        strokes.append({p.x() - MARKER, p.y() - MARKER, p.x() + MARKER, p.y() + MARKER});
        strokes.append({p.x() - MARKER, p.y() + MARKER, p.x() + MARKER, p.y() - MARKER});
    }
    painter.setPen(color);
    painter.drawLines(strokes);
}

void Draw_Graph_Squares(QPainter& painter, const TGraphMapping& mapping, const std::vector<TVector2>& points,
                        const QColor& color, const QRect& graph)
{
    for (const QPoint& p : Marker_Pixels(mapping, points, graph, Is_Opaque(color)))
        painter.fillRect(p.x() - MARKER, p.y() - MARKER, 2 * MARKER, 2 * MARKER, color);
}

// SPDX-License-Identifier: MIT
#include "graphpainter.h"

#include "graphmapping.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

// The paint engine's fills leave the upper halves of the processor's AVX registers in use. SSE instructions,
// which know no such halves, then wait for them at each step and take several times as long. So the loop over
// the points is compiled for AVX, too.
#if defined(__x86_64__)
#define WIDE_REGISTERS __attribute__((target_clones("avx", "default")))
#else
#define WIDE_REGISTERS
#endif

namespace
{

constexpr int MARKER = 3; // half the size of crosses and squares

// Pixels further away than this cannot be seen, and whole numbers hold them with ease.
constexpr double FAR_AWAY = 1 << 20;

// Positions beyond this would overflow while they are clipped. They count as infinite.
constexpr double INFINITELY_FAR = 1e300;

// The pixel of a position, rounded towards zero. What is no number lies far away: std::min and std::max keep
// their first argument when the second one is none.
int Whole_Pixel(double position)
{
    return static_cast<int>(std::max(-FAR_AWAY, std::min(FAR_AWAY, position)));
}

QPoint Whole_Pixel(const QPointF& position)
{
    return {Whole_Pixel(position.x()), Whole_Pixel(position.y())};
}

bool Is_Drawable(const QPointF& position)
{
    return std::abs(position.x()) < INFINITELY_FAR && std::abs(position.y()) < INFINITELY_FAR;
}

// Narrows the part [first, last] of a segment to where start + part * delta stays within FAR_AWAY, as the
// algorithm of Liang and Barsky clips each coordinate.
void Clip_Part(double start, double delta, double* first, double* last)
{
    const double a = (-FAR_AWAY - start) / delta;
    const double b = (FAR_AWAY - start) / delta;
    *first = std::max(*first, std::min(a, b));
    *last = std::min(*last, std::max(a, b));
}

// Adds the segment between two positions. Where one of them is too far away for whole pixels, the part that
// may be seen, so that it keeps its slope.
void Append_Segment(QVector<QLine>* segments, const QPointF& from, const QPointF& to)
{
    const QPointF delta = to - from;
    double first = 0.0;
    double last = 1.0;
    Clip_Part(from.x(), delta.x(), &first, &last);
    Clip_Part(from.y(), delta.y(), &first, &last);
    if (first <= last)
        segments->append(
            {Whole_Pixel(from + first * delta), Whole_Pixel(last < 1.0 ? from + last * delta : to)});
}

struct THeights
{
    double low{0.0};
    double high{0.0};

    void Add(double y)
    {
        low = std::min(low, y);
        high = std::max(high, y);
    }
};

// Adds the heights of the points that lie between `least` and `greatest`, from the point `next` on, in pairs;
// returns the first one not added. Each comparison of a height waits for the one before it: two rows of them,
// of one half of the points each, take half the time.
WIDE_REGISTERS size_t Add_Pairs(const std::vector<TVector2>& points, size_t next, const TVector2& least,
                                const TVector2& greatest, THeights* heights)
{
    const auto lies_between = [from = least, to = greatest](const TVector2& p) {
        return p.x > from.x && p.x < to.x && p.y > from.y && p.y < to.y;
    };
    const size_t count = points.size();
    const TVector2* const data = points.data();
    THeights even = *heights;
    THeights odd = even;
    size_t i = next;
    for (; i + 1 < count && lies_between(data[i]) && lies_between(data[i + 1]); i += 2) {
        even.Add(data[i].y);
        odd.Add(data[i + 1].y);
    }
    *heights = {std::min(even.low, odd.low), std::max(even.high, odd.high)};
    return i;
}

} // namespace

void Draw_Straight_Line(QPainter* painter, const QLine& line, const QColor& color)
{
    // A pen covers half a pixel to both sides, which shows where pixels of the device are smaller.
    painter->fillRect(QRectF(line.x1() - 0.5, line.y1() - 0.5, line.dx() + 1, line.dy() + 1), color);
}

// The points of a polyline that follow each other in one column of pixels: together they are one line from
// the lowest to the highest, however many they are.
struct TGraphPainter::TColumn
{
    int pixel{-1};
    THeights heights;  // y of its points
    TVector2 least;    // points between these two lie in it,
    TVector2 greatest; // and others at its edges may
    bool several{false};

    void Add(double y)
    {
        heights.Add(y);
        several = true;
    }

    // Adds what lies between `least` and `greatest` from the point `next` on, in pairs; returns the first one
    // not added.
    size_t Add_Pairs(const std::vector<TVector2>& points, size_t next)
    {
        const size_t end = ::Add_Pairs(points, next, least, greatest, &heights);
        several |= end != next;
        return end;
    }
};

// All that lies to one side of the plotting area counts as one column.
int TGraphPainter::Column_Pixel(double x) const
{
    return std::clamp(Whole_Pixel(x), d_graph.left() - 1, d_graph.right() + 1);
}

// With a translucent colour every segment shows, so that no column holds more than its first point.
TGraphPainter::TColumn TGraphPainter::Column_Of(const TVector2& point, int pixel) const
{
    constexpr double EDGE = 1e-4;
    TColumn column;
    column.pixel = pixel;
    column.heights = {point.y, point.y};
    const double left = pixel < d_graph.left() ? -FAR_AWAY : pixel + EDGE;
    const double right = pixel > d_graph.right() ? FAR_AWAY : pixel + 1.0 - EDGE;
    const TVector2 least = d_mapping.Value({left, FAR_AWAY});
    const TVector2 greatest = d_mapping.Value({right, -FAR_AWAY});
    // Rounding may be worse than the edge, but it keeps the order of what is between.
    if (d_opaque && Column_Pixel(d_mapping.Position(least).x()) == pixel &&
        Column_Pixel(d_mapping.Position(greatest).x()) == pixel) {
        column.least = least;
        column.greatest = greatest;
    }
    return column;
}

// Adds the line of a column that can be seen.
void TGraphPainter::Append_Column(QVector<QLine>* columns, const TColumn& column) const
{
    const auto row = [this](double y) { return Whole_Pixel(d_mapping.vertical.Position(y)); };
    if (column.several && column.pixel >= d_graph.left() && column.pixel <= d_graph.right())
        columns->append({column.pixel, row(column.heights.high), column.pixel, row(column.heights.low)});
}

// Only the segments from column to column are left to the pen. They are drawn one by one, because its
// polyline loses the tips of spikes. All points are read before the first fill, which would slow their
// reading down.
void TGraphPainter::Draw_Line(const std::vector<TVector2>& points)
{
    QVector<QLine> columns;
    QVector<QLine> segments;
    TColumn column;
    for (size_t i = 0; i < points.size(); i = column.Add_Pairs(points, i + 1)) {
        const QPointF position = d_mapping.Position(points[i]);
        const int pixel = Is_Drawable(position) ? Column_Pixel(position.x()) : -1;
        if (pixel == column.pixel && d_opaque) {
            column.Add(points[i].y);
            continue;
        }
        Append_Column(&columns, column);
        if (column.pixel >= 0 && pixel >= 0)
            Append_Segment(&segments, d_mapping.Position(points[i - 1]), position);
        column = pixel >= 0 ? Column_Of(points[i], pixel) : TColumn();
    }
    Append_Column(&columns, column);
    for (const QLine& line : qAsConst(columns))
        Draw_Straight_Line(d_painter, line, d_color);
    d_painter->setPen(d_color);
    d_painter->drawLines(segments);
}

void TGraphPainter::Draw_Bars(const std::vector<TVector2>& points, int half_width, double largest_width)
{
    const auto edge = [this](double x) { return Whole_Pixel(d_mapping.horizontal.Position(x)); };
    const double reach = std::max(0.0, largest_width) / 2.0;
    const int zero_row = Whole_Pixel(d_mapping.vertical.Position(0.0));
    for (const TVector2& point : points) {
        const QPoint pixel = Whole_Pixel(d_mapping.Position(point));
        if (!std::isfinite(point.x) || !std::isfinite(point.y) || pixel.y() == zero_row)
            continue;
        const int left = std::max(pixel.x() - half_width, edge(point.x - reach));
        const int right = std::min(pixel.x() + half_width, edge(point.x + reach));
        const int top = std::min(pixel.y(), zero_row - 1);
        const int bottom = std::max(pixel.y(), zero_row - 1);
        d_painter->fillRect(left, top, std::max(1, right - left), bottom - top + 1, d_color);
    }
}

// Where the markers that reach into the plotting area stand.
struct TGraphPainter::TMarkers
{
    QRect area;
    std::vector<char> marked;   // for each pixel of the area, row by row
    std::vector<QPoint> pixels; // each but once, unless a translucent colour makes all of them visible

    explicit TMarkers(const QRect& graph) : area(graph.adjusted(-MARKER, -MARKER, MARKER, MARKER))
    {
        marked.resize(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height()));
    }
    char* Row(int y) { return marked.data() + static_cast<ptrdiff_t>(y - area.top()) * area.width(); }
};

TGraphPainter::TMarkers TGraphPainter::Markers(const std::vector<TVector2>& points) const
{
    TMarkers markers(d_graph);
    for (const TVector2& point : points) {
        const QPoint pixel = Whole_Pixel(d_mapping.Position(point));
        if (!markers.area.contains(pixel))
            continue;
        char& marked = markers.Row(pixel.y())[pixel.x() - markers.area.left()];
        if (marked == 0 || !d_opaque)
            markers.pixels.push_back(pixel);
        marked = 1;
    }
    return markers;
}

void TGraphPainter::Draw_Crosses(const std::vector<TVector2>& points)
{
    QVector<QLine> strokes;
    for (const QPoint& p : Markers(points).pixels) {
        strokes.append({p.x() - MARKER, p.y() - MARKER, p.x() + MARKER, p.y() + MARKER});
        strokes.append({p.x() - MARKER, p.y() + MARKER, p.x() + MARKER, p.y() - MARKER});
    }
    d_painter->setPen(d_color);
    d_painter->drawLines(strokes);
}

void TGraphPainter::Draw_Squares(const std::vector<TVector2>& points)
{
    TMarkers markers = Markers(points);
    constexpr auto SIDE = size_t{2} * MARKER;
    const size_t squares_that_fit = markers.marked.size() / (SIDE * SIDE);
    if (d_opaque && markers.pixels.size() > squares_that_fit)
        return Fill_Squares_By_Rows(&markers);
    for (const QPoint& p : markers.pixels)
        d_painter->fillRect(p.x() - MARKER, p.y() - MARKER, 2 * MARKER, 2 * MARKER, d_color);
}

// Fills every pixel but once, in runs over all squares that touch each other in one row.
void TGraphPainter::Fill_Squares_By_Rows(TMarkers* markers)
{
    const int first = markers->area.left() - MARKER;
    std::vector<int> rows_left(static_cast<size_t>(markers->area.width())); // that a square still covers
    for (int y = markers->area.top(); y <= markers->area.bottom(); ++y) {
        const char* marked = markers->Row(y);
        int begin = 0;
        int end = 0;
        const auto fill = [&] { d_painter->fillRect(first + begin, y - MARKER, end - begin, 1, d_color); };
        for (int x = 0; x < markers->area.width(); ++x) {
            int& rows = rows_left[static_cast<size_t>(x)];
            rows = marked[x] != 0 ? 2 * MARKER : std::max(0, rows - 1);
            if (rows == 0)
                continue;
            if (x > end) {
                fill();
                begin = x;
            }
            end = x + 2 * MARKER;
        }
        fill();
    }
}

// SPDX-License-Identifier: MIT
#include "graphwidget.h"

#include "graphpainter.h"
#include "numbers.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

// Width and height of a box together. A drag of no more than this is an unsteady click.
constexpr int LARGEST_CLICK = 19;

QString Cursor_Text(const TVector2& value)
{
    return QStringLiteral("%1,   %2").arg(Fixed(value.x, 5), Fixed(value.y, 5));
}

// The style that a set is drawn in.
int Resolved_Type(int type, int default_type)
{
    if (type != TGraphWidget::GRAPH_DEFAULT)
        return type;
    return default_type == TGraphWidget::GRAPH_DEFAULT ? TGraphWidget::GRAPH_LINE : default_type;
}

QPoint Rounded(const QPointF& position)
{
    return {static_cast<int>(std::lround(position.x())), static_cast<int>(std::lround(position.y()))};
}

// The rectangle that the outline of a box between two corners runs round, one pixel beyond the lower right.
QRect Outline(const QRect& box)
{
    return {QPoint(std::min(box.left(), box.right()), std::min(box.top(), box.bottom())),
            QPoint(std::max(box.left(), box.right()) + 1, std::max(box.top(), box.bottom()) + 1)};
}

void Measure_Cell(TGraphLabelFormat* format, const QPainter& painter)
{
    format->cell = painter.fontMetrics().size(0, format->Label(-0.5)).expandedTo(QSize(1, 1));
}

} // namespace

TGraphWidget::TGraphWidget(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), d_vertical_title(tr("V Title")), d_horizontal_title(tr("H Title")),
      d_graph_title(tr("Sample Graph")), d_cursor_position_text(Cursor_Text({0.0, 0.0}))
{
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
}

int TGraphWidget::CreateDataSet(const QColor& color, TGraphType type)
{
    d_data_sets.push_back({{}, color, type});
    return static_cast<int>(d_data_sets.size()) - 1;
}

const std::vector<TVector2>& TGraphWidget::Points_Of_Set(int set) const
{
    assert(set < static_cast<int>(d_data_sets.size()));
    return d_data_sets[static_cast<size_t>(set)].dataset_points;
}

std::vector<TVector2>& TGraphWidget::Changing_Points(int set)
{
    assert(set < static_cast<int>(d_data_sets.size()));
    d_range.reset();
    return d_data_sets[static_cast<size_t>(set)].dataset_points;
}

// The assertion speaks of the set as its callers do.
std::ptrdiff_t TGraphWidget::Point_Offset(int set_number, int index) const
{
    const auto set = static_cast<size_t>(set_number);
    assert(index < static_cast<int>(d_data_sets[set].dataset_points.size()));
    return index;
}

bool TGraphWidget::AddPoint(int set, const TVector2& point)
{
    Changing_Points(set).push_back(point);
    return true;
}

bool TGraphWidget::AddPoints(int set, const std::vector<TVector2>& points)
{
    std::vector<TVector2>& all = Changing_Points(set);
    all.insert(all.end(), points.begin(), points.end());
    return true;
}

bool TGraphWidget::SetPoints(int set, const std::vector<TVector2>& points)
{
    Changing_Points(set) = points;
    return true;
}

bool TGraphWidget::ModifyPoint(int set, int index, const TVector2& point)
{
    std::vector<TVector2>& points = Changing_Points(set);
    points.begin()[Point_Offset(set, index)] = point;
    return true;
}

bool TGraphWidget::DeletePoint(int set, int index)
{
    std::vector<TVector2>& points = Changing_Points(set);
    points.erase(points.begin() + Point_Offset(set, index));
    return true;
}

bool TGraphWidget::DeletePoints(int set)
{
    Changing_Points(set).clear();
    return true;
}

bool TGraphWidget::DeleteDataSet(int index)
{
    assert(index < static_cast<int>(d_data_sets.size()));
    d_data_sets.erase(d_data_sets.begin() + index);
    d_range.reset();
    return true;
}

void TGraphWidget::DeleteDataSets()
{
    d_data_sets.clear();
    d_range.reset();
}

TVector2 TGraphWidget::GetPoint(int set, int index) const
{
    const std::vector<TVector2>& points = Points_Of_Set(set);
    return points.begin()[Point_Offset(set, index)];
}

int TGraphWidget::DataSetSize(int set) const
{
    return static_cast<int>(Points_Of_Set(set).size());
}

void TGraphWidget::SetScaleMinimumY(const double& minimum, bool symmetric)
{
    d_y_scale_minimum = minimum > 0.0 ? minimum : TGraphScaling::DEFAULT_Y_MINIMUM;
    d_y_scale_symmetric = symmetric;
}

void TGraphWidget::EnableYIncludesZero(bool state)
{
    d_y_includes_zero = state;
}

void TGraphWidget::ScaleToFit()
{
    d_scale_to_fit = true;
    update();
}

void TGraphWidget::ZoomOut()
{
    d_zoom_out = true;
    update();
}

void TGraphWidget::UpdateGraph()
{
    Draw_Background_Pixmap();
    update();
}

void TGraphWidget::Update_Viewport_To_Data()
{
    Fit_To_Data(&d_view);
}

void TGraphWidget::Fit_To_Data(TView* view) const
{
    TGraphScaling scaling;
    scaling.horizontal_type = d_horizontal_scale_type;
    scaling.vertical_type = d_vertical_scale_type;
    scaling.bars = d_default_graph_type == GRAPH_BAR;
    scaling.y_includes_zero = d_y_includes_zero;
    scaling.y_symmetric = d_y_scale_symmetric;
    scaling.lock_aspect = d_lock_aspect;
    scaling.y_minimum = d_y_scale_minimum;
    view->mapping.Fit_To_Data(Data_Range(), scaling, view->layout.graph);
}

void TGraphWidget::Update_Viewport_To_Rect(const QRect& rect)
{
    d_view.mapping.Fit_To_Rect(rect, true);
}

void TGraphWidget::Calculate_Legend_Display_Precision(const QPainter& painter)
{
    Choose_Label_Formats(painter, &d_view);
}

void TGraphWidget::Choose_Label_Formats(const QPainter& painter, TView* view) const
{
    const TVector2 low = view->mapping.Value(view->layout.graph.bottomLeft());
    const TVector2 high = view->mapping.Value(view->layout.graph.topRight());
    TGraphLegend& legend = view->legend;
    legend.horizontal =
        Graph_Label_Format(QStringLiteral("  %1  "), d_horizontal_scale_type, low.x, high.x, 8);
    legend.vertical = Graph_Label_Format(QStringLiteral("  %1"), d_vertical_scale_type, low.y, high.y, 6);
    Measure_Cell(&legend.horizontal, painter);
    Measure_Cell(&legend.vertical, painter);
}

// Draws the present view as a picture of that size at the origin of the painter.
void TGraphWidget::Draw(QPainter* painter, const QSize& size) const
{
    TView view;
    view.layout = Graph_Layout(size, painter->fontMetrics().height());
    const bool never_shown = !d_view.layout.widget.isValid();
    if (d_direct_render || d_scale_to_fit || never_shown)
        Fit_To_Data(&view);
    else
        view.mapping = d_view.mapping.Moved_To(view.layout.graph);
    Draw_View(painter, view.layout.widget, &view);
}

bool TGraphWidget::Paint_To(QPaintDevice* device) const
{
    QPainter painter;
    if (!painter.begin(device))
        return false;
    // Letters sized in pixels follow the painter's scale; sized in points, they would be scaled twice.
    QFont pixel_font = font();
    pixel_font.setPixelSize(QFontInfo(font()).pixelSize());
    painter.setFont(pixel_font);

    const double scale = static_cast<double>(device->logicalDpiX()) / logicalDpiX();
    const double ratio = device->devType() == QInternal::Widget ? 1.0 : device->devicePixelRatioF();
    QSize room(qRound(device->width() / (scale * ratio)), qRound(device->height() / (scale * ratio)));
    if (room.isEmpty())
        room = size();
    painter.scale(scale, scale);
    Draw(&painter, room);
    return painter.end();
}

bool TGraphWidget::GenerateRGBColor(int index, int* red, int* green, int* blue)
{
    static constexpr int INTENSITIES[]{255, 128, 192, 64,  160, 224, 96, 32, 144,
                                       112, 176, 80,  208, 48,  240, 16, 0};
    static constexpr int ENABLED[6][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0}, {0, 1, 1}, {1, 0, 1}};
    if (index < 0 || index > 96) {
        *red = *green = *blue = 0;
        return false;
    }
    const int intensity = INTENSITIES[index / 6];
    const int* enabled = ENABLED[index % 6];
    *red = enabled[0] * intensity;
    *green = enabled[1] * intensity / 2; // a full green is hard to see on white
    *blue = enabled[2] * intensity;
    return true;
}

void TGraphWidget::mousePressEvent(QMouseEvent* event)
{
    const QPoint pointer = Rounded(event->localPos());
    if (event->button() == Qt::LeftButton) {
        const QRect& graph = d_view.layout.graph;
        const QPoint corner = graph.contains(pointer) ? pointer : graph.topLeft();
        d_left_down_box = QRect(corner, corner);
        d_left_button_down = true;
        d_left_down_box_active = false;
    } else if (event->button() == Qt::RightButton) {
        d_left_down_box = QRect(pointer, pointer);
        d_right_button_down = true;
        d_right_button_dragged = false;
    } else {
        QWidget::mousePressEvent(event);
    }
}

void TGraphWidget::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint pointer = Rounded(event->localPos());
    if (event->buttons() & Qt::LeftButton) {
        if (d_left_button_down)
            Drag_Left_Down_Box(pointer);
    } else if (event->buttons() & Qt::RightButton) {
        if (d_right_button_down)
            Pan(pointer);
        d_right_button_dragged = true;
    } else {
        Hover(pointer);
    }
}

void TGraphWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        Release_Left(Rounded(event->localPos()));
        d_left_button_down = false;
    } else if (event->button() == Qt::RightButton) {
        if (!d_right_button_dragged)
            ZoomOut();
        d_right_button_dragged = false;
        d_right_button_down = false;
    } else {
        QWidget::mouseReleaseEvent(event);
    }
}

void TGraphWidget::Drag_Left_Down_Box(const QPoint& pointer)
{
    if (d_left_down_box_active)
        Update_Left_Down_Box();
    d_left_down_box_active = true;
    d_left_down_box_visible = true;
    d_left_down_box.setBottomRight(pointer);
    Update_Left_Down_Box();
}

// Only the outline: behind it there may be a picture that takes long to paint.
void TGraphWidget::Update_Left_Down_Box()
{
    const QRect outline = Outline(d_left_down_box);
    QRegion edges(outline.left(), outline.top(), 1, outline.height());
    edges += QRect(outline.left(), outline.top(), outline.width(), 1);
    edges += QRect(outline.right(), outline.top(), 1, outline.height());
    edges += QRect(outline.left(), outline.bottom(), outline.width(), 1);
    update(edges);
}

void TGraphWidget::Pan(const QPoint& pointer)
{
    const QPoint moved = d_left_down_box.topLeft() - pointer;
    d_left_down_box.setTopLeft(pointer);
    Zoom_Background_Pixmap(d_view.layout.graph.translated(moved));
    repaint();
}

void TGraphWidget::Hover(const QPoint& pointer)
{
    if (!d_show_cursor_position || !d_view.layout.graph.contains(pointer)) {
        unsetCursor();
        return;
    }
    setCursor(Qt::CrossCursor);
    d_cursor_position_text = Cursor_Text(d_view.mapping.Value(pointer));
    update(0, d_view.layout.horizontal_title.top(), width(), d_view.layout.horizontal_title.height());
}

void TGraphWidget::Release_Left(const QPoint& pointer)
{
    const int size = std::abs(d_left_down_box.right() - d_left_down_box.left()) +
                     std::abs(d_left_down_box.bottom() - d_left_down_box.top());
    const bool zoom = d_left_down_box_active && size > LARGEST_CLICK;
    d_left_down_box_active = false;
    Update_Left_Down_Box(); // it goes in both cases
    if (zoom) {
        d_left_down_box_visible = false;
        Zoom_Background_Pixmap(d_left_down_box);
        repaint();
    } else {
        const TVector2 value = d_view.mapping.Value(pointer);
        emit Mouse_Click(value.x, value.y);
    }
}

void TGraphWidget::paintEvent(QPaintEvent* event)
{
    if (!d_direct_render && (d_scale_to_fit || d_zoom_out)) {
        Answer_Requests();
        if (!event->rect().contains(rect()))
            update();
    }
    QPainter painter(this);
    if (d_direct_render) {
        Update_Viewport_To_Data();
        Draw_View(&painter, rect(), &d_view);
    } else {
        painter.drawPixmap(0, 0, d_background);
        Draw_Left_Down_Box(&painter);
    }
    if (d_show_cursor_position)
        Draw_Cursor_Text(&painter);
}

void TGraphWidget::resizeEvent(QResizeEvent*)
{
    Update_Layout();
}

void TGraphWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        Update_Layout();
        update();
    }
}

const TGraphRange& TGraphWidget::Data_Range() const
{
    if (!d_range) {
        d_range.emplace();
        for (const TDataSet& set : d_data_sets)
            d_range->Add(set.dataset_points);
    }
    return *d_range;
}

void TGraphWidget::Update_Layout()
{
    d_view.layout = Graph_Layout(size(), fontMetrics().height());
    Draw_Background_Pixmap();
}

void TGraphWidget::Draw_Background_Pixmap()
{
    if (!d_view.layout.widget.isValid()) {
        d_background = QPixmap();
        return;
    }
    Update_Viewport_To_Data();
    Render_Background();
}

void TGraphWidget::Zoom_Background_Pixmap(const QRect& rect)
{
    if (d_background.isNull())
        return;
    d_view.mapping.Fit_To_Rect(rect, false);
    Render_Background();
}

void TGraphWidget::Render_Background()
{
    // Up to the last pixel of the device, of which the widget may cover but a part.
    d_background = QPixmap(qCeil(width() * devicePixelRatioF()), qCeil(height() * devicePixelRatioF()));
    d_background.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(&d_background);
    painter.setFont(font());
    Draw_View(&painter, rect().adjusted(0, 0, 1, 1), &d_view);
}

void TGraphWidget::Answer_Requests()
{
    if (d_scale_to_fit)
        Draw_Background_Pixmap();
    if (d_zoom_out) {
        QRect view(QPoint(), d_view.layout.graph.size() * 2);
        view.moveCenter(d_view.layout.graph.center());
        Zoom_Background_Pixmap(view);
    }
    d_scale_to_fit = false;
    d_zoom_out = false;
}

// Room for the longest of the texts at the corners of the view, but at most half of the width.
int TGraphWidget::Cursor_Text_Width(const QPainter& painter, const TView& view) const
{
    const auto longer = [](double a, double b) {
        return Fixed(a, 5).length() < Fixed(b, 5).length() ? b : a;
    };
    const TVector2 low = view.mapping.Value(view.layout.graph.bottomLeft());
    const TVector2 high = view.mapping.Value(view.layout.graph.topRight());
    const QString text = Cursor_Text({longer(low.x, high.x), longer(low.y, high.y)});
    const int width = painter.fontMetrics().horizontalAdvance(QStringLiteral("  %1  ").arg(text));
    return std::min(width, view.layout.widget.width() / 2);
}

// Fills the area and draws the view into it.
void TGraphWidget::Draw_View(QPainter* painter, const QRect& area, TView* view) const
{
    painter->fillRect(area, Qt::white);
    Draw_Legend(painter, view);
    Draw_Data(painter, *view);
}

void TGraphWidget::Draw_Legend(QPainter* painter, TView* view) const
{
    Choose_Label_Formats(*painter, view);
    TGraphLegend& legend = view->legend;
    legend.vertical_title = d_vertical_title;
    legend.horizontal_title = d_horizontal_title;
    legend.graph_title = d_graph_title;
    legend.empty = Data_Range().empty;
    legend.empty_text = d_empty_text;
    legend.cursor_text_width = d_show_cursor_position ? Cursor_Text_Width(*painter, *view) : 0;
    Draw_Graph_Legend(painter, view->layout, view->mapping, legend, &d_texts);
}

void TGraphWidget::Draw_Data(QPainter* painter, const TView& view) const
{
    if (!view.layout.graph.isValid())
        return;
    painter->save();
    painter->setClipRect(view.layout.graph, Qt::IntersectClip);
    for (const TDataSet& set : d_data_sets)
        Draw_Data_Set(painter, view, set);
    painter->restore();
}

void TGraphWidget::Draw_Data_Set(QPainter* painter, const TView& view, const TDataSet& set) const
{
    const std::vector<TVector2>& points = set.dataset_points;
    if (points.empty())
        return;
    const QRect& graph = view.layout.graph;
    TGraphPainter graph_painter(painter, view.mapping, graph, set.dataset_color);
    switch (Resolved_Type(set.dataset_type, d_default_graph_type)) {
    case GRAPH_LINE:
        graph_painter.Draw_Line(points);
        break;
    case GRAPH_BAR: {
        const int parts = d_horizontal_scale_type == GRAPH_SCALE_LOG10 ? 4 : 2;
        const int room = graph.width() / (parts * static_cast<int>(points.size()));
        graph_painter.Draw_Bars(points, std::max(1, room - 1), d_largest_bar_width);
        break;
    }
    case GRAPH_CROSS:
        graph_painter.Draw_Crosses(points);
        break;
    case GRAPH_POINT:
        graph_painter.Draw_Squares(points);
        break;
    default:
        break;
    }
}

void TGraphWidget::Draw_Cursor_Text(QPainter* painter) const
{
    if (!d_view.layout.graph.isValid())
        return;
    const int margin = painter->fontMetrics().horizontalAdvance(QStringLiteral("  "));
    const QRect& row = d_view.layout.horizontal_title;
    const QRect room(margin, row.top(), d_view.legend.cursor_text_width - 2 * margin, row.height());
    Draw_Fitted_Text(painter, room, Qt::AlignLeft | Qt::AlignVCenter, d_cursor_position_text);
}

void TGraphWidget::Draw_Left_Down_Box(QPainter* painter) const
{
    if (!d_left_down_box_visible || !d_left_down_box_active)
        return;
    // Dashes of four pixels and gaps of two, within the strips that Update_Left_Down_Box repaints.
    const QRect box = Outline(d_left_down_box);
    for (int x = box.left(); x <= box.right(); x += 6) {
        for (const int y : {box.top(), box.bottom()})
            painter->fillRect(x, y, std::min(4, box.right() - x + 1), 1, Qt::black);
    }
    for (int y = box.top(); y <= box.bottom(); y += 6) {
        for (const int x : {box.left(), box.right()})
            painter->fillRect(x, y, 1, std::min(4, box.bottom() - y + 1), Qt::black);
    }
}

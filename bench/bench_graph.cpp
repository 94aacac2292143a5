// SPDX-License-Identifier: MIT
// Draws the same data with the graph widget, with bare painter calls, with Qwt and with QCustomPlot, each at
// the same size, and prints the best times in milliseconds.
#include "graphwidget.h"
#include "ratio.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <qcustomplot.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_histogram.h>
#include <qwt_symbol.h>

#include <cmath>
#include <memory>
#include <random>

namespace
{

using Points = std::vector<TVector2>;
using Draw = std::function<QImage()>;

const QSize SIZE(900, 500);
constexpr double LENGTH = 900.0;
constexpr double BIN = 0.004;
const double COUNTS[] = {1, 3, 4, 7, 9, 6, 3, 2, 1};
const Points BAND{{LENGTH + BIN, 0}, {LENGTH + BIN, 10}, {LENGTH + 6 * BIN, 10}, {LENGTH + 6 * BIN, 0}};

void Compare(const char* name, double goal, int rounds, const Draw& ours, const Draw& reference)
{
    const TComparison times(rounds, ours, reference);
    Print_Ratio(name, times.ours * 1e3, times.reference * 1e3, goal);
}

QImage Picture_Of(QWidget& widget)
{
    QImage picture(SIZE, QImage::Format_RGB32);
    QPainter painter(&picture);
    widget.render(&painter);
    return picture;
}

template<typename TWidget> std::unique_ptr<TWidget> Shown(std::unique_ptr<TWidget> widget)
{
    widget->resize(SIZE);
    widget->show();
    QApplication::processEvents();
    return widget;
}

// A slow wave with noise on it, as a probe's signal over time.
Points Signal(int count)
{
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, 0.1);
    Points points;
    for (int i = 0; i < count; ++i)
        points.push_back({i * 1000.0 / count, std::sin(i * 20.0 / count) + noise(random)});
    return points;
}

QVector<double> Component(const Points& points, int index)
{
    QVector<double> values;
    for (const TVector2& point : points)
        values.append(point(index));
    return values;
}

// ---- the widget

std::unique_ptr<TGraphWidget> Our_Histogram()
{
    auto graph = std::make_unique<TGraphWidget>();
    graph->d_default_graph_type = TGraphWidget::GRAPH_BAR;
    graph->d_vertical_scale_type = GRAPH_SCALE_LINEAR;
    graph->d_direct_render = true;
    graph->CreateDataSet(Qt::blue, TGraphWidget::GRAPH_DEFAULT);
    graph->AddPoint(0, {LENGTH + 4 * BIN, 0});
    for (int bin = 0; bin < 9; ++bin)
        graph->AddPoint(0, {LENGTH + bin * BIN, COUNTS[bin]});
    graph->CreateDataSet(Qt::red, TGraphWidget::GRAPH_LINE);
    graph->AddPoints(1, BAND);
    return Shown(std::move(graph));
}

std::unique_ptr<TGraphWidget> Our_Points(const Points& points, TGraphWidget::TGraphType type)
{
    auto graph = std::make_unique<TGraphWidget>();
    graph->d_direct_render = true;
    graph->CreateDataSet(Qt::blue, type);
    graph->AddPoints(0, points);
    return Shown(std::move(graph));
}

// ---- bare painter calls, with everything known beforehand that can be

// The histogram in full: the same grid, labels, titles, bars and band.
Draw Raw_Histogram(const TGraphWidget& graph)
{
    const TGraphLayout layout = graph.Layout();
    const TGraphMapping mapping = graph.Mapping();
    const auto x_ticks = Graph_Ticks(mapping.horizontal, graph.Horizontal_Label_Format(),
                                     graph.Horizontal_Label_Format().cell.width());
    const auto y_ticks =
        Graph_Ticks(mapping.vertical, graph.Vertical_Label_Format(), layout.graph.height() / 10.0);
    return [&graph, layout, mapping, x_ticks, y_ticks, font = graph.font()] {
        QImage picture(SIZE, QImage::Format_RGB32);
        QPainter painter(&picture);
        painter.setFont(font);
        const QRect area = layout.graph;
        painter.fillRect(picture.rect(), Qt::white);
        for (const TGraphTick& tick : x_ticks) {
            const int x = qRound(tick.pixel);
            painter.setPen(Qt::lightGray);
            painter.drawLine(x, area.top(), x, area.bottom());
            painter.setPen(Qt::black);
            painter.drawLine(x, area.bottom() + 1, x, area.bottom() + 5);
            painter.drawText(QRect(x - 100, area.bottom() + 5, 200, 30), Qt::AlignHCenter, tick.label);
        }
        for (const TGraphTick& tick : y_ticks) {
            const int y = qRound(tick.pixel);
            painter.setPen(Qt::lightGray);
            painter.drawLine(area.left(), y, area.right(), y);
            painter.setPen(Qt::black);
            painter.drawLine(area.left() - 5, y, area.left() - 1, y);
            painter.drawText(QRect(0, y - 15, area.left() - 20, 30), Qt::AlignRight | Qt::AlignVCenter,
                             tick.label);
        }
        painter.drawRect(area.adjusted(-1, -1, 0, 0));
        painter.drawText(layout.horizontal_title, Qt::AlignCenter, graph.d_horizontal_title);
        painter.drawText(layout.horizontal_title, Qt::AlignLeft, QStringLiteral("0.00000,   0.00000"));
        painter.rotate(-90);
        painter.drawText(QRect(-500, 0, 500, 40), Qt::AlignCenter, graph.d_vertical_title);
        painter.resetTransform();
        QFont bold = font;
        bold.setBold(true);
        painter.setFont(bold);
        painter.drawText(layout.graph_title, Qt::AlignCenter, graph.d_graph_title);

        painter.setClipRect(area);
        const int zero = static_cast<int>(mapping.vertical.Position(0));
        const int w = area.width() / 20 - 1;
        for (int bin = 0; bin < 9; ++bin) {
            const QPoint p = mapping.Position({LENGTH + bin * BIN, COUNTS[bin]}).toPoint();
            painter.fillRect(p.x() - w, p.y(), 2 * w, zero - p.y(), Qt::blue);
        }
        painter.setPen(Qt::red);
        QPolygon band;
        for (const TVector2& corner : BAND)
            band << mapping.Position(corner).toPoint();
        painter.drawPolyline(band);
        painter.end();
        return picture;
    };
}

// Nothing but the data: no legend, no fit.
QImage Raw_Points(const TGraphWidget& graph, const Points& points, bool squares, bool one_by_one)
{
    QImage picture(SIZE, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setClipRect(graph.Layout().graph);
    painter.setPen(Qt::blue);
    QPolygon pixels;
    pixels.reserve(static_cast<int>(points.size()));
    for (const TVector2& point : points) {
        const QPointF position = graph.Mapping().Position(point);
        pixels << QPoint(static_cast<int>(position.x()), static_cast<int>(position.y()));
    }
    if (squares) {
        for (const QPoint& pixel : pixels)
            painter.fillRect(pixel.x() - 3, pixel.y() - 3, 6, 6, Qt::blue);
    } else if (one_by_one) {
        for (int i = 1; i < pixels.size(); ++i)
            painter.drawLine(pixels[i - 1], pixels[i]);
    } else {
        painter.drawPolyline(pixels);
    }
    painter.end();
    return picture;
}

// Pixels of the plotting area that one picture has blue and the other has not.
int Different_Pixels(const QRect& area, const QImage& a, const QImage& b)
{
    int different = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            different += (a.pixel(x, y) == 0xff0000ff) != (b.pixel(x, y) == 0xff0000ff);
    }
    return different;
}

// ---- Qwt

std::unique_ptr<QwtPlot> Qwt_Plot()
{
    auto plot = std::make_unique<QwtPlot>();
    static_cast<QwtPlotCanvas*>(plot->canvas())->setPaintAttribute(QwtPlotCanvas::BackingStore, false);
    plot->setTitle(QStringLiteral("Sample Graph"));
    plot->setAxisTitle(QwtPlot::xBottom, QStringLiteral("H Title"));
    plot->setAxisTitle(QwtPlot::yLeft, QStringLiteral("V Title"));
    plot->setCanvasBackground(Qt::white);
    auto* grid = new QwtPlotGrid;
    grid->setPen(Qt::lightGray);
    grid->attach(plot.get());
    return plot;
}

void Attach_Curve(QwtPlot& plot, const Points& points, const QColor& color, bool squares)
{
    auto* curve = new QwtPlotCurve;
    curve->setSamples(Component(points, 0), Component(points, 1));
    curve->setPen(color);
    curve->setPaintAttribute(QwtPlotCurve::FilterPoints, true);
    if (squares) {
        curve->setStyle(QwtPlotCurve::NoCurve);
        curve->setSymbol(new QwtSymbol(QwtSymbol::Rect, color, Qt::NoPen, QSize(6, 6)));
    }
    curve->attach(&plot);
}

std::unique_ptr<QwtPlot> Qwt_Histogram()
{
    auto plot = Qwt_Plot();
    QVector<QwtIntervalSample> bins;
    for (int bin = 0; bin < 9; ++bin)
        bins << QwtIntervalSample(COUNTS[bin], LENGTH + (bin - 0.45) * BIN, LENGTH + (bin + 0.45) * BIN);
    auto* histogram = new QwtPlotHistogram;
    histogram->setSamples(bins);
    histogram->setBrush(Qt::blue);
    histogram->attach(plot.get());
    Attach_Curve(*plot, BAND, Qt::red, false);
    return Shown(std::move(plot));
}

Draw Qwt_Drawing(QwtPlot& plot)
{
    return [&plot] {
        plot.replot();
        return Picture_Of(plot);
    };
}

// ---- QCustomPlot

std::unique_ptr<QCustomPlot> Custom_Plot()
{
    auto plot = std::make_unique<QCustomPlot>();
    plot->setNotAntialiasedElements(QCP::aeAll);
    plot->xAxis->setLabel(QStringLiteral("H Title"));
    plot->yAxis->setLabel(QStringLiteral("V Title"));
    plot->plotLayout()->insertRow(0);
    plot->plotLayout()->addElement(0, 0, new QCPTextElement(plot.get(), QStringLiteral("Sample Graph")));
    return plot;
}

void Add_Custom_Graph(QCustomPlot& plot, const Points& points, const QColor& color, bool squares)
{
    QCPGraph* graph = plot.addGraph();
    graph->setData(Component(points, 0), Component(points, 1));
    graph->setPen(color);
    if (squares) {
        graph->setLineStyle(QCPGraph::lsNone);
        graph->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssSquare, color, color, 6));
    }
}

std::unique_ptr<QCustomPlot> Custom_Histogram()
{
    auto plot = Custom_Plot();
    auto* bars = new QCPBars(plot->xAxis, plot->yAxis);
    bars->setWidth(0.9 * BIN);
    bars->setBrush(QColor(Qt::blue));
    for (int bin = 0; bin < 9; ++bin)
        bars->addData(LENGTH + bin * BIN, COUNTS[bin]);
    auto* band = new QCPCurve(plot->xAxis, plot->yAxis);
    band->setData(Component(BAND, 0), Component(BAND, 1));
    band->setPen(QColor(Qt::red));
    return Shown(std::move(plot));
}

Draw Custom_Drawing(QCustomPlot& plot)
{
    plot.rescaleAxes();
    return [&plot] { return plot.toPixmap(SIZE.width(), SIZE.height()).toImage(); };
}

// ---- comparisons

void Compare_Histograms()
{
    const auto graph = Our_Histogram();
    const auto qwt = Qwt_Histogram();
    const auto custom = Custom_Histogram();
    const Draw ours = [&] { return Picture_Of(*graph); };
    Compare("histogram / raw painter", 1.0, 300, ours, Raw_Histogram(*graph));
    Compare("histogram / Qwt", 0.6, 300, ours, Qwt_Drawing(*qwt));
    Compare("histogram / QCustomPlot", 0.6, 300, ours, Custom_Drawing(*custom));
}

// False where the picture is not the one that bare painter calls give.
bool Compare_Points(int count, bool squares)
{
    const Points points = Signal(count);
    const auto graph = Our_Points(points, squares ? TGraphWidget::GRAPH_POINT : TGraphWidget::GRAPH_LINE);
    auto qwt = Qwt_Plot();
    Attach_Curve(*qwt, points, Qt::blue, squares);
    qwt = Shown(std::move(qwt));
    auto custom = Custom_Plot();
    Add_Custom_Graph(*custom, points, Qt::blue, squares);
    custom = Shown(std::move(custom));

    std::printf("%s of %d points\n", squares ? "squares" : "line", count);
    const Draw ours = [&] { return Picture_Of(*graph); };
    const int rounds = count > 100000 ? 10 : 30;
    Compare("  / raw painter", 1.0, rounds, ours, [&] { return Raw_Points(*graph, points, squares, false); });
    Compare("  / Qwt", 1.0, rounds, ours, Qwt_Drawing(*qwt));
    Compare("  / QCustomPlot", 1.0, rounds, ours, Custom_Drawing(*custom));
    const int different =
        Different_Pixels(graph->Layout().graph, ours(), Raw_Points(*graph, points, squares, true));
    std::printf("  pixels that differ from the raw painter's: %d\n", different);
    return different == 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Print_Heading("ours ms", "theirs ms");
    Compare_Histograms();
    bool same = true;
    for (const bool squares : {false, true}) {
        for (const int count : {100000, 1000000})
            same = Compare_Points(count, squares) && same;
    }
    return same ? 0 : 1;
}

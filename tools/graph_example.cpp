// SPDX-License-Identifier: MIT
// Shows what the graph widget can do: styles, scales, zooming and panning, clicks, pictures for documents.
#include "graphwidget.h"
#include "numbers.h"

#include <QApplication>
#include <QFileDialog>
#include <QMainWindow>
#include <QPdfWriter>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

#include <cmath>

namespace
{

QColor Palette_Color(int index)
{
    int red = 0;
    int green = 0;
    int blue = 0;
    TGraphWidget::GenerateRGBColor(index, &red, &green, &blue);
    return QColor(red, green, blue);
}

template<typename TFunction>
void Add_Curve(TGraphWidget& graph, TGraphWidget::TGraphType type, int count, TFunction point)
{
    const int set = graph.CreateDataSet(Palette_Color(graph.d_default_graph_type + type), type);
    for (int i = 0; i < count; ++i)
        graph.AddPoint(set, point(i));
}

TGraphWidget* Styles()
{
    auto* graph = new TGraphWidget;
    graph->d_graph_title = QStringLiteral("Lines, crosses and points");
    graph->d_horizontal_title = QStringLiteral("Position [mm]");
    graph->d_vertical_title = QStringLiteral("Deviation [µm]");
    Add_Curve(*graph, TGraphWidget::GRAPH_LINE, 501,
              [](int i) { return TVector2(i, 4.0 * std::sin(i / 40.0)); });
    Add_Curve(*graph, TGraphWidget::GRAPH_CROSS, 51,
              [](int i) { return TVector2(10 * i, 4.0 * std::sin(i / 4.0) + std::sin(i * 37.0)); });
    Add_Curve(*graph, TGraphWidget::GRAPH_POINT, 26, [](int i) { return TVector2(20 * i, -3.0 + i / 5.0); });
    return graph;
}

TGraphWidget* Bars()
{
    auto* graph = new TGraphWidget;
    graph->d_graph_title = QStringLiteral("Bars");
    graph->d_horizontal_title = QStringLiteral("Class");
    graph->d_vertical_title = QStringLiteral("Change");
    graph->d_default_graph_type = TGraphWidget::GRAPH_BAR;
    Add_Curve(*graph, TGraphWidget::GRAPH_DEFAULT, 15,
              [](int i) { return TVector2(i, 10.0 * std::sin(i / 2.0)); });
    return graph;
}

TGraphWidget* Logarithmic()
{
    auto* graph = new TGraphWidget;
    graph->d_graph_title = QStringLiteral("Response of a low-pass filter");
    graph->d_horizontal_title = QStringLiteral("Frequency [Hz]");
    graph->d_vertical_title = QStringLiteral("Gain");
    graph->d_horizontal_scale_type = GRAPH_SCALE_LOG10;
    graph->d_vertical_scale_type = GRAPH_SCALE_LOG10;
    for (const double corner : {30.0, 1000.0}) {
        Add_Curve(*graph, corner < 100.0 ? TGraphWidget::GRAPH_LINE : TGraphWidget::GRAPH_POINT, 61,
                  [corner](int i) {
                      const double frequency = std::pow(10.0, i / 12.0);
                      return TVector2(frequency, 1.0 / std::hypot(1.0, frequency / corner));
                  });
    }
    return graph;
}

TGraphWidget* Large()
{
    auto* graph = new TGraphWidget;
    graph->d_graph_title = QStringLiteral("A million points");
    graph->d_horizontal_title = QStringLiteral("Sample");
    graph->d_vertical_title = QStringLiteral("Signal");
    Add_Curve(*graph, TGraphWidget::GRAPH_LINE, 1000000, [](int i) {
        return TVector2(i, std::sin(i / 1e5) + 0.3 * std::sin(i * 0.37) * std::sin(i / 7e3));
    });
    return graph;
}

void Save_Picture(QWidget* parent, TGraphWidget& graph)
{
    const QString path = QFileDialog::getSaveFileName(parent, QString(), QStringLiteral("graph.pdf"));
    if (path.isEmpty())
        return;
    QPdfWriter document(path);
    document.setPageSize(QPageSize(QPageSize::A5));
    document.setPageOrientation(QPageLayout::Landscape);
    graph.Paint_To(&document);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto* tabs = new QTabWidget;
    window.setCentralWidget(tabs);
    for (TGraphWidget* graph : {Styles(), Bars(), Logarithmic(), Large()}) {
        tabs->addTab(graph, graph->d_graph_title);
        QObject::connect(graph, &TGraphWidget::Mouse_Click, &window, [&](double x, double y) {
            window.statusBar()->showMessage(
                QStringLiteral("Clicked at %1, %2").arg(Fixed(x, 5), Fixed(y, 5)));
        });
    }

    const auto shown = [tabs] { return static_cast<TGraphWidget*>(tabs->currentWidget()); };
    QToolBar* tools = window.addToolBar(QStringLiteral("View"));
    QObject::connect(tools->addAction(QStringLiteral("Show All")), &QAction::triggered, tabs,
                     [shown] { shown()->ScaleToFit(); });
    QObject::connect(tools->addAction(QStringLiteral("Zoom Out")), &QAction::triggered, tabs,
                     [shown] { shown()->ZoomOut(); });
    QObject::connect(tools->addAction(QStringLiteral("Save as PDF")), &QAction::triggered, tabs,
                     [tabs, shown] { Save_Picture(tabs->window(), *shown()); });
    window.statusBar()->showMessage(QStringLiteral(
        "Left: drag a box to zoom in, click to read a point. Right: drag to pan, click to zoom out."));
    window.resize(900, 600);
    window.show();
    return application.exec();
}

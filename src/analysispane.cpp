// SPDX-License-Identifier: MIT
#include "analysispane.h"

#include "graphwidget.h"
#include "panellayout.h"
#include "report.h"
#include "reportwidget.h"

#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QTabBar>
#include <QTabWidget>

namespace
{

void Set_Up_Histogram(TGraphWidget* graph)
{
    graph->setObjectName(QStringLiteral("histogram"));
    graph->setMinimumHeight(100);
    graph->d_default_graph_type = TGraphWidget::GRAPH_BAR;
    graph->d_horizontal_scale_type = GRAPH_SCALE_MARGIN;
    graph->d_vertical_scale_type = GRAPH_SCALE_LINEAR;
    graph->d_direct_render = true;
    graph->d_graph_title = TAnalysisPane::tr("Measurement Distribution");
    graph->setAccessibleName(graph->d_graph_title);
    graph->d_horizontal_title = TAnalysisPane::tr("Ball Bar Length");
    graph->d_vertical_title = TAnalysisPane::tr("Quantity");
}

QLabel* Create_Notice()
{
    auto* notice = new QLabel(TAnalysisPane::tr("© 2026 The Kelvora authors"));
    QFont font = notice->font();
    font.setPointSize(8);
    font.setItalic(true);
    notice->setFont(font);
    return notice;
}

QLabel* Create_Logo()
{
    auto* logo = new QLabel;
    logo->setObjectName(QStringLiteral("logo"));
    logo->setFixedSize(100, 40);
    logo->setPixmap(QIcon(QStringLiteral(":/images/logo.png")).pixmap(logo->size())); // or logo@2x.png
    return logo;
}

} // namespace

TAnalysisPane::TAnalysisPane(QWidget* parent)
    : QWidget(parent), d_graph(new TGraphWidget), d_report(new TReportWidget), d_tabs(new QTabWidget)
{
    Set_Up_Histogram(d_graph);
    d_report->setObjectName(QStringLiteral("report"));
    d_graph->d_empty_text = tr("Import a measurement file, or drop one on the window");
    d_report->setPlaceholderText(d_graph->d_empty_text);
    d_tabs->setObjectName(QStringLiteral("analysis_tabs"));
    d_tabs->setAccessibleName(tr("Histogram and analysis"));
    d_tabs->tabBar()->setAccessibleName(d_tabs->accessibleName());
    d_tabs->setTabPosition(QTabWidget::West);
    d_tabs->setUsesScrollButtons(false); // with large letters the second tab would hide behind them
    d_tabs->addTab(d_graph, tr("Histogram"));
    d_tabs->addTab(d_report, tr("Analysis"));

    QGridLayout* layout = Create_Grid(this, 0);
    layout->addWidget(d_tabs, 0, 0, 1, 2);
    layout->addWidget(Create_Notice(), 1, 0, Qt::AlignLeft | Qt::AlignBottom);
    layout->addWidget(Create_Logo(), 1, 1);
    connect(d_report, &TReportWidget::Line_Clicked, this, &TAnalysisPane::Report_Line_Clicked);
}

void TAnalysisPane::Show_Report(const TReport& report)
{
    d_report->setPlainText(report.text); // leaves the cursor, and so the view, at the start
    d_first_position_line = report.first_position_line;
    if (report.histogram.bars.empty())
        return;
    d_graph->DeleteDataSets();
    d_graph->d_largest_bar_width = report.histogram.bin_width;
    d_graph->AddPoints(d_graph->CreateDataSet(Qt::blue, TGraphWidget::GRAPH_DEFAULT), report.histogram.bars);
    d_graph->AddPoints(d_graph->CreateDataSet(Qt::red, TGraphWidget::GRAPH_LINE), report.histogram.band);
    d_graph->ScaleToFit();
}

void TAnalysisPane::Append(const QString& text)
{
    d_tabs->setCurrentWidget(d_report);
    d_report->appendPlainText(text);
    d_report->moveCursor(QTextCursor::End);
    d_report->moveCursor(QTextCursor::StartOfBlock); // reading begins there, and the view follows the cursor
}

void TAnalysisPane::Clear()
{
    d_graph->DeleteDataSets();
    d_graph->UpdateGraph();
    d_report->clear();
    d_first_position_line = -1;
}

void TAnalysisPane::Report_Line_Clicked(int line)
{
    if (d_first_position_line >= 0 && line >= d_first_position_line)
        emit Position_Clicked(line - d_first_position_line);
}

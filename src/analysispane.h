// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QTabWidget;
class TGraphWidget;
class TReportWidget;
struct TReport;

/// The lower pane of the window: the histogram and the report on two tabs, the notice and the logo.
class TAnalysisPane : public QWidget
{
    Q_OBJECT

public:
    explicit TAnalysisPane(QWidget* parent = nullptr);

    /// Shows text and histogram of `report`. One without bars (a range too small to graph) leaves the last
    /// histogram in place.
    void Show_Report(const TReport& report);
    /// Appends a text to the report and turns to it: behind the histogram nobody would read it.
    void Append(const QString& text);
    void Clear();

signals:
    /// A click on the line of the report that lists the position at `index` of the set.
    void Position_Clicked(int index);

private:
    void Report_Line_Clicked(int line);

    TGraphWidget* d_graph;
    TReportWidget* d_report;
    QTabWidget* d_tabs;
    int d_first_position_line{-1}; ///< line of the report that lists position 0; -1 without a report
};

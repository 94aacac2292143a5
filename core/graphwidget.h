// SPDX-License-Identifier: MIT
#pragma once

#include "graphlegend.h"
#include "graphmapping.h"
#include "vector2.h"

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

/// Plots any number of data sets as lines, bars or markers over linear or logarithmic axes.
///
/// A box drawn with the left button zooms in, a drag with the right button pans, a click with it zooms out,
/// and the data coordinates under the pointer are shown below the plotting area.
///
/// The graph does not follow changes of its data or of its public members by itself: call ScaleToFit() or
/// UpdateGraph() after them.
class TGraphWidget : public QWidget
{
    Q_OBJECT

public:
    /// Style of a data set.
    enum TGraphType : int
    {
        GRAPH_DEFAULT = 0, ///< that of the widget
        GRAPH_LINE = 1,    ///< a polyline through the points in their order
        GRAPH_BAR = 2,     ///< bars from the points to y = 0, sized for evenly spaced points
        GRAPH_CROSS = 3,
        GRAPH_POINT = 4 ///< filled squares
    };

    struct TDataSet
    {
        std::vector<TVector2> dataset_points; ///< data units, in insertion order
        QColor dataset_color;
        TGraphType dataset_type{GRAPH_DEFAULT};
    };

    explicit TGraphWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// @name Data
    /// Sets and points are addressed by their positions from 0; one past the end is a programming error
    /// (assertion). What can only succeed returns true.
    /// @{

    /// Appends an empty data set and returns its index.
    int CreateDataSet(const QColor& color, TGraphType type);
    bool AddPoint(int set, const TVector2& point);
    bool AddPoints(int set, const std::vector<TVector2>& points);
    bool SetPoints(int set, const std::vector<TVector2>& points);
    bool ModifyPoint(int set, int index, const TVector2& point);
    bool DeletePoint(int set, int index);
    bool DeletePoints(int set);
    bool DeleteDataSet(int index);
    void DeleteDataSets();
    TVector2 GetPoint(int set, int index) const;
    int DataSetSize(int set) const;
    /// @}

    /// The smallest upper end of y where y includes zero (5e-05 unless `minimum` is above 0); with
    /// `symmetric` its negative is the largest lower end.
    void SetScaleMinimumY(const double& minimum, bool symmetric);
    void EnableYIncludesZero(bool state);

    /// Shows all the data from the next paint on.
    void ScaleToFit();

    /// Shows twice as much on both axes, about the middle of the view, from the next paint on.
    void ZoomOut();

    /// Shows all the data after a change.
    void UpdateGraph();

    /// Sets the mapping so that the plotting area shows all the data.
    void Update_Viewport_To_Data();

    /// Sets the mapping so that the plotting area shows what the linear axes show within `rect` (pixels).
    void Update_Viewport_To_Rect(const QRect& rect);

    /// The mapping and the rectangles of the last layout.
    const TGraphMapping& Mapping() const { return d_view.mapping; }
    const TGraphLayout& Layout() const { return d_view.layout; }

    /// What was last shown of the pointer: x and y in data units with five decimals.
    const QString& Cursor_Position_Text() const { return d_cursor_position_text; }

    /// @name Logarithmic axes
    /// Value to pixel and back, and from the pixels of the linear axis of the same range to those of the
    /// logarithmic one (forward) and back (reverse).
    /// @{
    double Calculate_Log10_Position_Horizontal(double value) const { return X_Axis().Log10_Position(value); }
    double Calculate_Log10_Position_Vertical(double value) const { return Y_Axis().Log10_Position(value); }
    double Calculate_Log10_Value_Horizontal(double pixel) const { return X_Axis().Log10_Value(pixel); }
    double Calculate_Log10_Value_Vertical(double pixel) const { return Y_Axis().Log10_Value(pixel); }
    double Forward_Log10_Position_Horizontal(double pixel) const { return X_Axis().Forward_Log10(pixel); }
    double Forward_Log10_Position_Vertical(double pixel) const { return Y_Axis().Forward_Log10(pixel); }
    double Reverse_Log10_Position_Horizontal(double pixel) const { return X_Axis().Reverse_Log10(pixel); }
    double Reverse_Log10_Position_Vertical(double pixel) const { return Y_Axis().Reverse_Log10(pixel); }
    /// @}

    /// Repaints the outline of the box that is drawn with the left button, and nothing else.
    void Update_Left_Down_Box();

    /// Sets field width, decimals and room of the tick labels for the present view, measured with the font
    /// of `painter`.
    void Calculate_Legend_Display_Precision(const QPainter& painter);
    const TGraphLabelFormat& Horizontal_Label_Format() const { return d_view.legend.horizontal; }
    const TGraphLabelFormat& Vertical_Label_Format() const { return d_view.legend.vertical; }

    /// Draws the present view over all of `device` (picture, image, SVG, PDF): letters and lines are as large
    /// as on the screen, whatever the resolution and the pixel ratio of the device. One that has no size of
    /// its own gets the size of the widget. False where the device cannot be painted on.
    bool Paint_To(QPaintDevice* device) const;

    /// The `index`-th of 96 colours that tell data sets apart, counted from 0. The 97th is black; beyond, it
    /// is black and false is returned.
    static bool GenerateRGBColor(int index, int* red, int* green, int* blue);

    QString d_vertical_title;
    QString d_horizontal_title;
    QString d_graph_title;

    int d_default_graph_type{GRAPH_LINE};            ///< a TGraphType
    int d_horizontal_scale_type{GRAPH_SCALE_MARGIN}; ///< a TGraphScale
    int d_vertical_scale_type{GRAPH_SCALE_MARGIN};   ///< a TGraphScale

    /// Every paint shows all the data and zooming shows no effect. Otherwise legend and data are kept in a
    /// picture that is painted from.
    bool d_direct_render{false};

    bool d_lock_aspect{false};         ///< as many data units per pixel on both axes
    bool d_show_cursor_position{true}; ///< show the data coordinates under the pointer

    /// What a graph without any point says in place of its numbers.
    QString d_empty_text;

    /// No bar is wider than this, data units. The distance of evenly spaced points keeps their bars apart.
    double d_largest_bar_width{std::numeric_limits<double>::infinity()};

signals:
    /// A click with the left button at a point in data units. So is a drag too short for a box.
    void Mouse_Click(const double& x, const double& y);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // What is shown where, for a picture of one size.
    struct TView
    {
        TGraphLayout layout;
        TGraphMapping mapping;
        TGraphLegend legend;
    };

    const TGraphAxis& X_Axis() const { return d_view.mapping.horizontal; }
    const TGraphAxis& Y_Axis() const { return d_view.mapping.vertical; }

    const std::vector<TVector2>& Points_Of_Set(int set) const;
    std::vector<TVector2>& Changing_Points(int set);
    std::ptrdiff_t Point_Offset(int set_number, int index) const;

    const TGraphRange& Data_Range() const;
    void Fit_To_Data(TView* view) const;
    void Choose_Label_Formats(const QPainter& painter, TView* view) const;

    void Update_Layout();
    void Draw_Background_Pixmap();
    void Zoom_Background_Pixmap(const QRect& rect);
    void Render_Background();
    void Answer_Requests();

    void Drag_Left_Down_Box(const QPoint& pointer);
    void Pan(const QPoint& pointer);
    void Hover(const QPoint& pointer);
    void Release_Left(const QPoint& pointer);

    int Cursor_Text_Width(const QPainter& painter, const TView& view) const;
    void Draw(QPainter* painter, const QSize& size) const;
    void Draw_View(QPainter* painter, const QRect& area, TView* view) const;
    void Draw_Legend(QPainter* painter, TView* view) const;
    void Draw_Data(QPainter* painter, const TView& view) const;
    void Draw_Data_Set(QPainter* painter, const TView& view, const TDataSet& set) const;
    void Draw_Cursor_Text(QPainter* painter) const;
    void Draw_Left_Down_Box(QPainter* painter) const;

    std::vector<TDataSet> d_data_sets;
    mutable std::optional<TGraphRange> d_range; // extent of the data, unknown after a change
    TView d_view;
    mutable TGraphTexts d_texts;
    QPixmap d_background; // legend and data as last drawn
    QString d_cursor_position_text;

    // From the corner where the drag started to the pointer. While panning its first corner is the last
    // position of the pointer.
    QRect d_left_down_box;
    bool d_left_down_box_visible{false};
    bool d_left_button_down{false};
    bool d_left_down_box_active{false}; // the pointer has moved since the press
    bool d_right_button_down{false};
    bool d_right_button_dragged{false};

    bool d_y_includes_zero{true};
    bool d_y_scale_symmetric{true};
    double d_y_scale_minimum{TGraphScaling::DEFAULT_Y_MINIMUM};
    bool d_scale_to_fit{false};
    bool d_zoom_out{false};
};
